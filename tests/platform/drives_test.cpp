#include "tests/document_support.h"

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
  // The map, a host path, and its Windows form.
  support::checkRows(3, R"(
    -     /home/me C:\home\me   -   /a//./b/../c/ C:\a\c\   -   /../a C:\a   D=T/d T/d/x D:\x   D=T/d T/d D:\
    D=T/d T/D C:T\D   D=T/d T/dd/x C:T\dd\x   D=T/d T/d/../x C:T\x   D=T/d;E=T/d/e T/d/e/x E:\x   Z=T/d T/d/x C:T\d\x
    D=T/q/../d/. T/d/x D:\x   A=T/d;C=T/d;D=T/d T/d/x C:\x   C=T/d /home/me Z:\home\me   D=T/d;D=T/e T/e/x D:\x
    d=T/d T/d/x D:\x   D=home /home/me C:\home\me   ;;D;D=;=T/d;D:=T/d;DD=T/d;D=d;1=T/d;D=\d T/d/x C:T\d\x)",
                     [this](const support::Cells &row) {
                       drives.reset();
                       drives.emplace("KESTRUNE_DRIVES", expanded(row[0]).c_str());
                       const std::string form = absolute(expanded(row[1]));
                       return CString(form == driveForm(row[2]) ? row[2] : form.c_str());
                     });
}

TEST_F(DrivesTest, TheCurrentDirectoryIsOnTheDriveWithTheLongestFolder) {
  fs::create_directories(root + "/d/e/f");
  fs::create_directory_symlink(root + "/d", root + "/link");
  const struct {
    const char *map, *current;
    char drive;
    const char *plain, *onD;
  } rows[] = {
      {"", "T/d", 'C', "C:T\\d\\x", "D:\\x"},          {"D=T/d", "T", 'C', "C:T\\x", "D:\\x"},
      {"D=T/d", "T/d/e", 'D', "D:\\e\\x", "D:\\e\\x"}, {"D=T/d;E=T/d/e", "T/d/e", 'E', "E:\\x", "D:\\x"},
      {"D=T/d;C=T/d", "T/d", 'C', "C:\\x", "D:\\x"},   {"D=T/link", "T/d/e", 'D', "D:\\e\\x", "D:\\e\\x"},
      {"D=T/link", "T/link", 'D', "D:\\x", "D:\\x"},   {"C=T/nothing", "T", 'Z', "Z:T\\x", "D:\\x"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(testing::Message() << row.map << " " << row.current);
    drives.reset();
    drives.emplace("KESTRUNE_DRIVES", expanded(row.map).c_str());
    const support::CurrentDirectory current(expanded(row.current));
    EXPECT_EQ(CFilename("x").GetDrive(), row.drive);
    EXPECT_EQ(absolute("x"), driveForm(row.plain));
    EXPECT_EQ(absolute("D:x"), driveForm(row.onD));
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

// Each file has a size of its own, which tells what a name led to; 0 is nothing.
TEST_F(DrivesTest, NamesLeadToFiles) {
  long size = 0;
  for (const char *file : {"d/a.xml", "a.xml", "d/Sub/File.XML", "d/sub2/x", "d/SUB2X", "d/e/B.xml", "d/e/b.XML",
                           "d/.hidden/x", "d/iné/x", "d/x:y", "d/sub/nothing/y"})
    support::write(root + "/" + file, std::string(++size, 'x'));
  fs::create_symlink("nowhere", root + "/d/dangling.xml");
  drives.emplace("KESTRUNE_DRIVES", expanded("D=T/d;E=T").c_str());
  const support::CurrentDirectory current(root + "/d/e");
  // A drive has nothing above its folder; `sub` is there as it stands, so `Sub` is not looked at; of two names in
  // another case the first by its bytes is taken; another drive than the current one is at its root; case is ASCII
  // case.
  support::checkRows(2, R"(
    D:\a.xml 1   d:/A.XML 1   D:\..\a.xml 1   ..\..\..\a.xml 1   \a.xml 1   T/a.xml 2   T/d/../A.xml 2
    D:\sub\file.xml 0   D:\SUB\FILE.xml 3   D:\SUB2\X 4   D:\sub2x 5   D:\e\b.xml 6   b.XML 7   B.xml 6   D:b.xml 6
    E:a.xml 2   ..\.hidden\.\x 8   D:\INé\x 9   D:\inÉ\x 0   D:\x:y 10   D:\a.xml\ 0   D:\a.xml\x 0
    D:\dangling.xml 0   \\d\a.xml 0   //T/a.xml 0   Q:\a.xml 0   - 0)",
                     [this](const support::Cells &row) {
                       return IntToCString(static_cast<int>(CFilename(expanded(row[0]).c_str()).FileSize()));
                     });
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
