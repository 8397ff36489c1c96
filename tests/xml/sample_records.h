#pragma once

#include "tests/test_support.h"

// A record, a list and a document as a program would declare them on the persistence core.

namespace sample {

class Item : public CXMLFolder {
public:
  Item() {
    PutTag(CString("Item"));
    CXMLFolder::operator=("Item");
    Item::Init();
  }
  Item(const Item &rhs) : Item() { *this = rhs; }
  Item &operator=(const Item &rhs) {
    CXMLPersistent::operator=(rhs);
    Name = rhs.Name;
    Text = rhs.Text;
    Bound = rhs.Bound;
    Flag = rhs.Flag;
    pushMembers();
    return *this;
  }
  void Init() override {
    Name.Init("Name", nullptr);
    Text.Init("Text", "none");
    Bound.PutTag(CString("Bound"));
    Flag.Init("Flag", false);
    pushMembers();
  }
  void pushMembers() override { m_members = {&Name, &Text, &Bound, &Flag}; }
  CString Key() const override { return Name; }
  using CXMLFolder::m_fileName;

  CXMLAttribute Name;
  CXMLElement Text;
  CXMLHexElement Bound;
  CXMLBoolAttribute Flag;
};

class Items : public CXMLCollectionFolder2 {
public:
  Items() {
    CXMLFolder::operator=("Items");
    Items::Init();
  }
  Items(const Items &rhs) : Items() { *this = rhs; }
  Items &operator=(const Items &rhs) {
    assignCollection<Item>(rhs);
    return *this;
  }
  void Init() override { setTags("Items", "Item", "Name"); }
  Item *Add(const char *key) { return addKeyed<Item>(key, &Item::Name); }
  Item *Find(const char *key) { return static_cast<Item *>(FindItem(key)); }
  Item *operator[](int index) { return static_cast<Item *>(CXMLCollectionFolder2::operator[](index)); }

protected:
  CXMLFolder *NewFolder() override { return new Item; }
};

class Document : public CXMLTopLevelFolder {
public:
  Document() {
    PutTag(CString("Root"));
    Document::pushMembers();
  }
  void pushMembers() override { m_members = {&Contents, &List}; }
  using CXMLFolder::m_fileName;

  Items List;
};

} // namespace sample
