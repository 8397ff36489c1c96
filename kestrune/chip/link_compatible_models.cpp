#include "kestrune/chip/link_compatible_models.h"

#include "kestrune/xml/member_list.h"

template <class Visit>
constexpr void CLinkCompatibleModel::forEachMember(Visit visit) {
  visit(&CLinkCompatibleModel::Name, "Name");
  visit(&CLinkCompatibleModel::LinkCompatibleList, "LinkCompatibleList");
}

static_assert(sizeof(CLinkCompatibleModel) == sizeof(CXMLFolder) + MemberList::size<CLinkCompatibleModel>());

CLinkCompatibleModel::CLinkCompatibleModel() {
  PutTag(CString("LinkCompatibleModel"));
  CXMLFolder::operator=("LinkCompatibleModel");
  CLinkCompatibleModel::Init();
}

CLinkCompatibleModel::CLinkCompatibleModel(const CLinkCompatibleModel &rhs) : CLinkCompatibleModel() { *this = rhs; }

CLinkCompatibleModel::~CLinkCompatibleModel() = default;

CLinkCompatibleModel &CLinkCompatibleModel::operator=(const CLinkCompatibleModel &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CLinkCompatibleModel::Init() {
  MemberList::init(*this);
  pushMembers();
}

CString CLinkCompatibleModel::Key() const { return Name; }

void CLinkCompatibleModel::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

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
