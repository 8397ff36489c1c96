#pragma once

#include "tests/document_support.h"

#include <sstream>

// Tables of the test data: headings, then a row a line, with cells that `|` separates.

namespace support {

using Cells = std::vector<std::string>;

/// Compares each row of a table with what `make` makes of its first `inputs` cells. The cells after those that it makes
/// are notes.
template <class Make>
void expectTable(const std::string &file, std::size_t inputs, Make make) {
  std::istringstream table(data(file));
  std::string line, cell;
  for (std::getline(table, line); std::getline(table, line);) {
    Cells row;
    for (std::istringstream cells(line); std::getline(cells, cell, '|');) {
      const std::string text = row.empty() ? cell : cell.substr(1);
      row.push_back(text.substr(0, text.find_last_not_of(' ') + 1));
    }
    const Cells made = make(row);
    ASSERT_GE(row.size(), inputs + made.size()) << line;
    const auto expected = row.begin() + static_cast<std::ptrdiff_t>(inputs);
    EXPECT_EQ(made, Cells(expected, expected + static_cast<std::ptrdiff_t>(made.size()))) << line;
  }
}

} // namespace support
