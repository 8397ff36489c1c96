#include "kestrune/chip/vorlan_models.h"

#include "kestrune/xml/item_blocks.h"

CVorlanModels::CVorlanModels() {
  CXMLFolder::operator=("VorlanModels");
  CVorlanModels::Init();
}

CVorlanModels::CVorlanModels(const CVorlanModels &rhs) : CVorlanModels() { *this = rhs; }
CVorlanModels::~CVorlanModels() = default;

CVorlanModels &CVorlanModels::operator=(const CVorlanModels &rhs) {
  assignCollection<CVorlanModel>(rhs);
  return *this;
}

void CVorlanModels::Init() {
  setTags("VorlanModels", "VorlanModel", "Name");
  pushMembers();
}

long CVorlanModels::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
CXMLFolder *CVorlanModels::NewFolder() { return kestrune::BlockItem<CVorlanModel>::make(this, m_items); }
kestrune::ItemIterator<CVorlanModel> CVorlanModels::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CVorlanModel> CVorlanModels::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CVorlanModel> CVorlanModels::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CVorlanModel> CVorlanModels::end() const { return {m_items, m_items.size()}; }
CVorlanModel *CVorlanModels::Add(const char *name) { return addKeyed<CVorlanModel>(name, &CVorlanModel::Name); }

CVorlanModel *CVorlanModels::operator[](int index) {
  return static_cast<CVorlanModel *>(CXMLCollectionFolder::operator[](index));
}

CVorlanModel *CVorlanModels::Find(const char *key) { return static_cast<CVorlanModel *>(FindItem(key)); }

CVorlanModel *CVorlanModels::FindByName(const char *name) {
  if (name == nullptr)
    return nullptr;
  return findFirst<CVorlanModel>([&](const CVorlanModel &item) { return item.Name.CompareNoCase(name) == 0; });
}

// The casts below are safe: in a later version, NewFolder makes every item in that version's item class.

CVorlanModels2::CVorlanModels2() = default;
CVorlanModels2::CVorlanModels2(const CVorlanModels2 &rhs) : CVorlanModels2() { *this = rhs; }
CVorlanModels2::~CVorlanModels2() = default;

CVorlanModels2 &CVorlanModels2::operator=(const CVorlanModels2 &rhs) {
  assignCollection<CVorlanModel2>(rhs);
  return *this;
}

void CVorlanModels2::Init() { CVorlanModels::Init(); }
long CVorlanModels2::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
CXMLFolder *CVorlanModels2::NewFolder() { return kestrune::BlockItem<CVorlanModel2>::make(this, m_items); }
kestrune::ItemIterator<CVorlanModel2> CVorlanModels2::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CVorlanModel2> CVorlanModels2::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CVorlanModel2> CVorlanModels2::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CVorlanModel2> CVorlanModels2::end() const { return {m_items, m_items.size()}; }
CVorlanModel2 *CVorlanModels2::Add(const char *name) { return static_cast<CVorlanModel2 *>(CVorlanModels::Add(name)); }

CVorlanModel2 *CVorlanModels2::operator[](int index) {
  return static_cast<CVorlanModel2 *>(CVorlanModels::operator[](index));
}

CVorlanModel2 *CVorlanModels2::Find(const char *key) { return static_cast<CVorlanModel2 *>(CVorlanModels::Find(key)); }

CVorlanModel2 *CVorlanModels2::FindByName(const char *name) {
  return static_cast<CVorlanModel2 *>(CVorlanModels::FindByName(name));
}

CVorlanModels3::CVorlanModels3() = default;
CVorlanModels3::CVorlanModels3(const CVorlanModels3 &rhs) : CVorlanModels3() { *this = rhs; }
CVorlanModels3::~CVorlanModels3() = default;

CVorlanModels3 &CVorlanModels3::operator=(const CVorlanModels3 &rhs) {
  assignCollection<CVorlanModel3>(rhs);
  return *this;
}

void CVorlanModels3::Init() { CVorlanModels2::Init(); }
long CVorlanModels3::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
CXMLFolder *CVorlanModels3::NewFolder() { return kestrune::BlockItem<CVorlanModel3>::make(this, m_items); }
kestrune::ItemIterator<CVorlanModel3> CVorlanModels3::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CVorlanModel3> CVorlanModels3::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CVorlanModel3> CVorlanModels3::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CVorlanModel3> CVorlanModels3::end() const { return {m_items, m_items.size()}; }
CVorlanModel3 *CVorlanModels3::Add(const char *name) { return static_cast<CVorlanModel3 *>(CVorlanModels::Add(name)); }

CVorlanModel3 *CVorlanModels3::operator[](int index) {
  return static_cast<CVorlanModel3 *>(CVorlanModels::operator[](index));
}

CVorlanModel3 *CVorlanModels3::Find(const char *key) { return static_cast<CVorlanModel3 *>(CVorlanModels::Find(key)); }

CVorlanModel3 *CVorlanModels3::FindByName(const char *name) {
  return static_cast<CVorlanModel3 *>(CVorlanModels::FindByName(name));
}

CVorlanModels4::CVorlanModels4() = default;
CVorlanModels4::CVorlanModels4(const CVorlanModels4 &rhs) : CVorlanModels4() { *this = rhs; }
CVorlanModels4::~CVorlanModels4() = default;

CVorlanModels4 &CVorlanModels4::operator=(const CVorlanModels4 &rhs) {
  assignCollection<CVorlanModel4>(rhs);
  return *this;
}

void CVorlanModels4::Init() { CVorlanModels3::Init(); }
long CVorlanModels4::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
CXMLFolder *CVorlanModels4::NewFolder() { return kestrune::BlockItem<CVorlanModel4>::make(this, m_items); }
kestrune::ItemIterator<CVorlanModel4> CVorlanModels4::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CVorlanModel4> CVorlanModels4::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CVorlanModel4> CVorlanModels4::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CVorlanModel4> CVorlanModels4::end() const { return {m_items, m_items.size()}; }
CVorlanModel4 *CVorlanModels4::Add(const char *name) { return static_cast<CVorlanModel4 *>(CVorlanModels::Add(name)); }

CVorlanModel4 *CVorlanModels4::operator[](int index) {
  return static_cast<CVorlanModel4 *>(CVorlanModels::operator[](index));
}

CVorlanModel4 *CVorlanModels4::Find(const char *key) { return static_cast<CVorlanModel4 *>(CVorlanModels::Find(key)); }

CVorlanModel4 *CVorlanModels4::FindByName(const char *name) {
  return static_cast<CVorlanModel4 *>(CVorlanModels::FindByName(name));
}
