#include "tests/names/names_support.h"

namespace {

using FilenameTest = support::NameTest;

CFilename normalised(const char *text) {
  CFilename name;
  name = text;
  return name;
}

TEST_F(FilenameTest, AssignmentNormalises) {
  EXPECT_STREQ(normalised("a/b"), R"(a\b)");
  // A `..` takes the folder before it along, where there is one.
  EXPECT_STREQ(normalised(R"(C:\a\b\..\..\c)"), R"(C:\c)");
  EXPECT_STREQ(normalised(R"(a\..\b)"), R"(a\..\b)");
  // A `.` goes, except at the start.
  EXPECT_STREQ(normalised(R"(.\.\a)"), R"(.\a)");
  EXPECT_STREQ(normalised(R"(..\.\a)"), R"(..\a)");
  // Doubled separators become one, except at the start and after those.
  EXPECT_STREQ(normalised(R"(a\\\b\\c)"), R"(a\b\c)");
  EXPECT_STREQ(normalised(R"(\\srv\a\\b)"), R"(\\srv\a\\b)");
}

TEST_F(FilenameTest, TrailBytesAreNoSeparators) {
  const support::CodePage page(932); // 95 5C and 83 5C are characters
  EXPECT_STREQ(normalised("C:\\a\x95\\\\..\\\x83\\\\\\b"), "C:\\\x83\\\\b");
  EXPECT_STREQ(CFilename("C:\\\x95\\.a").GetNameExt(), "\x95\\.a");
  EXPECT_STREQ(support::NameProbe("x").Prefix("C:\\\x95\\"), "C:\\\x95\\\\x");
}

TEST_F(FilenameTest, Parts) {
  const struct {
    const char *text;
    char drive;
    const char *root, *dir, *path, *name, *ext, *nameExt;
    int segments;
  } rows[] = {
      {R"(c:\a\b.c.txt)", 'C', R"(C:\)", R"(\a)", R"(c:\a)", "b", ".C.TXT", "b.c.txt", 2},
      {R"(C:name.xml)", 'C', R"(C:\)", "name.xml", "", "name", ".XML", "name.xml", 1},
      {R"(\x.txt)", 'D', R"(D:\)", "", R"(\)", "x", ".TXT", "x.txt", 1},
      {R"(C:\a\b\)", 'C', R"(C:\)", R"(\a\b)", R"(C:\a\b)", "", "", "", 2},
      {R"(C:\a.b\c)", 'C', R"(C:\)", R"(\a.b)", R"(C:\a.b)", "c", "", "c", 2},
      {R"(.profile)", 'D', R"(D:\)", ".profile", "", ".profile", ".PROFILE", ".profile", 1},
      {R"(a/b.c)", 'D', R"(D:\)", R"(a\b.c)", "", R"(a\b)", ".C", "a/b.c", 1},
      {R"(\\srv\share\x)", 'D', R"(D:\)", R"(\\srv\share)", R"(\\srv\share)", "x", "", "x", 4},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.text);
    const CFilename name(row.text);
    EXPECT_EQ(name.GetDrive(), row.drive);
    EXPECT_STREQ(name.GetRoot(), row.root);
    EXPECT_STREQ(name.GetDir(), row.dir);
    EXPECT_STREQ(name.GetPath(), row.path);
    EXPECT_STREQ(name.GetName(), row.name);
    EXPECT_STREQ(name.GetExt(), row.ext);
    EXPECT_STREQ(name.GetNameExt(), row.nameExt);
    EXPECT_EQ(name.GetSegmentCount(), row.segments);
  }
  EXPECT_STREQ(CFilename(R"(C:\a\b\c)").GetPathSegment(1), R"(C:\a\b)");
}

