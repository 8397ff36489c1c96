#include "kestrune/identity/name_number_pairs.h"

#include "kestrune/identity/rows.h"
#include "kestrune/xml/member_list.h"

namespace {

/// The names that are the same in both kinds of rows.
template <class Row, class Visit>
constexpr void forEachRowMember(Visit visit) {
  visit(&Row::Name, "Name");
  visit(&Row::Number, "Number");
}

template <class Row>
bool hasNumber(const Row &row, const char *number) {
  return number != nullptr && row.Number.Compare(number) == 0;
}

} // namespace

template <class Visit>
constexpr void CXMLPair::forEachMember(Visit visit) {
  forEachRowMember<CXMLPair>(visit);
}

static_assert(sizeof(CXMLPair) == sizeof(CXMLFolder) + MemberList::size<CXMLPair>());

CXMLPair::CXMLPair() {
  PutTag(CString(rows::kUnassigned));
  CXMLPair::Init();
}

CXMLPair::CXMLPair(const char *name, const char *number) : CXMLPair() {
  Name = name;
  Number = number;
}

CXMLPair::CXMLPair(const char *tag, const char *nameTag, const char *numberTag) {
  PutTag(CString(tag));
  CXMLFolder::operator=(tag);
  CXMLPair::Init();
  rows::setMemberTags(*this, nameTag, numberTag);
}

CXMLPair::CXMLPair(const CXMLPair &rhs) : CXMLPair() { *this = rhs; }

CXMLPair::~CXMLPair() = default;

CXMLPair &CXMLPair::operator=(const CXMLPair &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CXMLPair::Init() {
  MemberList::init(*this);
  pushMembers();
}

CString CXMLPair::Key() const { return Name; }

void CXMLPair::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

bool CXMLPair::operator==(const CXMLPair &rhs) const { return rows::equal(*this, rhs); }

bool CXMLPair::operator<(const CXMLPair &rhs) const { return rows::before(*this, rhs); }

template <class Visit>
constexpr void CXMLNameHexPair::forEachMember(Visit visit) {
  forEachRowMember<CXMLNameHexPair>(visit);
}

static_assert(sizeof(CXMLNameHexPair) == sizeof(CXMLFolder) + MemberList::size<CXMLNameHexPair>());

CXMLNameHexPair::CXMLNameHexPair() {
  PutTag(CString(rows::kUnassigned));
  CXMLNameHexPair::Init();
}

CXMLNameHexPair::CXMLNameHexPair(const char *name, int number) : CXMLNameHexPair() {
  Name = name;
  Number = number;
}

CXMLNameHexPair::CXMLNameHexPair(const char *tag, const char *nameTag, const char *numberTag) {
  PutTag(CString(tag));
  CXMLFolder::operator=(tag);
  CXMLNameHexPair::Init();
  rows::setMemberTags(*this, nameTag, numberTag);
}

CXMLNameHexPair::CXMLNameHexPair(const CXMLNameHexPair &rhs) : CXMLNameHexPair() { *this = rhs; }

CXMLNameHexPair::~CXMLNameHexPair() = default;

CXMLNameHexPair &CXMLNameHexPair::operator=(const CXMLNameHexPair &rhs) {
  CXMLPersistent::operator=(rhs);
  MemberList::copy(*this, rhs);
  pushMembers();
  return *this;
}

void CXMLNameHexPair::Init() {
  MemberList::init(*this);
  pushMembers();
}

CString CXMLNameHexPair::Key() const { return Name; }

void CXMLNameHexPair::pushMembers() {
  m_members.clear();
  MemberList::append(*this);
}

bool CXMLNameHexPair::operator==(const CXMLNameHexPair &rhs) const { return rows::equal(*this, rhs); }

bool CXMLNameHexPair::operator<(const CXMLNameHexPair &rhs) const { return rows::before(*this, rhs); }

CXMLPairCollection::CXMLPairCollection() { CXMLPairCollection::Init(); }

CXMLPairCollection::CXMLPairCollection(const CXMLPairCollection &rhs) : CXMLPairCollection() { *this = rhs; }

CXMLPairCollection::~CXMLPairCollection() = default;

CXMLPairCollection &CXMLPairCollection::operator=(const CXMLPairCollection &rhs) {
  assignCollection<CXMLPair>(rhs);
  return *this;
}

void CXMLPairCollection::Init() {
  setTags(rows::kUnassigned, rows::kUnassigned, rows::kUnassigned);
  pushMembers();
}

CXMLPair *CXMLPairCollection::Add(const char *name) { return static_cast<CXMLPair *>(AddCollectionItem(name)); }

CXMLPair *CXMLPairCollection::Add(const char *name, const char *number) {
  CXMLPair *const row = addKeyed<CXMLPair>(name, &CXMLPair::Name);
  return number != nullptr ? rows::withNumber(row, number) : row;
}

CXMLPair *CXMLPairCollection::operator[](int index) {
  return static_cast<CXMLPair *>(CXMLCollectionFolder::operator[](index));
}

CXMLPair *CXMLPairCollection::Find(const char *name) { return static_cast<CXMLPair *>(FindItem(name)); }

CXMLPair *CXMLPairCollection::FindByNumber(const char *number) {
  return findFirst<CXMLPair>([number](const CXMLPair &row) { return hasNumber(row, number); });
}

CXMLFolder *CXMLPairCollection::NewFolder() { return rows::make<CXMLPair>(m_itemTag); }

CXMLNameHexPairs::CXMLNameHexPairs() { CXMLNameHexPairs::Init(); }

CXMLNameHexPairs::CXMLNameHexPairs(const CXMLNameHexPairs &rhs) : CXMLNameHexPairs() { *this = rhs; }

CXMLNameHexPairs::~CXMLNameHexPairs() = default;

CXMLNameHexPairs &CXMLNameHexPairs::operator=(const CXMLNameHexPairs &rhs) {
  assignCollection<CXMLNameHexPair>(rhs);
  return *this;
}

void CXMLNameHexPairs::Init() {
  setTags(rows::kUnassigned, rows::kUnassigned, rows::kUnassigned);
  pushMembers();
}

CXMLNameHexPair *CXMLNameHexPairs::Add(const char *name, int number) {
  return rows::withNumber(addKeyed<CXMLNameHexPair>(name, &CXMLNameHexPair::Name), number);
}

CXMLNameHexPair *CXMLNameHexPairs::operator[](int index) {
  return static_cast<CXMLNameHexPair *>(CXMLCollectionFolder::operator[](index));
}

CXMLNameHexPair *CXMLNameHexPairs::Find(const char *name) { return static_cast<CXMLNameHexPair *>(FindItem(name)); }

CXMLNameHexPair *CXMLNameHexPairs::FindByNumber(const char *number) {
  return findFirst<CXMLNameHexPair>([number](const CXMLNameHexPair &row) { return hasNumber(row, number); });
}

CXMLFolder *CXMLNameHexPairs::NewFolder() { return rows::make<CXMLNameHexPair>(m_itemTag); }
