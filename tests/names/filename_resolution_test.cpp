#include "tests/names/names_support.h"

namespace {

using support::NameProbe;
using FilenameResolutionTest = support::NameTest;

constexpr const char *kNone = nullptr;

struct Resolution {
  std::string name;
  const char *base; // the default folder, or the folder that the result is relative to
  const char *result;
};

/// Resolves with one name for the result and again in place, which must give the same.
void expectResolved(const Resolution &row, bool (CFilename::*resolve)(CFilename &, const char *) const) {
  SCOPED_TRACE(testing::Message() << row.name << " with " << testing::PrintToString(row.base));
  CFilename name(row.name.c_str()), out("before");
  EXPECT_TRUE((name.*resolve)(out, row.base));
  EXPECT_STREQ(out, row.result);
  EXPECT_TRUE((name.*resolve)(name, row.base));
  EXPECT_STREQ(name, row.result);
}

// Another drive than the current one is at its root, and a value from the environment does not count as one.
TEST_F(FilenameResolutionTest, GetAbsolute) {
  const support::Environment missing("kNone", nullptr), variable("kDir", R"(E:\y)");
  const std::string host = folder / "e/y";
  macros.AddMacro("$host$", host.c_str());
  macros.AddMacro("$rel$", "sub");
  const Resolution rows[] = {
      {R"($StdTypes$\x)", kNone, R"(C:\Kestrune\Types\x)"},
      // A name without a folder of its own lies below the default folder.
      {R"(x.xml)", kNone, R"(D:\w\x.xml)"},
      {R"(.\x)", R"(E:\y)", R"(E:\y\x)"},
      {R"(..\x)", kNone, R"(D:\x)"},
      {R"(a/b)", kNone, R"(D:\w\a\b)"},
      // A root, a drive and a network name leave the default folder out.
      {R"(\x)", R"(E:\y)", R"(D:\x)"},
      {R"(C:x)", R"(E:\y)", R"(C:\x)"},
      {R"(d:x)", R"(E:\y)", R"(D:\w\x)"},
      // An empty name is the folder itself.
      {R"()", "$StdTypes$", "$StdTypes$"},
      {R"(.\)", "E:/y", R"(E:\y)"},
      {R"()", kNone, ""},
      // A macro without a value counts as missing.
      {R"($kNone$\x)", kNone, R"(D:\x)"},
      {R"($kDir$\x)", kNone, R"(D:\w\E:\y\x)"},
      {R"($rel$\x)", R"(E:\)", R"(E:\sub\x)"},
      // A host path counts as its drive form.
      {R"(x)", "$host$", R"(E:\y\x)"},
      {R"(//srv/s/x)", kNone, R"(\\srv\s\x)"},
      {host + "/x", kNone, R"(E:\y\x)"},
      {R"(x)", host.c_str(), R"(E:\y\x)"},
  };
  for (const Resolution &row : rows)
    expectResolved(row, &CFilename::GetAbsolute);
  const support::CurrentDirectory deep(make("d/" + std::string(200, 'a') + "/" + std::string(60, 'b')));
  CFilename out("before");
  EXPECT_FALSE(CFilename("x").GetAbsolute(out, nullptr)) << "a directory of more than 254 bytes";
  EXPECT_STREQ(out, "before");
}

TEST_F(FilenameResolutionTest, GetRelative) {
  macros.AddMacro("$empty$", "");
  macros.AddMacro("$bad$", "$ktestNone$");
  const std::string host = folder / "e/x"; // the current drive is D
  const Resolution rows[] = {
      {R"(C:\Kestrune\Types\Vorlan.xml)", kNone, "$STDVORLANTYP$"},
      // Without a folder near it the longest macro fits.
      {R"(C:\KESTRUNE\types\o.xml)", "", R"($STDTYPES$\o.xml)"},
      {R"(x\c:\kestrune\A)", kNone, R"(x\$KESTRUNE$\A)"},
      {R"($StdTypes$\a/b.xml)", R"(D:\proj)", R"($StdTypes$\a\b.xml)"},
      // Below the base, and beside it.
      {R"(D:\proj\a\B.xml)", R"(d:\PROJ)", R"(a\B.xml)"},
      {R"(D:\p\\a\..\b)", R"(D:\p)", R"(a\..\b)"},
      {R"(D:\proj\other\x)", "D:\\proj/sub", R"(..\other\x)"},
      {R"(D:\x.xml)", R"(D:\proj)", R"(D:\x.xml)"},
      {R"(D:\project\x)", R"(D:\proj)", R"(D:\project\x)"},
      {R"(C:\Kestrune\a)", "$StdTypes$", R"(..\a)"},
      // A relative form of a host path leads back to its file.
      {host + "/a.xml", kNone, R"(E:\x\a.xml)"},
      {host + "/a.xml", host.c_str(), "a.xml"},
      {host + "/a.xml", R"(E:\x\sub)", R"(..\a.xml)"},
  };
  for (const Resolution &row : rows)
    expectResolved(row, &CFilename::GetRelative);
}

TEST_F(FilenameResolutionTest, TryToFitTakesALongerValueOnly) {
  macros.AddMacro("$empty$", "");
  macros.AddMacro("$bad$", "$ktestNone$");
  const struct {
    const char *macro;
    int best;
    const char *out;
    int newBest;
  } rows[] = {
      {"$kestrune$", -1, R"($kestrune$\Types\x)", 11},
      // Equally long is not longer.
      {"$Kestrune$", 11, "before", 11},
      {"$StdTypes$", 11, R"($StdTypes$\x)", 17},
      {"$empty$", -1, "before", -1},
      {"$bad$", -1, "before", -1},
  };
  for (const auto &row : rows) {
    CFilename source(R"(C:\KESTRUNE\Types\x)"), out("before");
    int best = row.best;
    macros.TryToFit(source, row.macro, out, best);
    EXPECT_STREQ(out, row.out) << testing::PrintToString(row.macro);
    EXPECT_EQ(best, row.newBest) << testing::PrintToString(row.macro);
  }
}

TEST_F(FilenameResolutionTest, FilesAreFoundAlongASearchPath) {
  for (const char *file : {"d/w/a.xml", "d/w/sub/x.xml", "d/w/sub/.cfg/a.xml", "e/y/x.xml", "e/y/only", "e/a./b"})
    support::write(folder / file, "");
  const std::string host = folder / "e/y/x.xml";
  const struct {
    std::string name;
    const char *path; // null: FileExists without a folder
    const char *found;
  } rows[] = {
      {R"(a.xml)", kNone, R"(D:\w\a.xml)"},
      // Segments that are `.` and `..` are cleaned, those that begin with a dot are not.
      {R"(..\w\.\a.xml)", kNone, R"(D:\w\a.xml)"},
      {R"(sub\.cfg\..\x.xml)", kNone, R"(D:\w\sub\x.xml)"},
      {R"(sub\.cfg\a.xml)", kNone, R"(D:\w\sub\.cfg\a.xml)"},
      {R"()", kNone, R"(D:\w\)"},
      {R"(E:y\x.xml)", kNone, R"(E:\y\x.xml)"},
      {host, kNone, R"(E:\y\x.xml)"},
      {R"(Q:x)", kNone, kNone},
      {R"(\\w\a.xml)", kNone, kNone},
      // The current directory comes first, and an empty folder ends the path.
      {R"(a.xml)", R"(E:\y)", R"(D:\w\a.xml)"},
      {R"(x.xml)", R"(E:/y;sub)", R"(E:\y\x.xml)"},
      {R"(only)", R"(C:\;;E:\y)", kNone},
      // What says itself where it lies is not searched for.
      {R"(\only)", R"(E:\y)", kNone},
      {R"(E:only)", R"(E:\y)", kNone},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(testing::Message() << row.name << " along " << testing::PrintToString(row.path));
    const CFilename name(row.name.c_str());
    CFilename found("before");
    EXPECT_EQ(row.path == kNone ? name.FileExists(found, nullptr) : name.FindFile(found, row.path), row.found != kNone);
    EXPECT_STREQ(found, row.found != kNone ? row.found : "before");
  }
  const support::CurrentDirectory dotted(folder / "e/a.");
  CFilename found;
  EXPECT_EQ(CFilename("b").FileExists(found, ""), 1);
  EXPECT_STREQ(found, R"(E:\a.\b)");
}

TEST_F(FilenameResolutionTest, ItemsOfASearchPath) {
  const struct {
    const char *path;
    int index;
    const char *item;
  } rows[] = {
      // Outside there is none.
      {"a;b;c", 2, "c"}, {"a;b;c", 3, ""}, {"a;;c", 1, ""}, {" a ;", 0, " a "}, {"a", -1, ""},
  };
  for (const auto &row : rows)
    EXPECT_STREQ(GetSearchPathItem(row.path, row.index), row.item) << row.path << " " << row.index;
}

TEST_F(FilenameResolutionTest, NamesRelativeToASearchPath) {
  const struct {
    const char *name;
    const char *path;
    const char *result;
  } rows[] = {
      {R"(C:\a\b\c.xml)", R"(C:\a;C:\A\B;C:\a)", "c.xml"},
      // The longest folder counts, up to the first empty one.
      {R"(C:\a\b\c.xml)", R"(C:\a;;C:\a\b)", R"(b\c.xml)"},
      {R"(C:\a\b)", R"(C:\a\b;C:\a\)", R"(C:\a\b)"},
      {R"(C:\ab\c/d)", R"(C:\a;C:)", R"(ab\c\d)"},
  };
  for (const auto &row : rows)
    EXPECT_STREQ(CFilename(row.name).GetRelativePathName(row.path), row.result) << row.name << " in " << row.path;
}

TEST_F(FilenameResolutionTest, SmooshShortensForDisplay) {
  const struct {
    const char *name;
    int room;
    const char *result;
  } rows[] = {
      {R"(C:\aaaa\bbbb\cccc\file.txt)", 26, R"(C:\aaaa\bbbb\cccc\file.txt)"},
      // Folders go from the left.
      {R"(C:\aaaa\bbbb\cccc\file.txt)", 25, R"(C:\...\bbbb\cccc\file.txt)"},
      {R"(C:\aaaa\bbbb\cccc\file.txt)", 15, R"(C:\...\file.txt)"},
      {R"(C:\aaaa\bbbb\cccc\file.txt)", 14, "file.txt"},
      {R"(C:\...\b\c)", 9, R"(C:\...\c)"},
      {R"(éé\bbbbbbbb\c)", 11, R"(éé...\c)"},
  };
  for (const auto &row : rows)
    EXPECT_STREQ(CFilename(row.name).Smoosh(row.room), row.result) << row.name << " in " << row.room;
}

} // namespace
