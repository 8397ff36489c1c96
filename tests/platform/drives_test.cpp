#include "tests/test_support.h"

#include <algorithm>
#include <optional>

namespace {

namespace fs = std::filesystem;

/// A folder `T`, under the path by which the host knows it; texts below hold `T` for it.
class DrivesTest : public testing::Test {
protected:
  std::string expanded(std::string text) const {
    for (std::size_t at = 0; (at = text.find('T', at)) != std::string::npos; at += root.size())
      text.replace(at, 1, root);
    return text;
  }
  std::string driveForm(const std::string &path) const {
    std::string text = expanded(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
  }

  support::TempFolder folder;
  const std::string root = fs::canonical(folder.path()).string();
  std::optional<support::Environment> drives;
  support::CurrentDirectory directory{root};
};

std::string absolute(const std::string &name) {
  CFilename full;
  CFilename(name.c_str()).GetAbsolute(full, nullptr);
  return std::string(full.View());
}

TEST_F(DrivesTest, AHostPathTakesTheDriveWithTheLongestFolder) {
  const struct {
    const char *map;
    const char *path;
    const char *windowsForm;
  } rows[] = {
      {"", "/a//./b/../c/", R"(C:\a\c\)"},
      {"D=T/d", "T/dd/x", R"(C:T\dd\x)"},
      {"D=T/d;E=T/d/e", "T/d/e/x", R"(E:\x)"},
      {"D=T/q/../d/.", "T/d/x", R"(D:\x)"},
      // C wins a tie, and Z is always the root.
      {"A=T/d;C=T/d;D=T/d", "T/d/x", R"(C:\x)"},
      {"C=T/d", "/home/me", R"(Z:\home\me)"},
      {"Z=T/d", "T/d/x", R"(C:T\d\x)"},
      // Entries that are no drives count for nothing.
      {R"(;;D;D=;=T/d;D:=T/d;DD=T/d;D=d;1=T/d;D=\d)", "T/d/x", R"(C:T\d\x)"},
  };
  for (const auto &row : rows) {
    drives.reset();
    drives.emplace("KESTRUNE_DRIVES", expanded(row.map).c_str());
    EXPECT_EQ(absolute(expanded(row.path)), driveForm(row.windowsForm)) << row.map << " " << row.path;
  }
}

TEST_F(DrivesTest, TheCurrentDirectoryIsOnTheDriveWithTheLongestFolder) {
  fs::create_directories(root + "/d/e/f");
  fs::create_directory_symlink(root + "/d", root + "/link");
  const struct {
    const char *map;
    const char *current;
    char drive;
    const char *relative; // the absolute form of x
    const char *relativeOnD;
  } rows[] = {
      {"", "T/d", 'C', R"(C:T\d\x)", R"(D:\x)"},
      // Of another drive than the current one the root is current.
      {"D=T/d", "T", 'C', R"(C:T\x)", R"(D:\x)"},
      {"D=T/d;E=T/d/e", "T/d/e", 'E', R"(E:\x)", R"(D:\x)"},
      {"D=T/d;C=T/d", "T/d", 'C', R"(C:\x)", R"(D:\x)"},
      {"D=T/link", "T/d/e", 'D', R"(D:\e\x)", R"(D:\e\x)"},
      {"C=T/nothing", "T", 'Z', R"(Z:T\x)", R"(D:\x)"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(testing::Message() << row.map << " " << row.current);
    drives.reset();
    drives.emplace("KESTRUNE_DRIVES", expanded(row.map).c_str());
    const support::CurrentDirectory current(expanded(row.current));
    EXPECT_EQ(CFilename("x").GetDrive(), row.drive);
    EXPECT_EQ(absolute("x"), driveForm(row.relative));
    EXPECT_EQ(absolute("D:x"), driveForm(row.relativeOnD));
    EXPECT_EQ(absolute("\\x"), row.drive + std::string(":\\x"));
    EXPECT_EQ(absolute("Q:x"), "Q:\\x");
  }
  drives.reset();
  const support::CurrentDirectory gone(root + "/d/e/f");
  fs::remove(root + "/d/e/f");
  EXPECT_EQ(CFilename("x").GetDrive(), 'C');
  CFilename full("before");
  EXPECT_FALSE(CFilename("x").GetAbsolute(full, nullptr));
}

TEST_F(DrivesTest, NamesLeadToFiles) {
  for (const char *file : {"d/a.xml", "a.xml", "d/Sub/File.XML", "d/sub2/x", "d/SUB2X", "d/e/B.xml", "d/e/b.XML",
                           "d/.hidden/x", "d/iné/x", "d/x:y", "d/sub/nothing/y"})
    support::write(root + "/" + file, file);
  fs::create_symlink("nowhere", root + "/d/dangling.xml");
  drives.emplace("KESTRUNE_DRIVES", expanded("D=T/d;E=T").c_str());
  const support::CurrentDirectory current(root + "/d/e");
  const struct {
    const char *name;
    const char *file; // empty for none
  } rows[] = {
      // A drive has nothing above its folder.
      {R"(..\..\..\a.xml)", "d/a.xml"},
      {"T/d/../A.xml", "a.xml"},
      {"E:a.xml", "a.xml"},
      // `sub` is there as it stands, so `Sub` is not looked at.
      {R"(D:\sub\file.xml)", ""},
      {R"(D:\SUB\FILE.xml)", "d/Sub/File.XML"},
      {R"(D:\sub2x)", "d/SUB2X"},
      // Of two names in another case the first by its bytes is taken.
      {R"(D:\e\b.xml)", "d/e/B.xml"},
      {"b.XML", "d/e/b.XML"},
      {R"(..\.hidden\.\x)", "d/.hidden/x"},
      // Case is that of ASCII letters.
      {R"(D:\INé\x)", "d/iné/x"},
      {R"(D:\inÉ\x)", ""},
      {R"(D:\x:y)", "d/x:y"},
      {R"(D:\dangling.xml)", ""},
      {"Q:a.xml", ""},
  };
  // What a file holds is its own path, so its size tells which it is.
  for (const auto &row : rows)
    EXPECT_EQ(CFilename(expanded(row.name).c_str()).FileSize(), static_cast<long>(std::string_view(row.file).size()))
        << row.name;
}

TEST_F(DrivesTest, ANameInAnotherCaseIsTheSameFile) {
  support::write(root + "/Data/Old.XML", "old");
  support::write(root + "/source", "new");
  const CFilename source((root + "/source").c_str());
  EXPECT_EQ(source.CopyFileA((root + "/data/OLD.xml").c_str()), 0);
  EXPECT_EQ(source.CopyFileA((root + "/DATA/Fresh.xml").c_str()), 0);
  EXPECT_EQ(support::read(root + "/Data/Old.XML"), "new");
  EXPECT_EQ(support::read(root + "/Data/Fresh.xml"), "new");
  EXPECT_EQ(std::distance(fs::directory_iterator(root + "/Data"), {}), 2);
  EXPECT_FALSE(fs::exists(root + "/data"));
  EXPECT_EQ(CFilename((root + "/DATA").c_str()).mkDir(), 0);

  CFilename name((root + "/data/old.xml").c_str());
  CString taken = (root + "/data/FRESH.XML").c_str(), ownName = (root + "/data/oLd.Xml").c_str();
  EXPECT_EQ(name.Rename(taken), static_cast<unsigned long>(CFileException::accessDenied));
  EXPECT_EQ(name.Rename(ownName), 0U);
  EXPECT_EQ(support::read(root + "/Data/oLd.Xml"), "new");
  EXPECT_FALSE(fs::exists(root + "/Data/Old.XML"));
}

// The host's names are UTF-8. In page 932 the trail byte of U+8868 is that of a backslash.
TEST_F(DrivesTest, NamesAreWrittenInTheCodePage) {
  support::write(root + "/\xE8\xA1\xA8/\xE3\x81\x82.xml", "123");
  const support::CodePage page(932);
  const support::CurrentDirectory current(root + "/\xE8\xA1\xA8");
  EXPECT_EQ(CFilename((root + "/\x95\\/\x82\xA0.XML").c_str()).FileSize(), 3);
  EXPECT_EQ(CFilename("\x82\xA0.xml").FileSize(), 3);
  EXPECT_EQ(CFilename("..\\\x95\\\\\x82\xA0.xml").FileSize(), 3);
  EXPECT_EQ(CFilename("..\\\x95/\x82\xA0.xml").FileSize(), 0); // 95 2F is no character
  EXPECT_EQ(absolute("x"), driveForm("C:T/\x95\\/x"));
  EXPECT_EQ(absolute(root + "/\x95\\/x"), driveForm("C:T/\x95\\/x"));
  EXPECT_EQ(CFilename((root + "/\x95\\/\x82\xA0.xml").c_str()).CopyFileA("\x82\xA2.xml"), 0);
  EXPECT_EQ(support::read(root + "/\xE8\xA1\xA8/\xE3\x81\x84.xml"), "123");
}

} // namespace
