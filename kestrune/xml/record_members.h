#pragma once

#include "kestrune/xml/xml_document.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

/// \file
/// A record is described by a table: one row for each member, in the order of the file. The class declares
/// `struct Members;`, which may be private, and defines it next to its operations, which are then one line each:
///
///     struct CClock::Members : RecordMembers<Members, CClock> {
///       static constexpr auto rows = std::tuple{
///           Row{&CClock::m_value, "Value", "10000"},    // tag and default
///           Row{&CClock::m_description, "Description"}, // tag; the field's class has the default
///           Row{&CClock::m_multipliers},                // a folder sets its own tag
///       };
///     };
///
///     CClock::CClock() { Members::construct(*this, "Clock"); }
///     CClock &CClock::operator=(const CClock &rhs) { return Members::copy(*this, rhs); }
///     void CClock::Init() { Members::init(*this); }
///     void CClock::pushMembers() { Members::push(*this); }
///
/// The class of a field determines whether it is an attribute, an element or a folder. A later version of a record
/// names the version before it, `RecordMembers<Members, CVorlanModel2, CVorlanModel>`, and lists only its own members.
/// A record with a field that is in no row does not compile, so the size of fields that are not stored is declared:
/// `static constexpr std::size_t unstored = ...`.

namespace kestrune {

/// A row of a record's table, independent of the class of the record.
struct MemberRow {
  CXMLPersistent &(*field)(CXMLFolder &record); ///< Returns the field of a record.
  const char *defaultText;                      ///< Null for a folder.
};

} // namespace kestrune

/// The table of a record. `Members` derives from it and has the rows; `Base` is the version before, or CXMLFolder.
template <class Members, class Record, class Base = CXMLFolder>
struct RecordMembers {
  /// A member: its field and, for a value, its tag and default, which must be literals. Without a default, the field
  /// keeps the text that its class starts with.
  template <class Field>
  struct Row {
    /// A folder or collection.
    constexpr Row(Field Record::*folder) requires std::derived_from<Field, CXMLFolder> : field(folder) {}
    /// A value.
    constexpr Row(Field Record::*value, const char *itsTag,
                  const char *itsDefault = nullptr) requires(!std::derived_from<Field, CXMLFolder>)
        : field(value), tag(itsTag), defaultText(itsDefault) {}

    Field Record::*field;              ///< The field of the record.
    const char *tag = nullptr;         ///< The name in the file; null for a folder, which has its own.
    const char *defaultText = nullptr; ///< The default; null if the field keeps that of its class.
  };
  /// The guide for a folder. Clang 14 makes no implicit deduction guides for a template inside a template.
  template <class Field>
  Row(Field Record::*) -> Row<Field>;
  /// The guide for a value.
  template <class Field>
  Row(Field Record::*, const char *, const char * = nullptr) -> Row<Field>;

  /// The size in bytes of the fields that are not stored in the file.
  static constexpr std::size_t unstored = 0;

  /// For the constructor: sets the record's tag and text to `tag`, sets the members' tags and defaults, and builds the
  /// member list.
  static void construct(Record &record, const char *tag) {
    record.PutTag(CString(tag));
    record.CXMLFolder::operator=(tag);
    construct(record);
  }
  /// For the constructor of a later version, whose base has set the tag.
  static void construct(Record &record) {
    initFields(record);
    record.Record::pushMembers();
  }

  /// Init: sets the tags and defaults of all members; a folder initialises itself.
  static void init(Record &record) {
    if constexpr (kIsFirst) {
      initFields(record);
      record.pushMembers();
    } else {
      record.Base::Init(); // rebuilds the member list
      initFields(record);
    }
  }

  /// pushMembers: the members of the base, followed by the record's own.
  static void push(Record &record) {
    record.m_members.clear();
    record.Base::pushMembers();
    append(record);
  }

  /// For the copying operator=.
  static Record &copy(Record &to, const Record &from) {
    const auto copyField = [&](const auto &row) { to.*row.field = from.*row.field; };
    if constexpr (kIsFirst) {
      to.CXMLPersistent::operator=(from);
      forEachRow(copyField);
      to.pushMembers();
    } else {
      to.Base::operator=(from); // rebuilds the member list
      forEachRow(copyField);
    }
    return to;
  }

