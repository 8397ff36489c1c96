#pragma once

#include "kestrune/xml/xml_document.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <string_view>
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
    kestrune::MemberRows::setName(record, tag);
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
    listOf(record).extend(baseTable(), table(), ownRows());
  }

  /// For the copying operator=.
  static Record &copy(Record &to, const Record &from) {
    if constexpr (kIsFirst)
      to.CXMLPersistent::operator=(from);
    else
      to.Base::operator=(from);
    kestrune::MemberRows::copy(to, from, ownRows());
    forEachRow([&]<class Field>(const Row<Field> &row) {
      if constexpr (!kIsValue<Field>)
        to.*row.field = from.*row.field;
    });
    if constexpr (kIsFirst)
      to.pushMembers(); // that of a base has done it
    return to;
  }

  /// Sets only the tags and defaults of the record's own members.
  static void initFields(Record &record) {
    kestrune::MemberRows::init(record, ownRows());
    forEachRow([&]<class Field>(const Row<Field> &row) { initField(record.*row.field, row); });
  }

  /// All members of the record, those of the base first.
  static constexpr auto allRows() {
    if constexpr (requires { Base::Members::allRows(); })
      return join(Base::Members::allRows());
    else
      return join(std::array<kestrune::MemberRow, 0>());
  }

  /// The list of the record's members. The same object at each call.
  static const kestrune::MemberTable &table() {
    static_assert(sizeof(Record) == sizeof(Base) + fieldSize(Members::rows) + Members::unstored,
                  "a field is not in the table");
    static constexpr auto all = Members::allRows();
    static constexpr kestrune::MemberTable table(all);
    return table;
  }

protected:
  /// How many members the record adds to those of its base.
  static constexpr std::size_t kOwn = std::tuple_size_v<decltype(Members::rows)>;

  /// The list of the record's members.
  static kestrune::MemberList &listOf(Record &record) { return static_cast<CXMLFolder &>(record).m_members; }

  /// `before`, followed by the record's own members.
  template <std::size_t count>
  static constexpr auto join(const std::array<kestrune::MemberRow, count> &before) {
    return [&]<std::size_t... old, std::size_t... own>(std::index_sequence<old...>, std::index_sequence<own...>) {
      return std::array<kestrune::MemberRow, count + kOwn>{before[old]..., memberRow<own>()...};
    }
    (std::make_index_sequence<count>(), std::make_index_sequence<kOwn>());
  }

  /// All members, with the first of the record's own in the place of `replaced`, a member of an older version.
  template <class Field, class Owner>
  static constexpr auto replacing(Field Owner::*replaced) {
    const auto all = RecordMembers::allRows();
    constexpr std::size_t first = std::tuple_size_v<decltype(all)> - kOwn;
    const std::size_t place = position(replaced);
    return [&]<std::size_t... index>(std::index_sequence<index...>) {
      return std::array<kestrune::MemberRow, sizeof...(index)>{all[index == place  ? first
                                                                   : index < first ? index
                                                                                   : index + 1]...};
    }
    (std::make_index_sequence<first + kOwn - 1>());
  }