TEST_F(FilenameTest, GrowsByOneSegmentOrExtension) {
  const struct {
    const char *name;
    const char *added;
    const char *joined, *named, *extended; // by +=, AppendName and AppendExt
  } rows[] = {
      {R"(a)", R"(.b)", R"(a.b)", R"(a\.b)", R"(a.b)"},
      {R"(a\)", R"(\b)", R"(a\b)", R"(a\b)", R"(a\b)"},
      {R"(C:\a)", R"(x\y.t)", R"(C:\a\x\y.t)", R"(C:\a\y.t)", R"(C:\a.x\y.t)"},
      {R"(a.)", R"(b)", R"(a.b)", R"(a.b)", R"(a.b)"},
      {R"(a.b.c)", R"(xml)", R"(a.b.c\xml)", R"(a.b.c\xml)", R"(a.xml)"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(std::string(row.name) + " and " + row.added);
    EXPECT_STREQ(CFilename(row.name) += row.added, row.joined);
    EXPECT_STREQ(CFilename(row.name).AppendName(row.added), row.named);
    EXPECT_STREQ(CFilename(row.name).AppendExt(row.added), row.extended);
  }
  CFilename self(R"(a\b)");
  self += self;
  EXPECT_STREQ(self, R"(a\b\a\b)");
}

TEST_F(FilenameTest, DecrementRemovesTheLastSegment) {
  CFilename name(R"(C:\a\b\\)");
  EXPECT_STREQ(--name, R"(C:\a)");
  EXPECT_STREQ(--name, "C:");
  EXPECT_STREQ(--name, "C:");
}

// What a program writes with names compiles, and takes the overload that it means.
TEST_F(FilenameTest, NamesMixWithOtherTexts) {
  const CFilename b("b/c");
  const CString text("b/c");
  const CMacroString macro("b/c");
  EXPECT_STREQ("a" + b + text + macro + "x", R"(a\b/c\b/c\b/c\x)");
  CFilename name = "x/y";
  name = macro;
  EXPECT_STREQ(name += macro, R"(b\c\b/c)");
  const char *const null = nullptr;
  EXPECT_STREQ(CFilename(null).AppendName(null).AppendExt(null) + null, "");
}

TEST_F(FilenameTest, FormIsKnownFromTheText) {
  macros.AddMacro("$good$", R"(D:\x)");
  macros.AddMacro("$bad$", "$ktestNone$");
  EXPECT_TRUE(CFilename(R"(C:\x)").IsAbsolute());
  EXPECT_TRUE(CFilename(R"(\\srv\x)").IsAbsolute());
  EXPECT_TRUE(CFilename(R"($good$\x)").IsAbsolute());
  EXPECT_TRUE(CFilename("C:x").IsRelative());
  EXPECT_TRUE(CFilename(R"(\x)").AbsPathName());
  EXPECT_FALSE(CFilename("C:x").AbsPathName());
  EXPECT_TRUE(CFilename("C:x").CurDirRelPathName());
  EXPECT_TRUE(CFilename(R"(a\.x)").CurDirRelPathName());
  EXPECT_FALSE(CFilename(R"(a.b\x)").CurDirRelPathName());
  EXPECT_TRUE(CFilename(R"(a$GOOD$\x)").IncludesMacro());
  EXPECT_FALSE(CFilename("$bad$$good$").IncludesMacro()) << "the first pair of `$` decides";
}

TEST_F(FilenameTest, StateOfFilesAndFolders) {
  support::write(folder / "c/f.txt", "12345");
  const CFilename file("c:/F.TXT"), none(R"(C:\none)"), newFolder(R"(D:\new\)");
  EXPECT_EQ(file.FileExists(), 1);
  EXPECT_EQ(file.ReadOnly(), 0);
  EXPECT_EQ(file.IsDirectory(), 0);
  EXPECT_EQ(file.FileSize(), 5);
  EXPECT_EQ(none.ReadOnly(), 1) << "what is not there cannot be written to";
  EXPECT_EQ(none.SetReadOnly(1), 0);
  EXPECT_EQ(none.FileSize(), 0);
  EXPECT_EQ(none.Remove(), 0);
  EXPECT_EQ(CFilename("Q:x").IsDirectory(), 0);
  EXPECT_EQ(CFilename(R"(Q:\)").IsDirectory(), 1) << "a root counts as a folder, whether it is there or not";
  EXPECT_EQ(newFolder.mkDir(), 0);
  EXPECT_EQ(newFolder.mkDir(), 0) << "it is there";
  EXPECT_EQ(CFilename(R"(D:\new)").IsDirectory(), 1);
  EXPECT_EQ(file.mkDir(), 1);
  EXPECT_EQ(CFilename(R"(D:\a\b)").mkDir(), -1) << "more than one level";
}

TEST_F(FilenameTest, CopyTouchRenameRemove) {
  namespace fs = std::filesystem;
  const std::string file = folder / "c/f.txt", copied = folder / "d/w/copy.txt", content(20003, 'x');
  CFilename name(R"(C:\f.txt)"), copy("D:copy.txt"), none(R"(C:\none)");
  support::write(file, content);
  fs::last_write_time(file,
                      std::chrono::floor<std::chrono::seconds>(fs::last_write_time(file) - std::chrono::hours(48)));
  EXPECT_EQ(name.SetReadOnly(1), 1);
  EXPECT_EQ(name.CopyFileA("copy.txt"), 0);
  EXPECT_EQ(support::read(copied), content);
  EXPECT_EQ(fs::last_write_time(copied), fs::last_write_time(file));
  EXPECT_EQ(name.CopyFileA("copy.txt"), 3) << "the copy is read-only too";
  EXPECT_EQ(none.CopyFileA("other.txt"), 2);
  EXPECT_EQ(name.Touch(), 0);
  EXPECT_GT(fs::last_write_time(file), fs::last_write_time(copied) + std::chrono::hours(24));

  CString taken = R"(D:\w\copy.txt)", fresh = "C:/a/../g.txt";
  EXPECT_NE(name.Rename(taken), 0U);
  make("c/a");
  EXPECT_EQ(name.Rename(fresh), 0U);
  EXPECT_STREQ(name, R"(C:\g.txt)");
  EXPECT_EQ(copy.Remove(), 1) << "though read-only";
  const CFilename directory(R"(C:\a)");
  EXPECT_EQ(directory.SetReadOnly(1), 1);
  EXPECT_TRUE(support::throws<CFileException>([&] { directory.Remove(); }));
  EXPECT_EQ(directory.ReadOnly(), 0) << "the attribute goes first";
}

} // namespace
