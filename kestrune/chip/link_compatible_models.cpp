#include "kestrune/chip/link_compatible_models.h"

#include "kestrune/xml/record_members.h"

struct CLinkCompatibleModel::Members : RecordMembers<Members, CLinkCompatibleModel> {
  static constexpr auto rows = std::tuple{
      Row{&CLinkCompatibleModel::Name, "Name"},
      Row{&CLinkCompatibleModel::LinkCompatibleList, "LinkCompatibleList"},
  };
};

CLinkCompatibleModel::CLinkCompatibleModel() { Members::construct(*this, "LinkCompatibleModel"); }
CLinkCompatibleModel::CLinkCompatibleModel(const CLinkCompatibleModel &rhs) : CLinkCompatibleModel() { *this = rhs; }
CLinkCompatibleModel::~CLinkCompatibleModel() = default;

CLinkCompatibleModel &CLinkCompatibleModel::operator=(const CLinkCompatibleModel &rhs) {
  return Members::copy(*this, rhs);
}

void CLinkCompatibleModel::Init() { Members::init(*this); }
CString CLinkCompatibleModel::Key() const { return Name; }
void CLinkCompatibleModel::pushMembers() { Members::push(*this); }

CLinkCompatibleModels::CLinkCompatibleModels() {
  CXMLFolder::operator=("LinkCompatibleModels");
  CLinkCompatibleModels::Init();
}

CLinkCompatibleModels::CLinkCompatibleModels(const CLinkCompatibleModels &rhs) : CLinkCompatibleModels() {
  *this = rhs;
}

CLinkCompatibleModels::~CLinkCompatibleModels() = default;

CLinkCompatibleModels &CLinkCompatibleModels::operator=(const CLinkCompatibleModels &rhs) {
  assignCollection<CLinkCompatibleModel>(rhs);
  return *this;
}

void CLinkCompatibleModels::Init() {
  setTags("LinkCompatibleModels", "LinkCompatibleModel", "Name");
  pushMembers();
}

long CLinkCompatibleModels::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
CXMLFolder *CLinkCompatibleModels::NewFolder() { return new CLinkCompatibleModel; }
kestrune::ItemIterator<CLinkCompatibleModel> CLinkCompatibleModels::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CLinkCompatibleModel> CLinkCompatibleModels::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CLinkCompatibleModel> CLinkCompatibleModels::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CLinkCompatibleModel> CLinkCompatibleModels::end() const {
  return {m_items, m_items.size()};
}

CLinkCompatibleModel *CLinkCompatibleModels::Add(const char *name) {
  return addKeyed<CLinkCompatibleModel>(name, &CLinkCompatibleModel::Name);
}

CLinkCompatibleModel *CLinkCompatibleModels::operator[](int index) {
  return static_cast<CLinkCompatibleModel *>(CXMLCollectionFolder::operator[](index));
}

CLinkCompatibleModel *CLinkCompatibleModels::Find(const char *key) {
  return static_cast<CLinkCompatibleModel *>(FindItem(key));
}
