#pragma once

#include "kestrune/xml/xml_folder.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

/// Walks the one place where a record names its members. That place is a private static operation of the record,
///
///     template <class Visit> static constexpr void forEachMember(Visit visit) {
///       visit(&CClock::m_value, "Value", "10000");        // tag and default
///       visit(&CClock::m_description, "Description");     // tag; the default of its class stays
///       visit(&CClock::m_multipliers);                    // a folder names itself
///     }
///
/// in the order of the file, with MemberList as a friend; the tags are literals. A record that extends an older one
/// lists its own members alone.
struct MemberList {
  /// Gives each member its tag and default; a member that is a folder initialises itself.
  template <class Record>
  static void init(Record &record) {
    Record::forEachMember(Initializer<Record>{record});
  }

  /// Appends a pointer to each member to the record's list.
  template <class Record>
  static void append(Record &record) {
    CXMLFolder &folder = record;
    const std::size_t wanted = folder.m_members.size() + count<Record>();
    // The list of an older version is as long as it needs to be; room for those behind it is taken once.
    if (folder.m_members.capacity() < wanted)
      folder.m_members.reserve(std::max(wanted, 2 * folder.m_members.size()));
    Record::forEachMember(
        [&](auto member, const auto &.../*tag and default*/) { folder.m_members.push_back(&(record.*member)); });
  }

  /// Assigns each member from that of `from`.
  template <class Record>
  static void copy(Record &to, const Record &from) {
    Record::forEachMember([&](auto member, const auto &...) { to.*member = from.*member; });
  }

  template <class Record>
  static constexpr std::size_t count() {
    std::size_t members = 0;
    Record::forEachMember([&](auto, const auto &...) { ++members; });
    return members;
  }

  /// What the members take up together: a record whose size is not that of its base and its list has forgotten one.
  template <class Record>
  static constexpr std::size_t size() {
    std::size_t bytes = 0;
    Record::forEachMember([&](auto member, const auto &...) { bytes += sizeof(Field<decltype(member)>); });
    return bytes;
  }

private:
  template <class Pointer>
  struct FieldOf;
  template <class Class, class Type>
  struct FieldOf<Type Class::*> {
    using type = Type;
  };
  template <class Pointer>
  using Field = typename FieldOf<Pointer>::type;

  template <class Record>
  struct Initializer {
    Record &record;

    template <class Folder>
    void operator()(Folder folder) const {
      (record.*folder).Init();
    }
    template <class Value>
    void operator()(Value value, const char *tag) const {
      (record.*value).PutTag(CString::OfLiteral(tag));
    }
    template <class Value, class Default>
    void operator()(Value value, const char *tag, Default text) const {
      // Init finds the tag in place already, and makes no copy of it.
      (record.*value).PutTag(CString::OfLiteral(tag));
      (record.*value).Init(tag, text);
    }
  };
};
