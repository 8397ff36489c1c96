#include "tests/test_support.h"

namespace {

namespace fs = std::filesystem;

class DrivesTest : public testing::Test {
protected:
  support::TempFolder folder;
  const std::string root = fs::canonical(folder.path()).string();
};

std::string absolute(const std::string &name) {
  CFilename full;
  CFilename(name.c_str()).GetAbsolute(full, nullptr);
  return std::string(full.View());
}

TEST_F(DrivesTest, AHostPathTakesTheDriveWithTheLongestFolder) {
  const auto form = [](const char *map, const char *path) {
    const support::Environment mapped("KESTRUNE_DRIVES", map);
    return absolute(path);
  };
  EXPECT_EQ(form("", "/a//./b/../../../c/"), R"(C:\c\)");
  EXPECT_EQ(form("D=/d", "/dd/x"), R"(C:\dd\x)");
  EXPECT_EQ(form("D=/d;E=/d/e", "/d/e/x"), R"(E:\x)");
  EXPECT_EQ(form("A=/d;C=/d;D=/d", "/d/x"), R"(C:\x)") << "C wins a tie";
}

TEST_F(DrivesTest, TheRootOfTheHostIsThere) { EXPECT_EQ(CFilename("Z:\\").FileExists(), 1); }

TEST_F(DrivesTest, TheCurrentDirectoryIsOnTheDriveWithItsFolder) {
  fs::create_directories(root + "/d/e");
  const support::Environment mapped("KESTRUNE_DRIVES", ("D=" + root + "/d").c_str());
  const auto form = [this](const char *current, const char *name) {
    const support::CurrentDirectory entered(root + current);
    return absolute(name);
  };
  EXPECT_EQ(form("/", "D:x"), R"(D:\x)") << "the root of another drive is current";
  EXPECT_EQ(form("/d/e", "x"), R"(D:\e\x)");
  const support::CurrentDirectory gone(root + "/d/e");
  fs::remove(root + "/d/e");
  EXPECT_EQ(absolute("x"), "") << "no current directory";
}

TEST_F(DrivesTest, NamesLeadToFiles) {
  for (const char *file : {"d/a.xml", "a.xml", "d/Sub/File.XML", "d/e/B.xml", "d/e/b.XML", "d/iné/x", "d/sub/other"})
    support::write(root + "/" + file, file);
  const support::Environment mapped("KESTRUNE_DRIVES", ("D=" + root + "/d").c_str());
  const support::CurrentDirectory current(root + "/d/e");
  const auto contents = [this](const char *name) {
    const CFilename copy((root + "/copy").c_str());
    copy.Remove();
    return CFilename(name).CopyFileA(copy) == 0 ? support::read(root + "/copy") : "none";
  };
  EXPECT_EQ(contents("d:/A.XML"), "d/a.xml");
  EXPECT_EQ(contents(R"(..\..\..\a.xml)"), "d/a.xml") << "a drive has nothing above its folder";
  EXPECT_EQ(contents((root + "/d/../A.xml").c_str()), "a.xml");
  EXPECT_EQ(contents(R"(D:\sub\file.xml)"), "none") << "`sub` is there, so `Sub` is not looked at";
  EXPECT_EQ(contents(R"(D:\SUB\FILE.xml)"), "d/Sub/File.XML");
  EXPECT_EQ(contents("b.xml"), "d/e/B.xml") << "the first by its bytes";
  fs::create_symlink("nowhere", root + "/d/e/b.xml");
  EXPECT_EQ(CFilename("b.xml").FileExists(), 0) << "a link to nothing has that name";
  EXPECT_EQ(contents(R"(D:\inÉ\x)"), "none") << "case is that of ASCII letters";
}

TEST_F(DrivesTest, ANameInAnotherCaseIsTheSameFile) {
  support::write(root + "/Data/Old.XML", "old");
  support::write(root + "/source", "new");
  const CFilename source((root + "/source").c_str());
  EXPECT_EQ(source.CopyFileA((root + "/data/OLD.xml").c_str()), 0);
  EXPECT_EQ(support::read(root + "/Data/Old.XML"), "new");

  CFilename name((root + "/data/old.xml").c_str());
  CString taken = (root + "/SOURCE").c_str(), ownName = (root + "/data/oLd.Xml").c_str();
  EXPECT_EQ(name.Rename(taken), static_cast<unsigned long>(CFileException::accessDenied));
  EXPECT_EQ(name.Rename(ownName), 0U);
  EXPECT_EQ(support::read(root + "/Data/oLd.Xml"), "new");
}

// The host's names are UTF-8. In page 932 the trail byte of U+8868 is that of a backslash.
TEST_F(DrivesTest, NamesAreWrittenInTheCodePage) {
  support::write(root + "/\xE8\xA1\xA8/\xE3\x81\x82.xml", "123");
  const support::CodePage page(932);
  const support::Environment mapped("KESTRUNE_DRIVES", ("D=" + root).c_str());
  const support::CurrentDirectory current(root + "/\xE8\xA1\xA8");
  EXPECT_EQ(CFilename((root + "/\x95\\/\x82\xA0.XML").c_str()).FileSize(), 3);
  EXPECT_EQ(absolute("x"), "D:\\\x95\\\\x");
  EXPECT_EQ(absolute(root + "/\x95\\/x"), "D:\\\x95\\\\x");
  EXPECT_EQ(CFilename((root + "/\x95\\/\x82\xA0.xml").c_str()).CopyFileA("\x82\xA2.xml"), 0);
  EXPECT_EQ(support::read(root + "/\xE8\xA1\xA8/\xE3\x81\x84.xml"), "123");
}

} // namespace
