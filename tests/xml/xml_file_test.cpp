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

TEST_F(XmlFile, LoadTellsEachFailure) {
  const auto fails = [](long result, const std::vector<std::string> &paths) {
    for (const std::string &path : paths) {
      Document document;
      document.List.Add("kept");
      EXPECT_EQ(load(document, path), result) << path;
      EXPECT_EQ(support::keys(document.List), "kept") << path;
      // Once a file was opened, the document counts as unmodified.
      EXPECT_EQ(document.GetModified() != 0, result == KRX_E_FILE_NOT_FOUND) << path;
      EXPECT_STREQ(document.m_fileName, path.c_str());
    }
  };
  fails(KRX_E_FILE_NOT_FOUND,
        {m_folder / "none.xml", m_folder.path(), "C:\\", "Q:\\a.xml", "\\\\server\\share\\a.xml"});
  fails(KRX_E_UNEXPECTED_DATA,
        {write("empty.xml", ""), write("noroot.xml", "<?xml version='1.0'?><!-- -->"),
         write("two.xml", "<Root/><Root/>"), write("malformed.xml", "<Root><Items></Root>"),
         write("bytes.xml", "<Root>\xFF</Root>"), write("zero.xml", std::string_view("<Root>\0</Root>", 14))});
  fails(KRX_E_WRONG_ROOT_TAG, {write("wrong.xml", "<Other><Items><Item Name='new'/></Items></Other>")});
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
  const auto fails = [&](long result, const std::string &path, bool overwrite = true, const char *text = "x") {
    Document document;
    document.List.Add("a")->Text = text;
    EXPECT_EQ(save(document, path, overwrite), result) << path << text;
    EXPECT_NE(document.GetModified(), 0) << path << text;
    EXPECT_TRUE(!fs::is_regular_file(path) || support::read(path) == old) << path << text;
  };
  fails(KRX_E_WRITE_PROTECTED, write("exists.xml", old), false);
  fails(KRX_E_WRITE_PROTECTED, m_folder.path(), false);
  for (const std::string &path : std::initializer_list<std::string>{
           m_folder.path(), readOnly, m_folder / "file/sub/a.xml", "/dev/full", "Q:\\a.xml"})
    fails(KRX_E_SAVE_FAILED, path);
  for (const char *text : {"a\x01", "\xC3(", "\xC0\x80", "\xED\xA0\x80", "\xEF\xBF\xBF"})
    fails(KRX_E_SAVE_FAILED, write("text.xml", old), true, text);
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
  kestrune::platform::SetDebugSink([&](const char *text) { told += text; });
  EXPECT_EQ(folder.LoadFromFile(path.c_str(), nullptr), KRX_E_LOAD_EXCEPTION);
  const std::size_t loadEnd = told.size();
  EXPECT_EQ(folder.SaveToFile(path.c_str(), nullptr, true), KRX_E_SAVE_FAILED);
  kestrune::platform::SetDebugSink({});
  EXPECT_NE(
      told.find("CXMLFolder::Load.  Warning: HRESULT not S_OK found while loading XML: Item\t: HRESULT: 0x80004005, "
                "the tree is torn"),
      std::string::npos);
  EXPECT_TRUE(told.substr(loadEnd).starts_with("CXMLFolder::Save.  Error(s) found while saving: "));
  EXPECT_TRUE(told.ends_with("\tUnexpected COM exception caught: HRESULT: 0x80004005, the tree is torn\n"));
  EXPECT_EQ(support::read(path), "<Item Name='n'/>");
}

TEST_F(XmlFile, ContentsAndUpgradeStatus) {
  Document document;
  EXPECT_NE(document.GetModified(), 0);
  EXPECT_GT(static_cast<int>(document.Contents.CreationDate), 1700000000);
  support::checkRows(2, "0x10 16 - 0 -1 4294967295 010 8", [&](const support::Cells &row) {
    document.Contents.UpgradeStatus = row[0];
    return CString(std::to_string(document.Contents.getUpgradeStatus()).c_str());
  });
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
