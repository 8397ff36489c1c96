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

TEST_F(XmlFile, LoadTellsEachFailure) {
  const struct {
    const char *what;
    std::string path;
    long result;
  } rows[] = {
      {"missing", m_folder / "none.xml", KRX_E_FILE_NOT_FOUND},
      {"directory", m_folder.path().string(), KRX_E_FILE_NOT_FOUND},
      {"drive root", "C:\\", KRX_E_FILE_NOT_FOUND},
      {"unmapped drive", "Q:\\a.xml", KRX_E_FILE_NOT_FOUND},
      {"network name", "\\\\server\\share\\a.xml", KRX_E_FILE_NOT_FOUND},
      {"empty file", write("empty.xml", ""), KRX_E_UNEXPECTED_DATA},
      {"no root", write("noroot.xml", "<?xml version='1.0'?><!-- -->"), KRX_E_UNEXPECTED_DATA},
      {"malformed", write("bad.xml", "<Root><Items></Root>"), KRX_E_UNEXPECTED_DATA},
      {"two roots", write("two.xml", "<Root/><Root/>"), KRX_E_UNEXPECTED_DATA},
      {"not UTF-8", write("bytes.xml", "<Root>\xFF</Root>"), KRX_E_UNEXPECTED_DATA},
      {"zero byte", write("zero.xml", std::string_view("<Root>\0</Root>", 14)), KRX_E_UNEXPECTED_DATA},
      {"wrong root", write("wrong.xml", "<Other><Items><Item Name='new'/></Items></Other>"), KRX_E_WRONG_ROOT_TAG},
  };
  for (const auto &row : rows) {
    Document document;
    document.List.Add("kept");
    EXPECT_EQ(load(document, row.path), row.result) << row.what;
    EXPECT_EQ(document.List.Count(), 1) << row.what;
    EXPECT_STREQ(document.List[0]->Key(), "kept") << row.what;
    // Once a file was opened, the document counts as unmodified.
    EXPECT_EQ(document.GetModified() != 0, row.result == KRX_E_FILE_NOT_FOUND) << row.what;
    EXPECT_EQ(document.m_fileName.Compare(row.path.c_str()), 0) << row.what;
  }
}

TEST_F(XmlFile, LoadTellsRemarksAndDuplicates) {
  const std::pair<const char *, long> rows[] = {
      {"<Root/>", S_OK},
      {"<ROOT><Contents Format='2'/></ROOT>", KRX_S_NO_ELEMENT},
      {"<Root><Contents><UpgradeStatus>1</UpgradeStatus></Contents></Root>", S_OK},
      {"<Root><Items/></Root>", KRX_S_EMPTY_COLLECTION},
      {"<Root><Items><Item Name='a'/><Item Name='a'/></Items></Root>", KRX_E_DUPLICATE_KEY},
  };
  for (const auto &[text, result] : rows) {
    Document document;
    EXPECT_EQ(load(document, write("a.xml", text)), result) << text;
    EXPECT_EQ(document.GetModified(), 0) << text;
  }
}

TEST_F(XmlFile, NamesAreRememberedAndRequired) {
  Document document;
  EXPECT_EQ(document.LoadFromFile(nullptr, nullptr), KRX_E_LOAD_NOT_NAMED);
  EXPECT_EQ(document.LoadFromFile("", ""), KRX_E_LOAD_NOT_NAMED);
  EXPECT_EQ(document.LoadFromFile(nullptr, m_folder.path().c_str()), KRX_E_FILE_NOT_FOUND) << "the base itself";
  EXPECT_EQ(document.SaveToFile(nullptr, nullptr, true), KRX_E_SAVE_NOT_NAMED);
  const std::string path = m_folder / "a/b/c/new.xml";
  EXPECT_EQ(load(document, path), KRX_E_FILE_NOT_FOUND);
  EXPECT_EQ(document.SaveToFile(nullptr, nullptr, false), S_OK) << "the name was remembered, folders are made";
  EXPECT_TRUE(fs::exists(path));
  EXPECT_EQ(document.LoadFromFile(nullptr, nullptr), KRX_S_EMPTY_COLLECTION);
}

