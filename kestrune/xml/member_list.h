#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"

#include <array>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <span>
#include <vector>

class CXMLAttribute;
class CXMLBoolAttribute;
class CXMLElement;
class CXMLFolder;
class CXMLHexElement;
class CXMLPersistent;

namespace kestrune {

/// A row of a record's table, independent of the class of the record: one member.
struct MemberRow {
  /// The class of the field. A value is exactly of that class, and not of one derived from it, so that its operations
  /// are known without asking the object.
  enum class Class : unsigned char {
    kAttribute,     ///< CXMLAttribute
    kBoolAttribute, ///< CXMLBoolAttribute
    kElement,       ///< CXMLElement
    kHexElement,    ///< CXMLHexElement
    kOther,         ///< A folder, or a class of a program.
  };

  /// The field of a record: a value by its class, anything else by a function.
  union Field {
    /// The field, if it is of the class with that name. @{
    CXMLAttribute CXMLFolder::*attribute;
    CXMLBoolAttribute CXMLFolder::*boolAttribute;
    CXMLElement CXMLFolder::*element;
    CXMLHexElement CXMLFolder::*hexElement;
    ///@}
    CXMLPersistent &(*other)(CXMLFolder &record); ///< Returns the field of any other class.
  };

  Field field;                   ///< Where the member is.
  Class fieldClass;              ///< Which member of `field` counts.
  bool setsText;                 ///< Whether Init sets the text to the default.
  bool isUnusual;                ///< Whether the default is one that a hexadecimal element warns of.
  CString::Constant tag;         ///< Empty for a folder.
  CString::Constant defaultText; ///< Empty for a folder.
};

/// The rows that describe the members of a record, in file order; they live as long as the process. A std::span would
/// do, but copies of it are slow to compile for every file that includes this.
class MemberTable {
public:
  constexpr MemberTable() = default; ///< No rows.
  /// The rows of an array.
  template <std::size_t count>
  constexpr MemberTable(const std::array<MemberRow, count> &rows) : m_first(rows.data()), m_count(count) {}

  /// As of an array. @{
  constexpr const MemberRow *begin() const { return m_first; }
  constexpr const MemberRow *end() const { return m_first + m_count; }
  constexpr std::size_t size() const { return m_count; }
  constexpr const MemberRow &operator[](std::size_t index) const { return m_first[index]; }
  ///@}

private:
  const MemberRow *m_first = nullptr;
  std::size_t m_count = 0;
};

/// What records do with the rows of their own tables that are values; the others are passed over.
struct KESTRUNE_API MemberRows {
  /// Sets tags and defaults.
  static void init(CXMLFolder &record, MemberTable rows);
  /// Sets the record's own tag and text to `tag`.
  static void setName(CXMLFolder &record, const char *tag);
  /// The copying operator= of each.
  static void copy(CXMLFolder &to, const CXMLFolder &from, MemberTable rows);
  /// The member of a row, whatever its class.
  static CXMLPersistent &member(CXMLFolder &record, const MemberRow &row);
};

/// The list of a folder's members. A record refers to the table of its class, which costs nothing; what is added or
/// changed one by one is kept in a vector. The list does not own the members.
///
/// It has the operations of a vector that programs need. Iterators and references are valid until the list changes.
class KESTRUNE_API MemberList {
public:
  /// The types of a container. @{
  using value_type = CXMLPersistent *;
  using size_type = std::size_t;
  using difference_type = std::ptrdiff_t;
  using reference = CXMLPersistent *&;
  using const_reference = CXMLPersistent *;
  using iterator = std::vector<CXMLPersistent *>::iterator;
  ///@}
  class const_iterator;

  /// An empty list of the members of `owner`.
  explicit MemberList(CXMLFolder &owner) noexcept;
  /// The same members, as a list of pointers.
  MemberList(const MemberList &other);
  /// Lists the pointers of `other` or `members`, whatever folder they are of. @{
  MemberList &operator=(const MemberList &other);
  MemberList &operator=(std::vector<CXMLPersistent *> members);
  MemberList &operator=(std::initializer_list<CXMLPersistent *> members);
  ///@}
  ~MemberList(); ///< Leaves the members alone.
  /// The members as a vector.
  operator std::vector<CXMLPersistent *>() const;

