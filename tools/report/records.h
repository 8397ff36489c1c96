#pragma once

#include "tools/report/report.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

// Records as tables, and a record with all that it holds.

/// An item of a collection with its members.
struct Item {
  const Document *document;
  Record record;
  std::vector<Member> members;
  std::string id; ///< On the page.

  /// The member with that tag; null if there is none.
  const Member *member(std::string_view tag) const;
  /// The text of that member; empty if there is none.
  std::string_view text(std::string_view tag) const;
  /// The number that programs get from that member.
  std::optional<double> number(std::string_view tag) const;
};

/// The items of a collection that the report wants, in their order.
std::vector<Item> itemsOf(const Report &report, const ReportFile &file, const Member &collection);

/// The number that programs get from the text of a member.
std::optional<double> numberIn(const RecordShape &record, const Member &member);

/// A column of a table of records.
struct Column {
  std::string head;
  std::string sentence; ///< What it means; may be empty.
};
/// The column of a member.
Column columnOf(const RecordShape &record, std::string_view member);

/// A cell of a row.
struct Cell {
  std::string text;
  std::optional<double> number; ///< By which it is sorted, where it is one.
};
/// The cell of a member: "010 = 8".
Cell cellOf(const RecordShape &record, const Member &member);

/// A table of records, each of which opens. The details of few records stand in the page, those of many are packed;
/// then the rows after the first few are in a table for readers without scripts, from which the script takes what it
/// shows.
class RecordTable {
public:
  using Detail = std::function<void(Html &)>;

  RecordTable(Html &html, const Report &report, std::string id, std::string caption, std::vector<Column> columns,
              std::size_t rows);
  RecordTable(const RecordTable &) = delete;
  RecordTable &operator=(const RecordTable &) = delete;

  /// Adds a row. `mark` is a word beside the name, such as that it is the user's own. Without `detail` the row opens
  /// only where there is something to be said about it.
  void add(const Item &item, const std::vector<Cell> &cells, const std::string &mark, const Detail &detail);
  void finish();

private:
  void open(const std::string &id, const std::string &caption);
  void close();
  void flush();

  Html &m_html;
  const Report &m_report;
  std::string m_id;
  std::string m_caption;
  std::vector<Column> m_columns;
  bool m_isPacked;
  std::size_t m_rows = 0;
  std::string m_details; // of the rows since the last flush
  std::string m_packs;   // behind the table
};

/// The members of a record as a list, and what is inside it; not those in `but`.
void writeRecord(Html &html, const Report &report, const Item &item, const std::vector<std::string_view> &but = {});
/// What check says about an item, and what changed in it.
void writeRemarks(Html &html, const Report &report, const Item &item);
/// What the members of a record mean.
void writeMeanings(Html &html, const RecordShape &shape);
/// The findings, as a list.
void writeFindings(Html &html, const std::vector<Remarks::Remark> &findings, const std::string &file);

/// "1 model", "2 models"
std::string counted(std::size_t count, const std::string &one, const std::string &many);
