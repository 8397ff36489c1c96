#include "tests/names/names_support.h"
#include "tests/tables.h"

namespace {

using FilenameTest = support::NameTest;
using support::Cells;

std::string text(const CFilename &name) { return std::string(name.View()); }

CFilename normalised(const char *text) {
  CFilename name;
  name = text;
  return name;
}

TEST_F(FilenameTest, AssignmentNormalises) {
  support::expectTable("names/normal.txt", 1, [](const Cells &row) { return Cells{text(normalised(row[0].c_str()))}; });
}

TEST_F(FilenameTest, TrailBytesAreNoSeparators) {
  const support::CodePage page(932); // 95 5C and 83 5C are characters
  EXPECT_STREQ(normalised("C:\\a\x95\\\\..\\\x83\\\\\\b"), "C:\\\x83\\\\b");
  EXPECT_STREQ(CFilename("C:\\\x95\\.a").GetNameExt(), "\x95\\.a");
  EXPECT_STREQ(support::NameProbe("x").Prefix("C:\\\x95\\"), "C:\\\x95\\\\x");
}

TEST_F(FilenameTest, Parts) {
  support::expectTable("names/parts.txt", 1, [](const Cells &row) {
    const CFilename name(row[0].c_str());
    return Cells{{name.GetDrive()},           text(name.GetRoot()),
                 text(name.GetDir()),         text(name.GetPath()),
                 text(name.GetName()),        text(name.GetExt()),
                 text(name.GetNameExt()),     std::to_string(name.GetSegmentCount()),
                 text(name.GetPathSegment(1))};
  });
}

TEST_F(FilenameTest, GrowsByOneSegmentOrExtension) {
  support::expectTable("names/grown.txt", 2, [](const Cells &row) {
    CFilename joined(row[0].c_str()), named(joined), extended(joined);
    joined += row[1].c_str();
    return Cells{text(joined), text(named.AppendName(row[1].c_str())), text(extended.AppendExt(row[1].c_str()))};
  });
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
  support::expectTable("names/forms.txt", 1, [](const Cells &row) {
    const CFilename name(row[0].c_str());
    const auto word = [](bool holds) { return holds ? "yes" : "no"; };
    return Cells{word(name.IsAbsolute()), word(name.AbsPathName() != 0), word(name.CurDirRelPathName() != 0),
                 word(name.IncludesMacro())};
  });
  EXPECT_TRUE(CFilename("C:x").IsRelative());
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
  EXPECT_EQ(CFilename(R"(C:\f.txt\)").FileExists(), 0) << "no folder";
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
  EXPECT_EQ(name.CopyFileA(R"(\\srv\s\x)"), 3);
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