  /// Sets only the tags and defaults of the record's own members.
  static void initFields(Record &record) {
    forEachRow([&](const auto &row) { initField(record.*row.field, row); });
  }

  /// All members of the record, those of the base first.
  static constexpr auto allRows() {
    if constexpr (requires { Base::Members::allRows(); })
      return join(Base::Members::allRows());
    else
      return join(std::array<kestrune::MemberRow, 0>());
  }

protected:
  /// Appends the record's own members to its list.
  static void append(Record &record) {
    static_assert(sizeof(Record) == sizeof(Base) + fieldSize(Members::rows) + Members::unstored,
                  "a field is not in the table");
    static constexpr auto all = Members::allRows();
    static constexpr kestrune::MemberTable table(all);
    CXMLFolder &folder = record;
    const std::size_t wanted = folder.m_members.size() + std::tuple_size_v<decltype(Members::rows)>;
    // A later version appends to the list of its base, so reserve enough for all at once.
    if (folder.m_members.capacity() < wanted)
      folder.m_members.reserve(std::max(wanted, 2 * folder.m_members.size()));
    forEachRow([&](const auto &row) { folder.m_members.push_back(&(record.*row.field)); });
    folder.m_table = &table;
  }

  /// `before`, followed by the record's own members.
  template <std::size_t count>
  static constexpr auto join(const std::array<kestrune::MemberRow, count> &before) {
    constexpr std::size_t own = std::tuple_size_v<decltype(Members::rows)>;
    std::array<kestrune::MemberRow, count + own> all{};
    std::copy(before.begin(), before.end(), all.begin());
    [&]<std::size_t... index>(std::index_sequence<index...>) { ((all[count + index] = memberRow<index>()), ...); }
    (std::make_index_sequence<own>());
    return all;
  }

private:
  static constexpr bool kIsFirst = std::is_same_v<Base, CXMLFolder>;

  template <class Visit>
  static void forEachRow(Visit visit) {
    static constexpr auto rows = Members::rows; // a copy, so that the table itself is not a symbol of the library
    std::apply([&](const auto &...row) { (visit(row), ...); }, rows);
  }

  template <class Field>
  static void initField(Field &field, const Row<Field> &row) {
    if constexpr (std::derived_from<Field, CXMLFolder>) {
      field.Init();
    } else {
      // Set first, so that Init finds the tag in place and does not copy it.
      field.PutTag(CString::OfLiteral(row.tag));
      if (row.defaultText != nullptr)
        field.Init(row.tag, row.defaultText);
    }
  }

  template <class... Field>
  static constexpr std::size_t fieldSize(const std::tuple<Row<Field>...> &) {
    return (sizeof(Field) + ... + 0);
  }

  template <std::size_t index>
  static constexpr kestrune::MemberRow memberRow() {
    constexpr auto row = std::get<index>(Members::rows);
    return {[](CXMLFolder &record) -> CXMLPersistent & { return static_cast<Record &>(record).*row.field; },
            defaultOf(row)};
  }

  template <class Field>
  static constexpr const char *defaultOf(const Row<Field> &row) {
    if (row.defaultText != nullptr || std::derived_from<Field, CXMLFolder>)
      return row.defaultText;
    return std::derived_from<Field, CXMLHexElement> ? kestrune::kHexDefault : kestrune::kUnassigned;
  }
};

/// The table of a document: its sections. A document reads and writes only its header and its own sections, not those
/// of earlier versions.
template <class Members, class Document, class Base = CXMLTopLevelFolder>
struct DocumentMembers : RecordMembers<Members, Document, Base> {
  using RecordMembers<Members, Document, Base>::construct;
  /// For the constructor of the first version: sets the document's tag and text to `tag`, and initialises the rest.
  static void construct(Document &document, const char *tag) {
    document.PutTag(CString(tag));
    document.CXMLFolder::operator=(tag);
    document.Document::Init();
    document.Document::pushMembers();
  }

  /// pushMembers: the header, followed by the document's own sections.
  static void push(Document &document) {
    document.CXMLTopLevelFolder::pushMembers();
    DocumentMembers::append(document);
  }

  /// The header and the document's own sections.
  static constexpr auto allRows() {
    return DocumentMembers::join(std::array{kestrune::MemberRow{
        [](CXMLFolder &document) -> CXMLPersistent & { return static_cast<CXMLTopLevelFolder &>(document).Contents; },
        nullptr}});
  }
};
