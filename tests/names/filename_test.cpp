#include "tests/names/names_support.h"

#include <type_traits>

namespace {

using FilenameTest = support::NameTest;

CFilename normalised(const char *text) {
  CFilename fromText, fromString;
  fromText = text;
  fromString = CString(text);
  EXPECT_STREQ(fromString, fromText);
  return fromText;
}

TEST_F(FilenameTest, AssignmentNormalises) {
  EXPECT_STREQ(normalised("a/b"), R"(a\b)");
  // A `..` takes the folder before it along, where there is one.
  EXPECT_STREQ(normalised(R"(C:\a\b\..\..\c)"), R"(C:\c)");
  EXPECT_STREQ(normalised(R"(\..\b)"), R"(\..\b)");
  EXPECT_STREQ(normalised(R"(a\..\b)"), R"(a\..\b)");
  EXPECT_STREQ(normalised(R"(C:\x\a..\b)"), R"(C:\x\b)");
  EXPECT_STREQ(normalised(R"(a\b\..)"), R"(a\b\..)");
  EXPECT_STREQ(normalised(R"(\\srv\s\..\x)"), R"(\\srv\x)");
  // A `.` goes, except at the start.
  EXPECT_STREQ(normalised(R"(.\.\a)"), R"(.\a)");
  EXPECT_STREQ(normalised(R"(x.\y)"), "xy");
  EXPECT_STREQ(normalised(R"(..\.\a)"), R"(..\a)");
  // Doubled separators become one, up to those that begin the name or are after a colon.
  EXPECT_STREQ(normalised(R"(a\\\b\\c)"), R"(a\b\c)");
  EXPECT_STREQ(normalised(R"(C:\\a\\b)"), R"(C:\\a\\b)");
  EXPECT_STREQ(normalised(R"(\\srv\a\\b)"), R"(\\srv\a\\b)");
}

TEST_F(FilenameTest, TrailBytesAreNoSeparators) {
  const support::CodePage page(932); // 95 5C and 83 5C are characters
  CFilename name;
  name = "C:\\a\x95\\\\..\\\x83\\\\\\b";
  EXPECT_STREQ(name, "C:\\\x83\\\\b");
  EXPECT_STREQ(CFilename("C:\\\x95\\.a").GetNameExt(), "\x95\\.a");
  EXPECT_EQ(CFilename("\x95\\").GetLastChar(), '\x95');
  EXPECT_STREQ(support::NameProbe("x").Prefix("C:\\\x95\\"), "C:\\\x95\\\\x");
  EXPECT_STREQ(support::NameProbe("\\x/y").Prefix("a/b\\"), "a/b\\x/y");
  EXPECT_STREQ(support::NameProbe("x").Prefix(""), "\\x");
}

TEST_F(FilenameTest, Parts) {
  const struct {
    const char *text;
    char drive, last;
    const char *root, *dir, *path, *name, *ext, *nameExt;
    int segments;
  } rows[] = {
      {R"(c:\a\b.c.txt)", 'C', 't', R"(C:\)", R"(\a)", R"(c:\a)", "b", ".C.TXT", "b.c.txt", 2},
      {R"(C:name.xml)", 'C', 'l', R"(C:\)", "name.xml", "", "name", ".XML", "name.xml", 1},
      {R"(\x.txt)", 'D', 't', R"(D:\)", "", R"(\)", "x", ".TXT", "x.txt", 1},
      {R"(C:\a\b\)", 'C', '\\', R"(C:\)", R"(\a\b)", R"(C:\a\b)", "", "", "", 2},
      {R"(C:\a.b\c)", 'C', 'c', R"(C:\)", R"(\a.b)", R"(C:\a.b)", "c", "", "c", 2},
      {R"(.profile)", 'D', 'e', R"(D:\)", ".profile", "", ".profile", ".PROFILE", ".profile", 1},
      {R"(C:\)", 'C', '\\', R"(C:\)", "", R"(C:\)", "", "", "", 0},
      {R"(a/b.c)", 'D', 'c', R"(D:\)", R"(a\b.c)", "", R"(a\b)", ".C", "a/b.c", 1},
      {R"(\\srv\share\x)", 'D', 'x', R"(D:\)", R"(\\srv\share)", R"(\\srv\share)", "x", "", "x", 4},
      {R"()", 'D', '\0', R"(D:\)", "", "", "", "", "", 0},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.text);
    const CFilename name(row.text);
    EXPECT_EQ(name.GetDrive(), row.drive);
    EXPECT_EQ(name.GetLastChar(), row.last);
    EXPECT_STREQ(name.GetRoot(), row.root);
    EXPECT_STREQ(name.GetDir(), row.dir);
    EXPECT_STREQ(name.GetPath(), row.path);
    EXPECT_STREQ(name.GetName(), row.name);
    EXPECT_STREQ(name.GetExt(), row.ext);
    EXPECT_STREQ(name.GetNameExt(), row.nameExt);
    EXPECT_EQ(name.GetSegmentCount(), row.segments);
  }
  const CFilename deep(R"(C:\a\b\c)");
  EXPECT_STREQ(deep.GetPathSegment(-3), R"(C:\a)");
  EXPECT_STREQ(deep.GetPathSegment(1), R"(C:\a\b)");
  EXPECT_STREQ(deep.GetPathSegment(9), R"(C:\a\b\c)");
}

