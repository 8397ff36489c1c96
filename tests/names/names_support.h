#pragma once

#include "tests/document_support.h"

namespace support {

/// Shows what a derived class may use.
struct NameProbe : CFilename {
  using CFilename::CFilename, CFilename::FindMacro, CFilename::GetMacroName, CFilename::GetMacroValue,
      CFilename::GetValue, CFilename::oMacros, CFilename::Prefix;
};

/// The drives C, D and E are folders of a temporary one, the current directory is D:\w, the installation folder is
/// C:\Kestrune, and the macro table holds the defaults, now and afterwards.
struct NameTest : testing::Test {
  void SetUp() override {
    NameProbe::oMacros.RemoveAll();
    macros = NameProbe("");
  }
  void TearDown() override { NameProbe::oMacros.RemoveAll(); }
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

} // namespace support
