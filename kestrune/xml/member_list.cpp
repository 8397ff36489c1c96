#include "kestrune/xml/member_list.h"

#include "kestrune/xml/value_access.h"

namespace kestrune {

void MemberRows::init(CXMLFolder &record, MemberTable rows) {
  for (const MemberRow &row : rows) {
    if (ValueAccess::isValue(row))
      ValueAccess::init(ValueAccess::value(record, row), row);
  }
}

void MemberRows::setName(CXMLFolder &record, const char *tag) {
  const CString name(tag);
  record.PutTag(name);
  if (static_cast<const CString &>(record) == name)
    return;
  record.PutModified(1);
  static_cast<CString &>(record) = name;
}

void MemberRows::copy(CXMLFolder &to, const CXMLFolder &from, MemberTable rows) {
  for (const MemberRow &row : rows) {
    if (ValueAccess::isValue(row))
      ValueAccess::copy(ValueAccess::value(to, row), ValueAccess::value(from, row));
  }
}

CXMLPersistent &MemberRows::member(CXMLFolder &record, const MemberRow &row) {
  return ValueAccess::member(record, row);
}

MemberList::MemberList(CXMLFolder &owner) noexcept : m_owner(&owner) {}
MemberList::MemberList(const MemberList &other) : m_owner(other.m_owner) { *this = other; }
MemberList::~MemberList() = default;

MemberList &MemberList::operator=(const MemberList &other) {
  return this != &other ? *this = static_cast<std::vector<CXMLPersistent *>>(other) : *this;
}

MemberList &MemberList::operator=(std::vector<CXMLPersistent *> members) {
  m_pointers = std::move(members);
  m_byHand = true;
  return *this;
}

MemberList &MemberList::operator=(std::initializer_list<CXMLPersistent *> members) {
  return *this = std::vector(members);
}

MemberList::operator std::vector<CXMLPersistent *>() const {
  std::vector<CXMLPersistent *> members(pointers().begin(), pointers().end());
  members.reserve(size());
  for (const MemberRow &row : rows())
    members.push_back(&ValueAccess::member(*m_owner, row));
  return members;
}

CXMLPersistent *MemberList::operator[](size_type index) const {
  return m_byHand ? pointers()[index] : &ValueAccess::member(*m_owner, (*m_table)[index]);
}

MemberList::size_type MemberList::size() const noexcept { return m_byHand ? pointers().size() : m_table->size(); }
MemberList::reference MemberList::operator[](size_type index) { return own()[index]; }
MemberList::reference MemberList::front() { return own().front(); }
MemberList::reference MemberList::back() { return own().back(); }
MemberList::iterator MemberList::begin() { return own().begin(); }
MemberList::iterator MemberList::end() { return own().end(); }

void MemberList::clear() noexcept {
  m_pointers.clear();
  m_byHand = true;
}

void MemberList::reserve(size_type count) { own().reserve(count); }
void MemberList::push_back(CXMLPersistent *member) { own().push_back(member); }
void MemberList::pop_back() { own().pop_back(); }

MemberList::iterator MemberList::insert(iterator position, CXMLPersistent *member) {
  return own().insert(position, member);
}

MemberList::iterator MemberList::erase(iterator position) { return own().erase(position); }
MemberList::iterator MemberList::erase(iterator first, iterator last) { return own().erase(first, last); }

std::span<CXMLPersistent *const> MemberList::pointers() const noexcept {
  return m_byHand ? std::span<CXMLPersistent *const>(m_pointers) : std::span<CXMLPersistent *const>();
}

void MemberList::append(const MemberTable &table, MemberTable rows) {
  for (const MemberRow &row : rows)
    push_back(&ValueAccess::member(*m_owner, row));
  m_table = &table;
}

std::vector<CXMLPersistent *> &MemberList::own() {
  if (!m_byHand)
    *this = static_cast<std::vector<CXMLPersistent *>>(*this);
  return m_pointers;
}

} // namespace kestrune