TEST_F(FilenameTest, GrowsByOneSegmentOrExtension) {
  const struct {
    const char *name;
    const char *added;
    const char *joined, *named, *extended; // by +=, AppendName and AppendExt
  } rows[] = {
      {R"(a)", R"(.b)", R"(a.b)", R"(a\.b)", R"(a.b)"},
      {R"(C)", R"(:)", R"(C:)", R"(C\:)", R"(C.:)"},
      {R"(a)", R"( b)", R"(a b)", R"(a\ b)", R"(a. b)"},
      {R"(C:\a)", R"(x\y.t)", R"(C:\a\x\y.t)", R"(C:\a\y.t)", R"(C:\a.x\y.t)"},
      {R"(a.b.c)", R"(xml)", R"(a.b.c\xml)", R"(a.b.c\xml)", R"(a.xml)"},
      {R"(a.b\c)", R"(.xml)", R"(a.b\c.xml)", R"(a.b\c\.xml)", R"(a.b\c.xml)"},
      {R"(a/b.c)", R"()", R"(a/b.c)", R"(a/b.c\)", R"(a\b)"},
      {R"(C:\.p)", R"(x)", R"(C:\.p\x)", R"(C:\.p\x)", R"(C:\.p.x)"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(std::string(row.name) + " and " + row.added);
    EXPECT_STREQ(CFilename(row.name) += row.added, row.joined);
    EXPECT_STREQ(CFilename(row.name).AppendName(row.added), row.named);
    EXPECT_STREQ(CFilename(row.name).AppendExt(row.added), row.extended);
  }
  CFilename self(R"(a\b)");
  self.AppendName(self);
  self += self;
  EXPECT_STREQ(self, R"(a\b\b\a\b\b)");
}

TEST_F(FilenameTest, NoSeparatorFollowsAnother) {
  CFilename name("C");
  for (const char added : {':', ':', '.', '\\', '\\', '.', 'a', '.', '\\', 'b'})
    name.Append(added);
  EXPECT_STREQ(name, R"(C:\a.b)");
}

TEST_F(FilenameTest, DecrementRemovesTheLastSegment) {
  CFilename name(R"(C:\a/b\c\\)");
  EXPECT_STREQ(--name, R"(C:\a\b)");
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
  static_assert(std::is_same_v<decltype(text + b), CFilename>);
  EXPECT_TRUE("b/c" == b);
  CFilename name = "x/y";
  name = macro;
  EXPECT_STREQ(name += macro, R"(b\c\b/c)");
  const char *const null = nullptr;
  name = null;
  EXPECT_STREQ(name.AppendName(null).AppendExt(null) + null + CFilename(null) + macros.Prefix(null), "");
  EXPECT_EQ(name.CopyFileA(null), 2);
}

enum Form : unsigned { kPlain = 0, kAbsolute = 1, kRooted = 2, kDotted = 4, kMacro = 8 };

unsigned formOf(const char *text) {
  const CFilename name(text);
  EXPECT_NE(name.IsRelative(), name.IsAbsolute());
  return (name.IsAbsolute() ? kAbsolute : 0U) | (name.AbsPathName() != 0 ? kRooted : 0U) |
         (name.CurDirRelPathName() != 0 ? kDotted : 0U) | (name.IncludesMacro() ? kMacro : 0U);
}

TEST_F(FilenameTest, FormIsToldFromTheText) {
  macros.AddMacro("$good$", R"(D:\x)");
  macros.AddMacro("$bad$", "$ktestNone$");
  EXPECT_EQ(formOf(R"(a.b\c)"), kPlain);
  EXPECT_EQ(formOf(R"(\x.txt)"), kRooted);
  EXPECT_EQ(formOf(R"(\\srv\x)"), kAbsolute | kRooted);
  EXPECT_EQ(formOf(R"(C:\x)"), kAbsolute | kRooted | kDotted) << "a drive counts as a dot: it is not searched for";
  EXPECT_EQ(formOf("C:x"), kDotted);
  EXPECT_EQ(formOf(R"(.\x)"), kDotted);
  EXPECT_EQ(formOf(R"(\.x)"), kRooted | kDotted);
  EXPECT_EQ(formOf(R"($good$\x)"), kAbsolute | kMacro);
  EXPECT_EQ(formOf("a$GOOD$$bad$"), kMacro) << "the first pair of `$` decides";
  EXPECT_EQ(formOf(R"($bad$C:\)"), kPlain);
}

TEST_F(FilenameTest, StateOfFiles) {
  support::write(folder / "c/f.txt", "12345");
  const CFilename file("c:/F.TXT"), none(R"(C:\none)"), root(R"(Q:\)");
  EXPECT_EQ(file.FileExists(), 1);
  EXPECT_EQ(file.ReadOnly(), 0);
  EXPECT_EQ(file.IsDirectory(), 0);
  EXPECT_EQ(file.FileSize(), 5);
  EXPECT_EQ(file.SetReadOnly(1), 1);
  EXPECT_EQ(file.ReadOnly(), 1);
  EXPECT_EQ(none.ReadOnly(), 1) << "what is not there cannot be written to";
  EXPECT_EQ(none.SetReadOnly(0), 0);
  EXPECT_EQ(none.FileSize(), 0);
  EXPECT_EQ(root.IsDirectory(), 1) << "a root counts as a folder, whether it is there or not";
  EXPECT_EQ(CFilename(R"(D:\w\..)").IsDirectory(), 1);
  EXPECT_STREQ(file.GetShortFileName(), "") << "there are none here";
  std::filesystem::resize_file(folder / "c/f.txt", 0x1'8000'0005); // sparse
  EXPECT_EQ(file.FileSize(), 0x8000'0005L) << "32 bits, never negative";
}

TEST_F(FilenameTest, CopyTouchRenameRemove) {
  using Clock = std::filesystem::file_time_type::clock;
  const std::string file = folder / "c/f.txt", copied = folder / "d/w/copy.txt", content(20003, 'x');
  const auto isOld = [](const std::string &path) {
    return std::filesystem::last_write_time(path) < Clock::now() - std::chrono::hours(24);
  };
  CFilename name(R"(C:\f.txt)"), copy("D:copy.txt"), none(R"(C:\none)");
  support::write(file, content);
  std::filesystem::last_write_time(file, Clock::now() - std::chrono::hours(48));
  name.SetReadOnly(1);
  EXPECT_EQ(name.CopyFileA("copy.txt"), 0);
  EXPECT_EQ(support::read(copied), content);
  EXPECT_TRUE(isOld(copied));
  name.SetReadOnly(0);
  EXPECT_EQ(name.CopyFileA("copy.txt"), 3) << "the copy is read-only too";
  EXPECT_EQ(none.CopyFileA(R"(D:\none)"), 2);
  EXPECT_EQ(name.Touch(), 0);
  EXPECT_FALSE(isOld(file));

  make("c/a");
  CString taken = R"(D:\w\copy.txt)", fresh = "C:/a/../g.txt";
  EXPECT_NE(name.Rename(taken), 0U);
  EXPECT_STREQ(name, R"(C:\f.txt)");
  EXPECT_EQ(name.Rename(fresh), 0U);
  EXPECT_STREQ(name, R"(C:\g.txt)");
  EXPECT_EQ(support::read(folder / "c/g.txt"), content);
  EXPECT_EQ(none.Rename(fresh), static_cast<unsigned long>(CFileException::fileNotFound));
  EXPECT_EQ(copy.Remove(), 1) << "though read-only";
  EXPECT_EQ(copy.Remove(), 0);
  EXPECT_FALSE(std::filesystem::exists(copied));
  EXPECT_TRUE(support::throws<CFileException>([] { CFilename(R"(C:\a)").Remove(); }));
  EXPECT_TRUE(support::throws<CFileException>([] { CFilename(R"(Q:\x)").Touch(); }));
}

TEST_F(FilenameTest, MkDirMakesOneLevel) {
  support::write(folder / "c/file", "");
  EXPECT_EQ(CFilename(R"(C:\a\b)").mkDir(), -1);
  EXPECT_EQ(CFilename(R"(C:\a\)").mkDir(), 0);
  EXPECT_EQ(CFilename(R"(C:\a\)").mkDir(), 0) << "it is there";
  EXPECT_EQ(CFilename(R"(C:\file)").mkDir(), 1);
  EXPECT_TRUE(std::filesystem::is_directory(folder / "c/a"));
}

} // namespace
