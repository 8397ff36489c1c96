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
  void pushMembers() override {
    m_members.clear();
    for (CXMLPersistent *member : std::initializer_list<CXMLPersistent *>{&Name, &Text, &Bound, &Flag})
      m_members.push_back(member);
  }
  CString Key() const override { return Name; }
  using CXMLFolder::m_fileName;

  CXMLAttribute Name;
  CXMLElement Text;
  CXMLHexElement Bound;
  CXMLBoolAttribute Flag;
};

template <class Base>
class List : public Base {
public:
  List() {
    this->CXMLFolder::operator=("Items");
    List::Init();
  }
  List(const List &rhs) : List() { *this = rhs; }
  List &operator=(const List &rhs) {
    this->template assignCollection<Item>(rhs);
    return *this;
  }
  void Init() override { this->setTags("Items", "Item", "Name"); }
  Item *Add(const char *key) { return this->template addKeyed<Item>(key, &Item::Name); }
  Item *Find(const char *key) { return static_cast<Item *>(this->FindItem(key)); }
  Item *operator[](int index) { return static_cast<Item *>(Base::operator[](index)); }

protected:
  CXMLFolder *NewFolder() override { return new Item; }
};

using Items = List<CXMLCollectionFolder>;
using Items2 = List<CXMLCollectionFolder2>;

class Document : public CXMLTopLevelFolder {
public:
  Document() {
    PutTag(CString("Root"));
    CXMLFolder::operator=("Root");
    Document::pushMembers();
  }
  void pushMembers() override {
    m_members.clear();
    m_members.push_back(&Contents);
    m_members.push_back(&List);
  }
  using CXMLFolder::m_fileName;

  Items List;
};

} // namespace sample
