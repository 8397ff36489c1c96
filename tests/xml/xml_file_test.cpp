#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

#include <thread>

namespace {

namespace fs = std::filesystem;
using sample::Document;
using sample::Item;

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
  constexpr bool kIsOpened = true;
  const struct {
    std::string path;
    long result;
    bool isOpened = false; // then the document counts as unmodified
  } rows[] = {
      {m_folder / "none.xml", KRX_E_FILE_NOT_FOUND},
      {m_folder.path(), KRX_E_FILE_NOT_FOUND},
      {"Q:\\a.xml", KRX_E_FILE_NOT_FOUND},
      {write("noroot.xml", "<?xml version='1.0'?><!-- -->"), KRX_E_UNEXPECTED_DATA, kIsOpened},
      {write("malformed.xml", "<Root><Items></Root>"), KRX_E_UNEXPECTED_DATA, kIsOpened},
      {write("zero.xml", std::string_view("<Root>\0</Root>", 14)), KRX_E_UNEXPECTED_DATA, kIsOpened},
      {write("wrong.xml", "<Other><Items><Item Name='new'/></Items></Other>"), KRX_E_WRONG_ROOT_TAG, kIsOpened},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.path);
    Document document;
    document.List.Add("kept");
    EXPECT_EQ(load(document, row.path), row.result);
    EXPECT_EQ(support::keys(document.List), "kept");
    EXPECT_EQ(document.GetModified() == 0, row.isOpened);
    EXPECT_STREQ(document.m_fileName, row.path.c_str());
  }
}

TEST_F(XmlFile, NamesAreRememberedAndRequired) {
  Document document;
  EXPECT_EQ(document.LoadFromFile(nullptr, nullptr), KRX_E_LOAD_NOT_NAMED);
  EXPECT_EQ(document.LoadFromFile("", ""), KRX_E_LOAD_NOT_NAMED);
  EXPECT_EQ(document.LoadFromFile(nullptr, m_folder.path().c_str()), KRX_E_FILE_NOT_FOUND) << "the base itself";
  EXPECT_EQ(document.SaveToFile(nullptr, nullptr, true), KRX_E_SAVE_NOT_NAMED);
  const std::string path = m_folder / "new.xml";
  EXPECT_EQ(load(document, path), KRX_E_FILE_NOT_FOUND);
  EXPECT_EQ(document.SaveToFile(nullptr, nullptr, false), S_OK);
  EXPECT_TRUE(fs::exists(path));
  EXPECT_EQ(document.LoadFromFile(nullptr, nullptr), KRX_S_EMPTY_COLLECTION);
}

TEST_F(XmlFile, ASaveMakesAllFoldersOfItsPath) {
  const support::Environment drives("KESTRUNE_DRIVES", ("T=" + m_folder.path().string()).c_str());
  Document document;
  EXPECT_EQ(save(document, "T:\\a\\b\\c\\x.xml"), S_OK);
  EXPECT_TRUE(fs::exists(m_folder / "a/b/c/x.xml"));
  EXPECT_EQ(save(document, "T:\\a\\b\\y.xml"), S_OK);
  EXPECT_TRUE(fs::exists(m_folder / "a/b/y.xml"));
  EXPECT_EQ(std::distance(fs::recursive_directory_iterator(m_folder.path()), {}), 5);
}

TEST_F(XmlFile, ANameIsResolvedAgainstABaseAndKeptAsItIs) {
  write("Types/sub/Data.xml", "<Root><Items><Item Name='a'/></Items></Root>");
  CMacroString().AddMacro("$XMLFILETEST$", m_folder.path().c_str());
  const char *const base = "$XMLFILETEST$\\Types";
  Document document, again;
  EXPECT_EQ(document.LoadFromFile("SUB\\data.xml", base), S_OK);
  EXPECT_STREQ(document.m_fileName, "SUB\\data.xml");
  document.List.Add("b");
  EXPECT_EQ(document.SaveToFile(nullptr, base, true), S_OK);
  EXPECT_EQ(load(again, m_folder / "Types/sub/Data.xml"), S_OK);
  EXPECT_EQ(support::keys(again.List), "a,b");
}

