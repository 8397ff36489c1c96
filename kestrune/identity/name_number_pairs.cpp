#include "kestrune/identity/name_number_pairs.h"

#include "kestrune/identity/rows.h"
#include "kestrune/xml/record_members.h"

namespace {

template <class Row>
bool hasNumber(const Row &row, const char *number) {
  return number != nullptr && row.Number.Compare(number) == 0;
}

} // namespace

struct CXMLPair::Members : RecordMembers<Members, CXMLPair> {
  static constexpr auto rows = std::tuple{
      Row{&CXMLPair::Name, "Name"},
      Row{&CXMLPair::Number, "Number"},
  };
};

CXMLPair::CXMLPair() { Members::construct(*this, kestrune::kUnassigned); }

CXMLPair::CXMLPair(const char *name, const char *number) : CXMLPair() {
  Name = name;
  Number = number;
}

CXMLPair::CXMLPair(const char *tag, const char *nameTag, const char *numberTag) {
  Members::construct(*this, tag);
  rows::setMemberTags(*this, nameTag, numberTag);
}

CXMLPair::CXMLPair(const CXMLPair &rhs) : CXMLPair() { *this = rhs; }
CXMLPair::~CXMLPair() = default;

CXMLPair &CXMLPair::operator=(const CXMLPair &rhs) { return Members::copy(*this, rhs); }
void CXMLPair::Init() { Members::init(*this); }
CString CXMLPair::Key() const { return Name; }
void CXMLPair::pushMembers() { Members::push(*this); }
bool CXMLPair::operator==(const CXMLPair &rhs) const { return rows::equal(*this, rhs); }
bool CXMLPair::operator<(const CXMLPair &rhs) const { return rows::before(*this, rhs); }

struct CXMLNameHexPair::Members : RecordMembers<Members, CXMLNameHexPair> {
  static constexpr auto rows = std::tuple{
      Row{&CXMLNameHexPair::Name, "Name"},
      Row{&CXMLNameHexPair::Number, "Number"},
  };
};

CXMLNameHexPair::CXMLNameHexPair() { Members::construct(*this, kestrune::kUnassigned); }

CXMLNameHexPair::CXMLNameHexPair(const char *name, int number) : CXMLNameHexPair() {
  Name = name;
  Number = number;
}

CXMLNameHexPair::CXMLNameHexPair(const char *tag, const char *nameTag, const char *numberTag) {
  Members::construct(*this, tag);
  rows::setMemberTags(*this, nameTag, numberTag);
}

CXMLNameHexPair::CXMLNameHexPair(const CXMLNameHexPair &rhs) : CXMLNameHexPair() { *this = rhs; }
CXMLNameHexPair::~CXMLNameHexPair() = default;

CXMLNameHexPair &CXMLNameHexPair::operator=(const CXMLNameHexPair &rhs) { return Members::copy(*this, rhs); }
void CXMLNameHexPair::Init() { Members::init(*this); }
CString CXMLNameHexPair::Key() const { return Name; }
void CXMLNameHexPair::pushMembers() { Members::push(*this); }
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
  setTags(kestrune::kUnassigned, kestrune::kUnassigned, kestrune::kUnassigned);
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
kestrune::ItemIterator<CXMLPair> CXMLPairCollection::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CXMLPair> CXMLPairCollection::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CXMLPair> CXMLPairCollection::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CXMLPair> CXMLPairCollection::end() const { return {m_items, m_items.size()}; }

CXMLNameHexPairs::CXMLNameHexPairs() { CXMLNameHexPairs::Init(); }
CXMLNameHexPairs::CXMLNameHexPairs(const CXMLNameHexPairs &rhs) : CXMLNameHexPairs() { *this = rhs; }
CXMLNameHexPairs::~CXMLNameHexPairs() = default;

CXMLNameHexPairs &CXMLNameHexPairs::operator=(const CXMLNameHexPairs &rhs) {
  assignCollection<CXMLNameHexPair>(rhs);
  return *this;
}

void CXMLNameHexPairs::Init() {
  setTags(kestrune::kUnassigned, kestrune::kUnassigned, kestrune::kUnassigned);
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
kestrune::ItemIterator<CXMLNameHexPair> CXMLNameHexPairs::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CXMLNameHexPair> CXMLNameHexPairs::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CXMLNameHexPair> CXMLNameHexPairs::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CXMLNameHexPair> CXMLNameHexPairs::end() const { return {m_items, m_items.size()}; }
