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

// Another drive than the current one is at its root, and a value from the environment does not count as one.
TEST_F(FilenameResolutionTest, GetAbsolute) {
  const support::Environment missing("kNone", nullptr), variable("kDir", R"(E:\y)");
  const std::string host = folder / "e/y";
  macros.AddMacro("$host$", host.c_str());
  macros.AddMacro("$rel$", "sub");
  EXPECT_STREQ(absolute(R"($StdTypes$\x)"), R"(C:\Kestrune\Types\x)");
  EXPECT_STREQ(absolute("x.xml"), R"(D:\w\x.xml)");
  EXPECT_STREQ(absolute(R"(..\x)"), R"(D:\x)");
  EXPECT_STREQ(absolute("a/b"), R"(D:\w\a\b)");
  // A name without a folder of its own lies below the default folder.
  EXPECT_STREQ(absolute("x", "$StdTypes$"), R"(C:\Kestrune\Types\x)");
  EXPECT_STREQ(absolute(R"(.\x)", R"(E:\y)"), R"(E:\y\x)");
  EXPECT_STREQ(absolute("x", R"(.\sub)"), R"(D:\w\sub\x)");
  EXPECT_STREQ(absolute(R"(\x)", R"(E:\y)"), R"(D:\x)");
  EXPECT_STREQ(absolute("C:x", R"(E:\y)"), R"(C:\x)");
  EXPECT_STREQ(absolute("d:x", R"(E:\y)"), R"(D:\w\x)");
  EXPECT_STREQ(absolute("", "$StdTypes$"), "$StdTypes$") << "an empty name is the folder itself";
  EXPECT_STREQ(absolute(R"(.\)", "E:/y"), R"(E:\y)");
  // A macro without a value counts as missing.
  EXPECT_STREQ(absolute(R"($kNone$\x)"), R"(D:\x)");
  EXPECT_STREQ(absolute(R"($kDir$\x)"), R"(D:\w\E:\y\x)");
  EXPECT_STREQ(absolute(R"($rel$\x)", R"(E:\)"), R"(E:\sub\x)");
  // A host path counts as its drive form.
  EXPECT_STREQ(absolute("//srv/s/x"), R"(\\srv\s\x)");
  EXPECT_STREQ(absolute(host + "/x"), R"(E:\y\x)");
  EXPECT_STREQ(absolute("x", "$host$"), R"(E:\y\x)");
}

TEST_F(FilenameResolutionTest, ACurrentDirectoryOfMoreThan254BytesCannotBeUsed) {
  const std::string parent = "d/" + std::string(200, 'a') + "/";
  for (const char *const name : {"x", "D:x"}) {
    CFilename out("before");
    const support::CurrentDirectory tooLong(make(parent + std::string(51, 'b')));
    EXPECT_FALSE(CFilename(name).GetAbsolute(out, nullptr)) << name;
    EXPECT_STREQ(out, "before");
    const support::CurrentDirectory longest(make(parent + std::string(50, 'b')));
    EXPECT_TRUE(CFilename(name).GetAbsolute(out, nullptr)) << name;
    EXPECT_EQ(out.GetLength(), 256);
  }
}

TEST_F(FilenameResolutionTest, GetRelative) {
  const std::string host = folder / "e/x"; // the current drive is D
  // Without a folder near it the longest macro fits.
  EXPECT_STREQ(relative(R"(C:\Kestrune\Types\Vorlan.xml)"), "$STDVORLANTYP$");
  EXPECT_STREQ(relative(R"(C:\KESTRUNE\types\o.xml)", ""), R"($STDTYPES$\o.xml)");
  EXPECT_STREQ(relative(R"(x\c:\kestrune\A)"), R"(x\$KESTRUNE$\A)");
  EXPECT_STREQ(relative(R"($StdTypes$\a/b.xml)", R"(D:\proj)"), R"($StdTypes$\a\b.xml)");
  // Below the base, and beside it.
  EXPECT_STREQ(relative(R"(D:\proj\a\B.xml)", R"(d:\PROJ)"), R"(a\B.xml)");
  EXPECT_STREQ(relative(R"(D:\proj\other\x)", R"(D:\proj/sub)"), R"(..\other\x)");
  EXPECT_STREQ(relative(R"(D:\x.xml)", R"(D:\proj)"), R"(D:\x.xml)");
  EXPECT_STREQ(relative(R"(D:\project\x)", R"(D:\proj)"), R"(D:\project\x)");
  EXPECT_STREQ(relative(R"(\a\b)", R"(\c)"), R"(\a\b)");
  // A relative form of a host path leads back to its file.
  EXPECT_STREQ(relative(host + "/a.xml", host.c_str()), "a.xml");
  EXPECT_STREQ(relative(host + "/a.xml", R"(E:\x\sub)"), R"(..\a.xml)");
}

