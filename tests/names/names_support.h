#pragma once

#include "tests/document_support.h"

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

/// Holds `result(name, argument)`, from the first two cells of each row of a table, against the row's last cell.
template <class Result>
void check(std::size_t columns, const std::string &table, Result result) {
  checkRows(columns, table, [&](const Cells &row) { return result(NameProbe(row[0]), row[1]); });
}

/// Numbers as they stand in a cell: one behind the other.
template <class... Numbers>
CString digits(Numbers... numbers) {
  return (std::to_string(numbers) + ...).c_str();
}

} // namespace support
