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

CLinkCompatibleModel *CLinkCompatibleModels::Add(const char *name) {
  return addKeyed<CLinkCompatibleModel>(name, &CLinkCompatibleModel::Name);
}

CLinkCompatibleModel *CLinkCompatibleModels::operator[](int index) {
  return static_cast<CLinkCompatibleModel *>(CXMLCollectionFolder::operator[](index));
}

CLinkCompatibleModel *CLinkCompatibleModels::Find(const char *key) {
  return static_cast<CLinkCompatibleModel *>(FindItem(key));
}