TEST_F(XmlFile, EveryFormOfANameLeadsToTheFile) {
  support::write(m_folder / "Types/sub/Data.xml", "<Root><Items><Item Name='a'/></Items></Root>");
  CMacroString().AddMacro("$XMLFILETEST$", m_folder.path().c_str());
  const support::CurrentDirectory directory(m_folder.path());
  const support::Environment drives("KESTRUNE_DRIVES", ("T=" + m_folder.path().string()).c_str());
  std::string windows = m_folder / "Types/sub/Data.xml";
  std::replace(windows.begin(), windows.end(), '/', '\\');
  const std::pair<std::string, std::string> rows[] = {
      {m_folder / "Types/sub/Data.xml", ""},
      {"Z:" + windows, ""},
      {"C:" + (m_folder / "Types/sub/Data.xml"), ""},
      {"T:\\types\\SUB\\data.XML", ""},
      {"t:Types\\sub\\Data.xml", ""},
      {"\\Types\\sub\\Data.xml", ""},
      {"$xmlfiletest$\\Types\\sub\\Data.xml", ""},
      {"$XMLFILETEST$/Types/sub/Data.xml", ""},
      {"Types\\sub\\DATA.xml", ""},
      {"Types/sub/../sub/Data.xml", ""},
      {"Data.xml", m_folder / "Types/sub"},
      {"sub\\Data.xml", "$XMLFILETEST$\\Types"},
  };
  for (const auto &[name, base] : rows) {
    Document document;
    EXPECT_EQ(document.LoadFromFile(name.c_str(), base.c_str()), S_OK) << name;
    EXPECT_EQ(document.m_fileName.Compare(name.c_str()), 0) << "the name as it was given";
    document.List.Add(name.c_str());
    EXPECT_EQ(document.SaveToFile(nullptr, base.c_str(), true), S_OK) << name;
    EXPECT_EQ(document.LoadFromFile(nullptr, base.c_str()), S_OK) << name;
    EXPECT_NE(document.List.Find(name.c_str()), nullptr) << name;
  }
  EXPECT_EQ(std::distance(fs::recursive_directory_iterator(m_folder.path()), {}), 3) << "no other file was made";
}

TEST_F(XmlFile, SaveTellsEachFailureAndLeavesTheOldFile) {
  const std::string old = "<old/>";
  write("file", "x");
  const std::string readOnly = write("readonly.xml", old);
  fs::permissions(readOnly, fs::perms::owner_read);
  const struct {
    const char *what;
    std::string path;
    bool overwrite;
    const char *text;
    long result;
  } rows[] = {
      {"exists", write("exists.xml", old), false, "x", KRX_E_WRITE_PROTECTED},
      {"directory exists", m_folder.path().string(), false, "x", KRX_E_WRITE_PROTECTED},
      {"directory", m_folder.path().string(), true, "x", KRX_E_SAVE_FAILED},
      {"read-only", readOnly, true, "x", KRX_E_SAVE_FAILED},
      {"folder cannot be made", m_folder / "file/sub/a.xml", true, "x", KRX_E_SAVE_FAILED},
      {"full device", "/dev/full", true, "x", KRX_E_SAVE_FAILED},
      {"unmapped drive", "Q:\\a.xml", true, "x", KRX_E_SAVE_FAILED},
      {"control character", write("control.xml", old), true, "a\x01", KRX_E_SAVE_FAILED},
      {"bad bytes", write("bytes.xml", old), true, "\xC3(", KRX_E_SAVE_FAILED},
      {"overlong", write("overlong.xml", old), true, "\xC0\x80", KRX_E_SAVE_FAILED},
      {"surrogate", write("surrogate.xml", old), true, "\xED\xA0\x80", KRX_E_SAVE_FAILED},
      {"noncharacter", write("noncharacter.xml", old), true, "\xEF\xBF\xBF", KRX_E_SAVE_FAILED},
  };
  for (const auto &row : rows) {
    Document document;
    document.List.Add("a")->Text = row.text;
    EXPECT_EQ(save(document, row.path, row.overwrite), row.result) << row.what;
    EXPECT_NE(document.GetModified(), 0) << row.what;
    EXPECT_TRUE(!fs::is_regular_file(row.path) || support::read(row.path) == old) << row.what;
  }
  for (const char *name : {"", "a b", "1a", "a&", "\xC2\xAD"}) {
    Document document;
    document.List.Add("a")->Text.PutTag(CString(name));
    EXPECT_EQ(save(document, m_folder / "name.xml"), KRX_E_SAVE_FAILED) << name;
    EXPECT_FALSE(fs::exists(m_folder / "name.xml")) << name;
  }
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
    if (failTree)
      throw _com_error(E_FAIL, "the tree is torn");
    throw new CKRXException(5u);
  }
  IXMLDOMElementPtr Save(IXMLDOMElementPtr, int) override {
    if (failTree)
      throw _com_error(E_FAIL, "the tree is torn");
    throw new CKRXException(6u);
  }
};