private:
  template <class, class, class>
  friend struct RecordMembers;

  static constexpr bool kIsFirst = std::is_same_v<Base, CXMLFolder>;

  template <class Visit>
  static void forEachRow(Visit visit) {
    static constexpr auto rows = Members::rows; // a copy, so that the table itself is not a symbol of the library
    std::apply([&](const auto &...row) { (visit(row), ...); }, rows);
  }

  template <class Field>
  static constexpr kestrune::MemberRow::Class fieldClass() {
    using enum kestrune::MemberRow::Class;
    if constexpr (std::is_same_v<Field, CXMLAttribute>)
      return kAttribute;
    else if constexpr (std::is_same_v<Field, CXMLBoolAttribute>)
      return kBoolAttribute;
    else if constexpr (std::is_same_v<Field, CXMLElement>)
      return kElement;
    else if constexpr (std::is_same_v<Field, CXMLHexElement>)
      return kHexElement;
    else
      return kOther;
  }

  /// Whether the field is of one of the four value classes, and not of one derived from it.
  template <class Field>
  static constexpr bool kIsValue = fieldClass<Field>() != kestrune::MemberRow::Class::kOther;

  static kestrune::MemberTable ownRows() {
    static constexpr auto own = join(std::array<kestrune::MemberRow, 0>());
    return own;
  }

  /// The position of a member in the list.
  template <class Field, class Owner>
  static constexpr std::size_t position(Field Owner::*field) {
    if constexpr (!std::is_same_v<Owner, Record>) {
      return Base::Members::position(field);
    } else {
      std::size_t index = allRows().size() - kOwn;
      const auto isOther = [&]<class Other>(const Row<Other> &row) {
        bool same = false;
        if constexpr (std::is_same_v<Other, Field>)
          same = row.field == field;
        index += same ? 0 : 1;
        return !same;
      };
      std::apply([&](const auto &...row) { (isOther(row) && ...); }, Members::rows);
      return index;
    }
  }

  /// The list of a record of the base class; null if it has no members or no table.
  static const kestrune::MemberTable *baseTable() {
    if constexpr (requires { Base::Members::table(); })
      return &Base::Members::table();
    else
      return nullptr;
  }

  template <class Field>
  static void initField(Field &field, const Row<Field> &row) {
    if constexpr (std::derived_from<Field, CXMLFolder>) {
      field.Init();
    } else if constexpr (!kIsValue<Field>) {
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
    using Field = typename decltype(fieldOf(row))::type;
    constexpr std::string_view text = defaultOf(row);
    constexpr bool isHex = std::is_same_v<Field, CXMLHexElement>;
    return {fieldPointer<index, Field>(), fieldClass<Field>(),
            row.defaultText != nullptr,   isHex && text != "0" && text.find("0x") == std::string_view::npos,
            CString::Constant(row.tag),   CString::Constant(isHex && text == "0" ? "0x0" : text.data())};
  }

  template <std::size_t index, class Field>
  static constexpr kestrune::MemberRow::Field fieldPointer() {
    constexpr auto field = std::get<index>(Members::rows).field;
    if constexpr (std::is_same_v<Field, CXMLAttribute>)
      return {.attribute = static_cast<Field CXMLFolder::*>(field)};
    else if constexpr (std::is_same_v<Field, CXMLBoolAttribute>)
      return {.boolAttribute = static_cast<Field CXMLFolder::*>(field)};
    else if constexpr (std::is_same_v<Field, CXMLElement>)
      return {.element = static_cast<Field CXMLFolder::*>(field)};
    else if constexpr (std::is_same_v<Field, CXMLHexElement>)
      return {.hexElement = static_cast<Field CXMLFolder::*>(field)};
    else
      return {.other = [](CXMLFolder &record) -> CXMLPersistent & { return static_cast<Record &>(record).*field; }};
  }

  template <class Field>
  static std::type_identity<Field> fieldOf(const Row<Field> &);

  /// The text of the member in a new record; empty for a folder.
  template <class Field>
  static constexpr const char *defaultOf(const Row<Field> &row) {
    if (row.defaultText != nullptr)
      return row.defaultText;
    if (std::derived_from<Field, CXMLFolder>)
      return "";
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
    kestrune::MemberRows::setName(document, tag);
    document.Document::Init();
    document.Document::pushMembers();
  }

  /// pushMembers: the header, followed by the document's own sections.
  static void push(Document &document) { DocumentMembers::listOf(document).refer(DocumentMembers::table()); }

  /// The header and the document's own sections.
  static constexpr auto allRows() {
    constexpr kestrune::MemberRow contents{
        {.other = [](CXMLFolder &document) -> CXMLPersistent & {
          return static_cast<CXMLTopLevelFolder &>(document).Contents;
        }},
        kestrune::MemberRow::Class::kOther,
        false,
        false,
        CString::Constant(""),
        CString::Constant(""),
    };
    return DocumentMembers::join(std::array{contents});
  }
};
