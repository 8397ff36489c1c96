#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

/// A text from a file as it is safe to show: control characters are shown as \n, \t or \x1B, and a text that is too
/// long for a line is cut.
std::string shown(std::string_view text, std::size_t mostColumns = 1000);

/// Columns that a terminal takes for a UTF-8 text.
std::size_t width(std::string_view text);

/// Rows under headings, in columns as wide as they need to be.
class Table {
public:
  explicit Table(std::vector<std::string> headings) : m_rows{std::move(headings)} {}

  void add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }
  void print(std::ostream &out) const;

private:
  std::vector<std::vector<std::string>> m_rows; // the headings first
};