TEST_F(FilenameResolutionTest, TryToFitTakesALongerValueOnly) {
  macros.AddMacro("$empty$", "");
  CFilename source(R"(C:\KESTRUNE\Types\x)"), out("before");
  int best = -1;
  macros.TryToFit(source, "$empty$", out, best);
  EXPECT_STREQ(out, "before");
  macros.TryToFit(source, "$Kestrune$", out, best);
  EXPECT_STREQ(out, R"($Kestrune$\Types\x)");
  EXPECT_EQ(best, 11);
  macros.TryToFit(source, "$KESTRUNE$", out, best);
  EXPECT_STREQ(out, R"($Kestrune$\Types\x)") << "equally long is not longer";
  macros.TryToFit(source, "$StdTypes$", out, best);
  EXPECT_STREQ(out, R"($StdTypes$\x)");
  EXPECT_EQ(best, 17);
}

/// Where `look` finds the file, or "none" with the result untouched.
template <class Look>
CFilename found(Look look) {
  CFilename found("none");
  return look(found) != 0 || found != "none" ? found : CFilename("none");
}

TEST_F(FilenameResolutionTest, FilesAreFoundAlongASearchPath) {
  for (const char *file : {"d/w/a.xml", "d/w/sub/x.xml", "d/w/sub/.cfg/a.xml", "e/y/x.xml", "e/y/only", "e/a./b"})
    support::write(folder / file, "");
  const auto exists = [](const char *name) {
    return found([&](CFilename &path) { return CFilename(name).FileExists(path, nullptr); });
  };
  EXPECT_STREQ(exists("a.xml"), R"(D:\w\a.xml)");
  EXPECT_STREQ(exists("E:y/x.xml"), R"(E:\y/x.xml)");
  EXPECT_STREQ(exists((folder / "e/y/x.xml").c_str()), R"(E:\y\x.xml)");
  EXPECT_STREQ(exists("Q:x"), "none");
  EXPECT_STREQ(exists(R"(\\w\a.xml)"), "none");
  // Segments that are `.` and `..` are cleaned, those that begin with a dot are not.
  EXPECT_STREQ(exists(R"(..\w\.\a.xml)"), R"(D:\w\a.xml)");
  EXPECT_STREQ(exists(R"(sub\.cfg\..\x.xml)"), R"(D:\w\sub\x.xml)");
  EXPECT_STREQ(exists(R"(sub\.cfg\a.xml)"), R"(D:\w\sub\.cfg\a.xml)");

  const auto along = [](const char *path, const char *name) {
    return found([&](CFilename &file) { return CFilename(name).FindFile(file, path); });
  };
  EXPECT_STREQ(along(R"(E:\y)", "a.xml"), R"(D:\w\a.xml)") << "the current directory comes first";
  EXPECT_STREQ(along(R"(E:/y;sub)", "x.xml"), R"(E:\y\x.xml)");
  EXPECT_STREQ(along(R"(C:\;;E:\y)", "only"), "none") << "an empty folder ends the path";
  EXPECT_STREQ(along(R"(E:\y)", R"(.\only)"), "none") << "it says itself where it lies";
  EXPECT_STREQ(along(R"(E:\y)", "E:only"), "none");

  const support::CurrentDirectory dotted(folder / "e/a.");
  EXPECT_STREQ(along("", "b"), R"(E:\a.\b)");
}

TEST_F(FilenameResolutionTest, ItemsOfASearchPath) {
  EXPECT_STREQ(GetSearchPathItem("a;b;c", 0), "a");
  EXPECT_STREQ(GetSearchPathItem("a;b;c", 2), "c");
  EXPECT_STREQ(GetSearchPathItem("a;b;c", 3), "");
  EXPECT_STREQ(GetSearchPathItem("a;;c", 1), "");
  EXPECT_STREQ(GetSearchPathItem("a", -1), "");
}

TEST_F(FilenameResolutionTest, NamesRelativeToTheLongestFolderOfASearchPath) {
  EXPECT_STREQ(CFilename(R"(C:\a\b\c.xml)").GetRelativePathName(R"(C:\a;C:\A\B;C:\a)"), "c.xml");
  EXPECT_STREQ(CFilename(R"(C:\a\b\c.xml)").GetRelativePathName(R"(C:\a;;C:\a\b)"), R"(b\c.xml)");
  EXPECT_STREQ(CFilename(R"(C:\a\b)").GetRelativePathName(R"(C:\a\b;C:\a\)"), R"(C:\a\b)");
  EXPECT_STREQ(CFilename(R"(C:\ab\c)").GetRelativePathName(R"(C:\a;C:)"), R"(ab\c)");
}

TEST_F(FilenameResolutionTest, SmooshShortensForDisplay) {
  const CFilename name(R"(C:\aaaa\bbbb\cccc\file.txt)");
  EXPECT_STREQ(name.Smoosh(26), R"(C:\aaaa\bbbb\cccc\file.txt)");
  EXPECT_STREQ(name.Smoosh(25), R"(C:\...\bbbb\cccc\file.txt)");
  EXPECT_STREQ(name.Smoosh(15), R"(C:\...\file.txt)");
  EXPECT_STREQ(name.Smoosh(14), "file.txt");
  EXPECT_STREQ(CFilename(R"(C:\...\b\c)").Smoosh(9), R"(C:\...\c)");
  EXPECT_STREQ(CFilename(R"(éé\bbbbbbbb\c)").Smoosh(11), R"(éé...\c)");
}

} // namespace