  /// As of a vector. Giving a reference or a changing iterator makes the list one by hand. @{
  size_type size() const noexcept;
  bool empty() const noexcept { return size() == 0; }
  CXMLPersistent *operator[](size_type index) const;
  reference operator[](size_type index);
  CXMLPersistent *front() const { return (*this)[0]; }
  reference front();
  CXMLPersistent *back() const { return (*this)[size() - 1]; }
  reference back();

  const_iterator begin() const noexcept;
  const_iterator end() const noexcept;
  const_iterator cbegin() const noexcept;
  const_iterator cend() const noexcept;
  iterator begin();
  iterator end();

  void clear() noexcept;
  void reserve(size_type count);
  void push_back(CXMLPersistent *member);
  void pop_back();
  iterator insert(iterator position, CXMLPersistent *member);
  iterator erase(iterator position);
  iterator erase(iterator first, iterator last);
  ///@}

  /// The rows of the list, or none if it was changed by hand.
  MemberTable rows() const noexcept { return m_byHand ? MemberTable() : *m_table; }
  /// The members of a list that was changed by hand; otherwise none.
  std::span<CXMLPersistent *const> pointers() const noexcept;
  /// The table that the list was last built from, even if it was changed since; null without one.
  const MemberTable *table() const noexcept { return m_table; }

  /// Adds the `own` members of a class. If the list is as `base` describes it, or empty if that is null, it is then as
  /// `table` describes it.
  void extend(const MemberTable *base, const MemberTable &table, MemberTable own) {
    if (base != nullptr ? !m_byHand && m_table == base : empty())
      refer(table);
    else
      append(table, own);
  }
  /// Makes the list as `table` describes it.
  void refer(const MemberTable &table) noexcept {
    m_table = &table;
    m_byHand = false;
  }

private:
  void append(const MemberTable &table, MemberTable rows);
  /// The list as a vector.
  std::vector<CXMLPersistent *> &own();

  CXMLFolder *m_owner;
  const MemberTable *m_table = nullptr;
  std::vector<CXMLPersistent *> m_pointers;
  bool m_byHand = true; // whether m_pointers is the list, and not m_table
};

/// Walks over the members of a list that may refer to a table.
class MemberList::const_iterator {
public:
  /// The types of a random access iterator, and one that leads nowhere. @{
  using iterator_category = std::random_access_iterator_tag;
  using value_type = CXMLPersistent *;
  using difference_type = std::ptrdiff_t;
  using pointer = CXMLPersistent *const *;
  using reference = CXMLPersistent *;

  const_iterator() = default;
  ///@}
  /// The member at `index` of `list`.
  const_iterator(const MemberList &list, difference_type index) noexcept : m_list(&list), m_index(index) {}

  /// As of a random access iterator. @{
  CXMLPersistent *operator*() const { return (*this)[0]; }
  CXMLPersistent *operator[](difference_type offset) const {
    return (*m_list)[static_cast<size_type>(m_index + offset)];
  }
  const_iterator &operator+=(difference_type offset) { return m_index += offset, *this; }
  const_iterator &operator-=(difference_type offset) { return m_index -= offset, *this; }
  const_iterator &operator++() { return *this += 1; }
  const_iterator &operator--() { return *this -= 1; }
  const_iterator operator++(int) { return ++*this - 1; }
  const_iterator operator--(int) { return --*this + 1; }

  friend const_iterator operator+(const_iterator at, difference_type offset) { return at += offset; }
  friend const_iterator operator+(difference_type offset, const_iterator at) { return at += offset; }
  friend const_iterator operator-(const_iterator at, difference_type offset) { return at -= offset; }
  friend difference_type operator-(const_iterator a, const_iterator b) { return a.m_index - b.m_index; }
  friend bool operator==(const_iterator a, const_iterator b) { return a.m_index == b.m_index; }
  friend auto operator<=>(const_iterator a, const_iterator b) { return a.m_index <=> b.m_index; }
  ///@}

private:
  const MemberList *m_list = nullptr;
  difference_type m_index = 0;
};

inline MemberList::const_iterator MemberList::begin() const noexcept { return {*this, 0}; }
inline MemberList::const_iterator MemberList::end() const noexcept {
  return {*this, static_cast<difference_type>(size())};
}
inline MemberList::const_iterator MemberList::cbegin() const noexcept { return begin(); }
inline MemberList::const_iterator MemberList::cend() const noexcept { return end(); }

} // namespace kestrune
