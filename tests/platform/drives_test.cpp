#include "tests/test_support.h"

#include <algorithm>

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
  support::CurrentDirectory directory{root};
};

std::string absolute(const std::string &name) {
  CFilename full;
  CFilename(name.c_str()).GetAbsolute(full, nullptr);
  return std::string(full.View());
}

TEST_F(DrivesTest, AHostPathTakesTheDriveWithTheLongestFolder) {
  const auto form = [this](const char *map, const char *path) {
    const support::Environment mapped("KESTRUNE_DRIVES", expanded(map).c_str());
    return absolute(expanded(path));
  };
  EXPECT_EQ(form("", "/a//./b/../../../c/"), R"(C:\c\)");
  EXPECT_EQ(form("D=T/d", "T/d"), R"(D:\)");
  EXPECT_EQ(form("D=T/d", "T/dd/x"), driveForm(R"(C:T\dd\x)"));
  EXPECT_EQ(form("D=T/d", "T/d/../x"), driveForm(R"(C:T\x)"));
  EXPECT_EQ(form("D=T/d;E=T/d/e", "T/d/e/x"), R"(E:\x)");
  EXPECT_EQ(form("d=T/q/../e/.;D=T/d", "T/d/x"), R"(D:\x)");
  EXPECT_EQ(form("A=T/d;C=T/d;D=T/d", "T/d/x"), R"(C:\x)") << "C wins a tie";
  EXPECT_EQ(form("C=T/d", "/home/me"), R"(Z:\home\me)");
  EXPECT_EQ(form("Z=T/d", "T/d/x"), driveForm(R"(C:T\d\x)")) << "Z is always the root";
  EXPECT_EQ(form(R"(;;D;D=;=T/d;D:=T/d;DD=T/d;D=d;1=T/d;D=\d)", "T/d/x"), driveForm(R"(C:T\d\x)")) << "no drives";
}

TEST_F(DrivesTest, TheCurrentDirectoryIsOnTheDriveWithTheLongestFolder) {
  fs::create_directories(root + "/d/e/f");
  fs::create_directory_symlink(root + "/d", root + "/link");
  const auto form = [this](const char *map, const char *current, const char *name) {
    const support::Environment mapped("KESTRUNE_DRIVES", expanded(map).c_str());
    const support::CurrentDirectory entered(expanded(current));
    return absolute(name);
  };
  EXPECT_EQ(form("", "T/d", "x"), driveForm(R"(C:T\d\x)"));
  EXPECT_EQ(form("D=T/d", "T", "x"), driveForm(R"(C:T\x)"));
  EXPECT_EQ(form("D=T/d", "T", "D:x"), R"(D:\x)") << "the root of another drive is current";
  EXPECT_EQ(form("D=T/d", "T/d/e", "x"), R"(D:\e\x)");
  EXPECT_EQ(form("D=T/d", "T/d/e", R"(\x)"), R"(D:\x)");
  EXPECT_EQ(form("D=T/d;E=T/d/e", "T/d/e", "x"), R"(E:\x)");
  EXPECT_EQ(form("D=T/d;C=T/d", "T/d", "x"), R"(C:\x)");
  EXPECT_EQ(form("D=T/link", "T/d/e", "x"), R"(D:\e\x)");
  EXPECT_EQ(form("C=T/nothing", "T", "x"), driveForm(R"(Z:T\x)"));
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
  const support::Environment mapped("KESTRUNE_DRIVES", expanded("D=T/d;E=T").c_str());
  const support::CurrentDirectory current(root + "/d/e");
  const auto contents = [this](const char *name) {
    const CFilename copy((root + "/copy").c_str());
    copy.Remove();
    return CFilename(expanded(name).c_str()).CopyFileA(copy) == 0 ? support::read(root + "/copy") : "none";
  };
  EXPECT_EQ(contents("d:/A.XML"), "d/a.xml");
  EXPECT_EQ(contents(R"(..\..\..\a.xml)"), "d/a.xml") << "a drive has nothing above its folder";
  EXPECT_EQ(contents("T/d/../A.xml"), "a.xml");
  EXPECT_EQ(contents("E:a.xml"), "a.xml");
  EXPECT_EQ(contents(R"(D:\sub\file.xml)"), "none") << "`sub` is there, so `Sub` is not looked at";
  EXPECT_EQ(contents(R"(D:\SUB\FILE.xml)"), "d/Sub/File.XML");
  EXPECT_EQ(contents(R"(D:\sub2x)"), "d/SUB2X");
  EXPECT_EQ(contents("b.xml"), "d/e/B.xml") << "the first by its bytes";
  EXPECT_EQ(contents("b.XML"), "d/e/b.XML");
  EXPECT_EQ(contents(R"(..\.hidden\.\x)"), "d/.hidden/x");
  EXPECT_EQ(contents(R"(D:\INé\x)"), "d/iné/x");
  EXPECT_EQ(contents(R"(D:\inÉ\x)"), "none") << "case is that of ASCII letters";
  EXPECT_EQ(contents(R"(D:\x:y)"), "d/x:y");
  EXPECT_EQ(contents(R"(D:\a.xml\)"), "none");
  EXPECT_EQ(contents(R"(D:\dangling.xml)"), "none");
  EXPECT_EQ(contents(R"(\\d\a.xml)"), "none");
  EXPECT_EQ(contents("Q:a.xml"), "none");
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
