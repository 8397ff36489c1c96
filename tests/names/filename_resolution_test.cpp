#include "tests/names/names_support.h"
#include "tests/tables.h"

namespace {

using FilenameResolutionTest = support::NameTest;
using support::Cells;

/// What a resolution gives, with one name for the result and again in place, which must be the same.
CFilename resolved(bool (CFilename::*resolve)(CFilename &, const char *) const, const std::string &text,
                   const char *folder) {
  CFilename name(text.c_str()), out("before");
  EXPECT_TRUE((name.*resolve)(out, folder));
  EXPECT_TRUE((name.*resolve)(name, folder));
  EXPECT_STREQ(name, out);
  return out;
}
CFilename absolute(const std::string &name, const char *defaultFolder = nullptr) {
  return resolved(&CFilename::GetAbsolute, name, defaultFolder);
}
CFilename relative(const std::string &name, const char *base = nullptr) {
  return resolved(&CFilename::GetRelative, name, base);
}

// Another drive than the current one is at its root, and a value from the environment does not count as absolute.
/// The cells of a row that holds a name and a folder, which may be null.
template <CFilename (*resolve)(const std::string &, const char *)>
Cells resolvedCells(const Cells &row) {
  return {std::string(resolve(row[0], row[1] != "(null)" ? row[1].c_str() : nullptr).View())};
}

TEST_F(FilenameResolutionTest, GetAbsolute) {
  const support::Environment missing("kNone", nullptr), variable("kDir", R"(E:\y)");
  support::expectTable("names/absolute.txt", 2, resolvedCells<absolute>);
  EXPECT_STREQ(absolute(folder / "e/y/x"), R"(E:\y\x)") << "a host path counts as its drive form";
}

TEST_F(FilenameResolutionTest, GetRelative) {
  support::expectTable("names/relative.txt", 2, resolvedCells<relative>);
  EXPECT_STREQ(relative(folder / "e/x/a.xml", R"(E:\x\sub)"), R"(..\a.xml)") << "a host path leads back to its file";
}

TEST_F(FilenameResolutionTest, FilesAreFoundAlongASearchPath) {
  for (const char *file : {"d/w/a.xml", "d/w/.cfg/a.xml", "e/y/a.xml", "e/y/only"})
    support::write(folder / file, "");
  const auto along = [](const char *path, const char *name) {
    CFilename found("none");
    return CFilename(name).FindFile(found, path) != 0 ? found : CFilename("none");
  };
  EXPECT_STREQ(along(R"(E:\y)", "a.xml"), R"(D:\w\a.xml)") << "the current directory comes first";
  EXPECT_STREQ(along("sub;E:/y", "only"), R"(E:\y\only)");
  EXPECT_STREQ(along("E:", R"(y\only)"), R"(E:\y\only)");
  EXPECT_STREQ(along(R"(C:\;;E:\y)", "only"), "none") << "an empty folder ends the path";
  EXPECT_STREQ(along(R"(E:\)", R"(y\.\only)"), "none") << "it says itself where it lies";
  EXPECT_STREQ(along(R"(E:\)", R"(\y\only)"), "none") << "it begins at the root";
  for (const char *const name : {R"(.\a.xml)", R"(..\w\a.xml)", R"(.cfg\..\a.xml)"})
    EXPECT_STREQ(along("", name), R"(D:\w\a.xml)") << name;
  EXPECT_STREQ(along("", R"(.cfg\a.xml)"), R"(D:\w\.cfg\a.xml)") << "a name may begin with a dot";
}

TEST_F(FilenameResolutionTest, SearchPaths) {
  EXPECT_STREQ(GetSearchPathItem("a;;c", 2), "c");
  EXPECT_STREQ(GetSearchPathItem("a;;c", 3), "");
  EXPECT_STREQ(CFilename(R"(C:\a\b\c.xml)").GetRelativePathName(R"(C:\a;C:\A\B;C:\a)"), "c.xml");
  EXPECT_STREQ(CFilename(R"(C:\ab\c)").GetRelativePathName(R"(C:\a;D:\z)"), R"(C:\ab\c)");
}

TEST_F(FilenameResolutionTest, SmooshShortensForDisplay) {
  const CFilename name(R"(C:\aaaa\bbbb\cccc\file.txt)");
  EXPECT_STREQ(name.Smoosh(25), R"(C:\...\bbbb\cccc\file.txt)");
  EXPECT_STREQ(name.Smoosh(15), R"(C:\...\file.txt)");
  EXPECT_STREQ(name.Smoosh(14), "file.txt");
}

} // namespace
