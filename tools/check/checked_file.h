#pragma once

#include "tools/kinds.h"
#include "tools/outline.h"
#include "tools/shape.h"
#include "tools/source.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

/// A file as `check` sees it: all records that stand in it, with the element that each member is read from. It knows
/// what may stand where from the library's tables, and reads the file itself, so that it sees what the library drops.
class CheckedFile {
public:
  using Index = Outline::Index;
  static constexpr Index kNone = Outline::kNone;

  struct Record {
    const RecordShape *shape = nullptr;
    Index element = kNone;
    Index parent = kNone; ///< The record around it; kNone for the root.
    Index firstSlot = 0;
    const MemberShape *collection = nullptr; ///< The member of the parent that it is an item of; null for others.
    bool isLost = false;                     ///< An item that the library passes over or leaves out.
  };

  explicit CheckedFile(Source source);
  CheckedFile(const CheckedFile &) = delete;
  CheckedFile &operator=(const CheckedFile &) = delete;

  const Source &source() const { return m_source; }
  const std::string &name() const { return m_source.name; }
  /// The last part of the name.
  std::string baseName() const;
  /// The folder that it lies in, absolute; empty for the standard input.
  const std::string &folder() const { return m_folder; }
  const Outline &outline() const { return m_outline; }
  const Kind *kind() const { return m_kind; }
  bool isKind(std::string_view root) const { return m_kind != nullptr && m_kind->root == root; }
  /// The format version that the content needs.
  int version() const { return m_version; }
  /// Whether the file was read to its end.
  bool isWhole() const { return m_outline.failure().kind == Outline::Failure::Kind::kNone; }
  /// Whether what follows in an element could not be read.
  bool isCut(Index element) const { return !isWhole() && m_outline.end(element) == m_outline.size(); }
  /// The number that the name of an add-on ends in; 0 for other names.
  int addOnNumber() const;
  /// The name of the file that this add-on belongs to.
  std::string addOnOf() const;

  /// All records, the root first; without a kind there are none.
  std::span<const Record> records() const { return m_records; }
  const Record &record(Index number) const { return m_records[number]; }
  bool isRecord(Index element) const { return m_isRecord[element]; }
  void lose(Index record) { m_records[record].isLost = true; }
  /// The records of that tag, in the order of the file.
  std::vector<Index> recordsOf(std::string_view tag) const;

  /// The element that a member stands in directly, for an attribute that of the record; kNone if it is missing.
  Index slot(const Record &record, const MemberShape &member) const;
  /// Where the text of a member begins, or where its attribute or element does. @{
  std::size_t textOffset(const Record &record, const MemberShape &member) const;
  std::size_t nameOffset(const Record &record, const MemberShape &member) const;
  ///@}
  /// The text of a member, as a parser gives it. Nothing if it is missing, or not a plain text.
  std::optional<std::string> text(const Record &record, const MemberShape &member) const;
  std::optional<std::string> text(const Record &record, std::string_view tag) const;
  /// Where the text of the member with that tag begins.
  std::size_t textOffset(const Record &record, std::string_view tag) const;

  /// What people call a record: its name or key, behind that of an item around it.
  std::string nameOf(Index record) const;
  /// The road to a record, as addresses have it.
  std::string addressOf(Index record) const;

private:
  void askLibrary();
  void addRecords();
  Index addRecord(const RecordShape &shape, Index element, Index parent, const MemberShape *collection);
  void addInner(Index record);

  Source m_source;
  std::string m_folder;
  Outline m_outline;
  const Kind *m_kind = nullptr;
  int m_version = 1;
  std::vector<Record> m_records;
  std::vector<Index> m_slots;
  std::vector<bool> m_isRecord; // by element
  std::size_t m_looked = 0;     // at elements of items, so far
};

/// The text of an element that holds no other; nothing if only a parser could tell it.
std::optional<std::string> plainText(const Outline &outline, Outline::Index element);
