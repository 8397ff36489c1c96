#include "tests/names/names_support.h"

namespace {

using FilenameResolutionTest = support::NameTest;

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
TEST_F(FilenameResolutionTest, GetAbsolute) {
  const support::Environment missing("kNone", nullptr), variable("kDir", R"(E:\y)");
  EXPECT_STREQ(absolute(R"($StdTypes$\x)"), R"(C:\Kestrune\Types\x)");
  EXPECT_STREQ(absolute(R"(..\x)"), R"(D:\x)");
  EXPECT_STREQ(absolute("C:x", R"(E:\y)"), R"(C:\x)");
  EXPECT_STREQ(absolute("d:x", R"(E:\y)"), R"(D:\w\x)");
  EXPECT_STREQ(absolute("x", "$StdTypes$"), R"(C:\Kestrune\Types\x)");
  EXPECT_STREQ(absolute(R"(.\x)", R"(E:\y)"), R"(E:\y\x)");
  EXPECT_STREQ(absolute("x", R"(.\sub)"), R"(D:\w\sub\x)");
  EXPECT_STREQ(absolute(R"(\x)", R"(E:\y)"), R"(D:\x)");
  EXPECT_STREQ(absolute("", "$StdTypes$"), "$StdTypes$") << "an empty name is the folder itself";
  EXPECT_STREQ(absolute(R"($kNone$\x)"), R"(D:\x)");
  EXPECT_STREQ(absolute(R"($kDir$\x)"), R"(D:\w\E:\y\x)");
  EXPECT_STREQ(absolute(R"(\\srv\s\x)"), R"(\\srv\s\x)");
  EXPECT_STREQ(absolute(folder / "e/y/x"), R"(E:\y\x)") << "a host path counts as its drive form";
}

TEST_F(FilenameResolutionTest, GetRelative) {
  // Without a folder near it the longest macro fits, and the first of equally long ones.
  EXPECT_STREQ(relative(R"(C:\Kestrune\Types\Vorlan.xml)"), "$STDVORLANTYP$");
  EXPECT_STREQ(relative(R"(C:\KESTRUNE\types\o.xml)"), R"($STDTYPES$\o.xml)");
  EXPECT_STREQ(relative(R"(C:\Kestrune\Images\a)"), R"($STDIMAGES$\a)");
  EXPECT_STREQ(relative(R"($StdTypes$\a/b.xml)", R"(D:\proj)"), R"($StdTypes$\a\b.xml)");
  // Below the base, and beside it.
  EXPECT_STREQ(relative(R"(D:\proj\a\B.xml)", R"(d:\PROJ)"), R"(a\B.xml)");
  EXPECT_STREQ(relative(R"(D:\proj\other\x)", R"(D:\proj/sub)"), R"(..\other\x)");
  EXPECT_STREQ(relative(R"(D:\x.xml)", R"(D:\proj)"), R"(D:\x.xml)");
  EXPECT_STREQ(relative(R"(D:\project\x)", R"(D:\proj)"), R"(D:\project\x)");
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
  EXPECT_STREQ(along("", R"(..\w\.\a.xml)"), R"(D:\w\a.xml)");
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