TEST_F(XmlFile, FailuresInsideAreCodesAndExceptionsPassThrough) {
  const std::string path = write("a.xml", "<Item Name='n'/>");
  Throwing folder;
  EXPECT_EQ(support::thrownMessage([&] { folder.LoadFromFile(path.c_str(), nullptr); }), "uninitialized [KRX#5]");
  EXPECT_EQ(support::thrownMessage([&] { folder.SaveToFile(path.c_str(), nullptr, true); }), "uninitialized [KRX#6]");
  EXPECT_STREQ(folder.Name, "n");
  folder.failTree = true;
  std::string told;
  platform::SetDebugSink([&](const char *text) { told += text; });
  EXPECT_EQ(folder.LoadFromFile(path.c_str(), nullptr), KRX_E_LOAD_EXCEPTION);
  const std::size_t loadEnd = told.size();
  EXPECT_EQ(folder.SaveToFile(path.c_str(), nullptr, true), KRX_E_SAVE_FAILED);
  platform::SetDebugSink({});
  EXPECT_NE(
      told.find("CXMLFolder::Load.  Warning: HRESULT not S_OK found while loading XML: Item\t: HRESULT: 0x80004005, "
                "the tree is torn"),
      std::string::npos);
  EXPECT_TRUE(told.substr(loadEnd).starts_with("CXMLFolder::Save.  Error(s) found while saving: "));
  EXPECT_TRUE(told.ends_with("\tUnexpected COM exception caught: HRESULT: 0x80004005, the tree is torn\n"));
  EXPECT_EQ(support::read(path), "<Item Name='n'/>");
}

TEST_F(XmlFile, PlainFolderReadsItsElementsBackButNotItsAttributes) {
  Item item;
  item.Name = "n";
  item.Text = "t";
  const std::string path = m_folder / "item.xml";
  ASSERT_EQ(item.SaveToFile(path.c_str(), nullptr, true), S_OK);
  Item again;
  EXPECT_EQ(again.LoadFromFile(path.c_str(), nullptr), KRX_S_NO_ATTRIBUTE);
  EXPECT_STREQ(again.Text, "t");
  EXPECT_STREQ(again.Name, "Unassigned");
}

TEST_F(XmlFile, ContentsAndUpgradeStatus) {
  Document document;
  EXPECT_NE(document.GetModified(), 0);
  EXPECT_GT(static_cast<int>(document.Contents.CreationDate), 1700000000);
  const std::pair<const char *, unsigned> rows[] = {{"0x10", 16}, {"", 0}, {"-1", 4294967295u}, {"010", 8}};
  for (const auto &[text, status] : rows) {
    document.Contents.UpgradeStatus = text;
    EXPECT_EQ(document.Contents.getUpgradeStatus(), status) << text;
  }
  document.Contents.setUpgradeStatus(3000000000u);
  EXPECT_STREQ(document.Contents.UpgradeStatus, "-1294967296");
  EXPECT_EQ(document.Contents.getUpgradeStatus(), 3000000000u);
  document.Contents.UpgradeStatus = "5x";
  EXPECT_EQ(support::thrownMessage([&] { document.Contents.getUpgradeStatus(); }),
            "Unexpected non-numeric value found in XML data (UpgradeStatus) [KRX#101]");
  load(document, write("a.xml", "<Root><Contents CreationDate='5' Format='99'/></Root>"));
  EXPECT_STREQ(document.Contents.CreationDate, "5");
  EXPECT_STREQ(document.Contents.Format, "99");
  const CXMLContents copy(document.Contents);
  EXPECT_STREQ(copy.CreationDate, "5");
  Document other;
  other.m_fileName = "other.xml";
  other.CXMLTopLevelFolder::operator=(document);
  EXPECT_STREQ(other.Contents.Format, "99");
  EXPECT_STREQ(other.m_fileName, "other.xml");
}

} // namespace
