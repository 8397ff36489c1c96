#pragma once

#include "tests/test_support.h"

#include <algorithm>
#include <sstream>

namespace support {

/// Shows what a derived class may use.
struct NameProbe : CFilename {
  using CFilename::CFilename, CFilename::FindMacro, CFilename::GetKestruneFolder, CFilename::GetMacroName,
      CFilename::GetMacroValue, CFilename::GetValue, CFilename::Prefix, CFilename::TryToFit;
  static void clearTable() { oMacros.RemoveAll(); }
};

/// The drives C, D and E are folders of a temporary one, the current directory is D:\w, the installation folder is
/// C:\Kestrune, and the macro table holds the defaults, now and afterwards.
struct NameTest : testing::Test {
  void SetUp() override { NameProbe::clearTable(), macros = NameProbe(""); }
  void TearDown() override { NameProbe::clearTable(); }
  std::string make(const std::string &name) const {
    std::filesystem::create_directories(folder / name);
    return folder / name;
  }

  NameProbe macros{L""};
  TempFolder folder;
  Environment registry{"KESTRUNE_REGISTRY", (folder / "own.reg").c_str()};
  Environment drives{"KESTRUNE_DRIVES", ("C=" + make("c") + ";D=" + make("d") + ";E=" + make("e")).c_str()};
  CurrentDirectory directory{make("d/w")};
};

/// Holds `result(name, argument)`, from the first two cells of each row of a table, against the row's last cell. Cells
/// stand between blanks and line ends; `-` is the empty text, `null` none at all, and `~` a blank.
template <class Result>
void check(std::ptrdiff_t columns, const std::string &table, Result result) {
  std::istringstream in(table);
  std::vector<std::string> cells(std::istream_iterator<std::string>(in), {});
  const auto text = [](std::string &cell) {
    std::replace(cell.begin(), cell.end(), '~', ' ');
    return cell == "null" ? nullptr : cell == "-" ? "" : cell.c_str();
  };
  for (auto row = cells.begin(); row != cells.end(); row += columns) {
    ASSERT_GE(cells.end() - row, columns);
    EXPECT_STREQ(CString(result(NameProbe(text(row[0])), text(row[1]))), text(row[columns - 1]))
        << row[0] << " " << row[1];
  }
}

/// Numbers as they stand in a cell: one behind the other.
template <class... Numbers>
CString digits(Numbers... numbers) {
  return (std::to_string(numbers) + ...).c_str();
}

} // namespace support