TEST_F(XmlFile, AFailedSaveLeavesTheOldFile) {
  const std::string old = "<old/>";
  write("file", "x");
  const std::string readOnly = write("readonly.xml", old), normal = write("normal.xml", old);
  fs::permissions(readOnly, fs::perms::owner_read);
  constexpr bool kKeep = false;
  const struct {
    std::string path;
    long result;
    const char *text = "x";
    bool overwrite = true;
  } rows[] = {
      {normal, KRX_E_WRITE_PROTECTED, "x", kKeep},
      {m_folder.path(), KRX_E_SAVE_FAILED},
      {readOnly, KRX_E_SAVE_FAILED},
      {m_folder / "file/sub/a.xml", KRX_E_SAVE_FAILED},
      {"Q:\\a.xml", KRX_E_SAVE_FAILED},
      // No characters of XML, or no UTF-8.
      {normal, KRX_E_SAVE_FAILED, "a\x01"},
      {normal, KRX_E_SAVE_FAILED, "\xC3("},
      {normal, KRX_E_SAVE_FAILED, "\xEF\xBF\xBF"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.path + " " + testing::PrintToString(row.text));
    Document document;
    document.List.Add("a")->Text = row.text;
    EXPECT_EQ(save(document, row.path, row.overwrite), row.result);
    EXPECT_NE(document.GetModified(), 0);
    EXPECT_EQ(support::read(normal), old);
    EXPECT_EQ(support::read(readOnly), old);
  }
  Document document;
  document.List.Add("a")->Text.PutTag(CString("a b")); // no name of XML
  EXPECT_EQ(save(document, m_folder / "name.xml"), KRX_E_SAVE_FAILED);
  EXPECT_FALSE(fs::exists(m_folder / "name.xml"));
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
  EXPECT_EQ(support::read(path), "<Root/>");
}

/// A folder whose load or save ends in an exception.
class Throwing : public Item {
public:
  bool failTree = false;
  long Load(MSXML::IXMLDOMElement *parent) override {
    Item::Load(parent);
    fail(5);
    return S_OK;
  }
  IXMLDOMElementPtr Save(IXMLDOMElementPtr, int) override {
    fail(6);
    return {};
  }

private:
  void fail(unsigned subCode) const {
    if (failTree)
      throw _com_error(E_FAIL, "the tree is torn");
    throw new CKRXException(subCode);
  }
};

TEST_F(XmlFile, FailuresOfTheTreeAreCodesAndOtherExceptionsPassThrough) {
  const std::string path = write("a.xml", "<Item Name='n'/>");
  Throwing folder;
  EXPECT_EQ(support::thrownMessage([&] { folder.LoadFromFile(path.c_str(), nullptr); }), "uninitialized [KRX#5]");
  EXPECT_EQ(support::thrownMessage([&] { folder.SaveToFile(path.c_str(), nullptr, true); }), "uninitialized [KRX#6]");
  EXPECT_STREQ(folder.Name, "n");
  folder.failTree = true;
  std::string onLoad, onSave;
  kestrune::platform::SetDebugSink([&](const char *text) { onLoad = text; });
  EXPECT_EQ(folder.LoadFromFile(path.c_str(), nullptr), KRX_E_LOAD_EXCEPTION);
  kestrune::platform::SetDebugSink([&](const char *text) { onSave = text; });
  EXPECT_EQ(folder.SaveToFile(path.c_str(), nullptr, true), KRX_E_SAVE_FAILED);
  kestrune::platform::SetDebugSink({});
  EXPECT_EQ(onLoad, "CXMLFolder::Load.  Warning: HRESULT not S_OK found while loading XML: Item\t: HRESULT: "
                    "0x80004005, the tree is torn");
  EXPECT_TRUE(onSave.starts_with("CXMLFolder::Save.  Error(s) found while saving: ")) << onSave;
  EXPECT_TRUE(onSave.ends_with("\tUnexpected COM exception caught: HRESULT: 0x80004005, the tree is torn\n"));
  EXPECT_EQ(support::read(path), "<Item Name='n'/>");
}

TEST_F(XmlFile, UpgradeStatusIsANumber) {
  CXMLContents contents;
  contents.UpgradeStatus = "0x10";
  EXPECT_EQ(contents.getUpgradeStatus(), 16u);
  contents.setUpgradeStatus(3000000000u);
  EXPECT_STREQ(contents.UpgradeStatus, "-1294967296");
  EXPECT_EQ(contents.getUpgradeStatus(), 3000000000u);
  contents.UpgradeStatus = "5x";
  EXPECT_EQ(support::thrownMessage([&] { contents.getUpgradeStatus(); }),
            "Unexpected non-numeric value found in XML data (UpgradeStatus) [KRX#101]");
}

TEST_F(XmlFile, ContentsAreDatedLoadedAndCopied) {
  Document document;
  EXPECT_NE(document.GetModified(), 0);
  EXPECT_GT(static_cast<int>(document.Contents.CreationDate), 1700000000);
  load(document, write("a.xml", "<Root><Contents CreationDate='5' Format='99'/></Root>"));
  EXPECT_STREQ(document.Contents.CreationDate, "5");
  EXPECT_STREQ(CXMLContents(document.Contents).CreationDate, "5");
  Document other;
  other.m_fileName = "other.xml";
  other.CXMLTopLevelFolder::operator=(document);
  EXPECT_STREQ(other.Contents.Format, "99");
  EXPECT_STREQ(other.m_fileName, "other.xml");
}

} // namespace
