#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

#include <thread>

namespace {

namespace fs = std::filesystem;
using sample::Document;

class XmlFile : public testing::Test {
protected:
  std::string write(const std::string &name, std::string_view bytes) {
    support::write(m_folder / name, bytes);
    return m_folder / name;
  }
  static long load(Document &document, const std::string &path) { return document.LoadFromFile(path.c_str(), nullptr); }
  static long save(Document &document, const std::string &path, bool overwrite = true) {
    return document.SaveToFile(path.c_str(), nullptr, overwrite);
  }

  support::Com m_com;
  support::TempFolder m_folder;
};

TEST_F(XmlFile, AFailedLoadKeepsTheItemsAndReportsItsCause) {
  const struct {
    std::string path;
    long result;
    bool isModified;
  } rows[] = {
      {m_folder / "none.xml", KRX_E_FILE_NOT_FOUND, true},
      {write("rootless.xml", "<?xml version='1.0'?><!-- -->"), KRX_E_UNEXPECTED_DATA, false},
      {write("malformed.xml", "<Root><Items></Root>"), KRX_E_UNEXPECTED_DATA, false},
      {write("wrong.xml", "<Other><Items><Item Name='new'/></Items></Other>"), KRX_E_WRONG_ROOT_TAG, false},
  };
  for (const auto &row : rows) {
    Document document;
    document.List.Add("kept");
    EXPECT_EQ(load(document, row.path), row.result) << row.path;
    EXPECT_EQ(support::keys(document.List), "kept") << row.path;
    EXPECT_EQ(document.GetModified() != 0, row.isModified) << row.path;
    EXPECT_STREQ(document.m_fileName, row.path.c_str());
  }
}

TEST_F(XmlFile, ANameIsRequiredResolvedAgainstABaseAndKeptAsItIs) {
  Document document;
  EXPECT_EQ(document.LoadFromFile(nullptr, nullptr), KRX_E_LOAD_NOT_NAMED);
  EXPECT_EQ(document.SaveToFile(nullptr, nullptr, true), KRX_E_SAVE_NOT_NAMED);
  const std::string path = write("Types/sub/Data.xml", "<Root><Items><Item Name='a'/></Items></Root>");
  CMacroString().AddMacro("$XMLFILETEST$", m_folder.path().c_str());
  const char *const base = "$XMLFILETEST$\\Types";
  EXPECT_EQ(document.LoadFromFile("SUB\\data.xml", base), S_OK);
  EXPECT_STREQ(document.m_fileName, "SUB\\data.xml");
  document.List.Add("b");
  EXPECT_EQ(document.SaveToFile(nullptr, base, true), S_OK);
  EXPECT_NE(support::read(path).find("\"b\""), std::string::npos);
}

TEST_F(XmlFile, ASaveMakesAllFoldersOfItsPath) {
  const support::Environment drives("KESTRUNE_DRIVES", ("T=" + m_folder.path().string()).c_str());
  Document document;
  EXPECT_EQ(save(document, "T:\\a\\b\\c\\x.xml"), S_OK);
  EXPECT_TRUE(fs::exists(m_folder / "a/b/c/x.xml"));
  EXPECT_EQ(std::distance(fs::recursive_directory_iterator(m_folder.path()), {}), 4) << "and nothing else";
}

TEST_F(XmlFile, AFailedSaveLeavesTheOldFile) {
  const struct {
    const char *text;
    bool overwrite;
    long result;
  } rows[] = {
      {"not to be overwritten", false, KRX_E_WRITE_PROTECTED},
      {"not a character of XML: \x01", true, KRX_E_SAVE_FAILED},
      {"not UTF-8: \xC3(", true, KRX_E_SAVE_FAILED},
  };
  const std::string path = write("a.xml", "<old/>");
  Document document;
  document.List.Add("a");
  for (const auto &row : rows) {
    document.List[0]->Text = row.text;
    EXPECT_EQ(save(document, path, row.overwrite), row.result) << row.text;
    EXPECT_NE(document.GetModified(), 0) << row.text;
  }
  document.List[0]->Text = "sound";
  EXPECT_EQ(save(document, path + "/sub/a.xml"), KRX_E_SAVE_FAILED) << "a file in place of the folder";
  fs::permissions(path, fs::perms::owner_read);
  EXPECT_EQ(save(document, path), KRX_E_SAVE_FAILED);
  EXPECT_EQ(support::read(path), "<old/>");
}

TEST_F(XmlFile, ComIsNeededByTheThread) {
  const std::string path = write("a.xml", "<Root/>");
  std::thread([&] {
    Document document;
    EXPECT_EQ(load(document, path), KRX_E_COM_CREATE);
    EXPECT_EQ(save(document, path), KRX_E_COM_CREATE);
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
    CoUninitialize();
    EXPECT_EQ(load(document, path), S_OK);
    CoUninitialize();
    EXPECT_EQ(load(document, path), KRX_E_COM_CREATE);
  }).join();
}

/// A folder whose load and save end in a failure of the tree, or another exception.
struct Throwing : sample::Item {
  long Load(MSXML::IXMLDOMElement *) override { throw _com_error(E_FAIL, "the tree is torn"); }
  IXMLDOMElementPtr Save(IXMLDOMElementPtr, int) override { throw new CKRXException(6); }
};

TEST_F(XmlFile, FailuresOfTheTreeAreCodesAndOtherExceptionsPassThrough) {
  const std::string path = write("a.xml", "<Item/>");
  Throwing folder;
  EXPECT_EQ(folder.LoadFromFile(path.c_str(), nullptr), KRX_E_LOAD_EXCEPTION);
  EXPECT_EQ(support::thrownMessage([&] { folder.SaveToFile(path.c_str(), nullptr, true); }), "uninitialized [KRX#6]");
  EXPECT_EQ(support::read(path), "<Item/>");
}

TEST_F(XmlFile, ContentsAreDatedAndHoldAnUpgradeStatus) {
  CXMLContents contents;
  EXPECT_GT(static_cast<int>(contents.CreationDate), 1700000000);
  contents.setUpgradeStatus(3000000000u);
  EXPECT_STREQ(contents.UpgradeStatus, "-1294967296");
  EXPECT_EQ(contents.getUpgradeStatus(), 3000000000u);
}

} // namespace
