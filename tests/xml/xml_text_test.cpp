#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

namespace {

namespace fs = std::filesystem;
using sample::Document;

std::string items(int count) {
  std::string xml = "<Root><Items>";
  for (int i = 0; i < count; ++i)
    xml += "<Item Name='" + std::to_string(i) + "'><Text>t</Text></Item>";
  return xml + "</Items></Root>";
}

TEST(XmlText, ATextIsLoadedAndSavedAsAFileWithItsBytesIs) {
  const struct {
    const char *what;
    std::string text;
    long result;
  } rows[] = {
      {"plain", "<Root><Items><Item Name='a'/></Items></Root>", S_OK},
      {"longer than a window", items(5000), S_OK},
      {"for the second reader", "<!DOCTYPE Root [<!ENTITY e 'b'>]><Root><Items><Item Name='&e;'/></Items></Root>",
       S_OK},
      {"Latin-1", "<?xml version='1.0' encoding='ISO-8859-1'?><Root><Items><Item Name='\xFC'/></Items></Root>", S_OK},
      {"read twice", "<?xml version='1.0' encoding='EUC-KR'?><Root><Items><Item Name='\xB0\xA1'/></Items></Root>",
       S_OK},
      {"UTF-16", std::string("\xFF\xFE<\0R\0o\0o\0t\0/\0>\0", 16), S_OK},
      {"a zero byte", std::string("<Root>\0</Root>", 14), KRX_E_UNEXPECTED_DATA},
      {"two of a key", "<Root><Items><Item Name='a'/><Item Name='A'/></Items></Root>", KRX_E_DUPLICATE_KEY},
      {"another root", "<Other/>", KRX_E_WRONG_ROOT_TAG},
      {"nothing", "", KRX_E_UNEXPECTED_DATA},
  };
  const support::Com com;
  for (const auto &row : rows) {
    Document fromText, fromFile;
    const long result = kestrune::LoadFromText(fromText, row.text);
    EXPECT_EQ(result, support::load(fromFile, row.text)) << row.what;
    EXPECT_TRUE(row.result < 0 ? result == row.result : result >= 0) << row.what << ": " << result;
    EXPECT_EQ(fromText.GetModified(), 0) << row.what;
    fromText.Contents.CreationDate = fromFile.Contents.CreationDate = 4;
    std::string saved;
    EXPECT_EQ(kestrune::SaveToText(fromText, saved), S_OK) << row.what;
    EXPECT_NE(fromText.GetModified(), 0) << row.what;
    EXPECT_EQ(saved, support::save(fromFile)) << row.what;
  }
}

TEST(XmlText, AFailedSaveLeavesTheTextAlone) {
  Document document;
  std::string text = "old";
  EXPECT_EQ(kestrune::SaveToText(document, text), KRX_E_COM_CREATE);
  EXPECT_EQ(kestrune::LoadFromText(document, "<Root/>"), KRX_E_COM_CREATE);
  const support::Com com;
  document.List.Add("a")->Text = "not a character of XML: \x01";
  EXPECT_EQ(kestrune::SaveToText(document, text), KRX_E_SAVE_FAILED);
  EXPECT_EQ(text, "old");
}

TEST(XmlText, AnyBytesReplaceAFile) {
  const support::TempFolder folder;
  support::write(folder / "there", "old");
  fs::permissions(folder / "there", fs::perms::owner_all);
  const struct {
    std::string path;
    long result;
    const char *reason;
  } rows[] = {
      {folder / "there", S_OK, ""},
      {folder / "new", S_OK, ""},
      {folder / "none/a", KRX_E_SAVE_FAILED, "No such file or directory"},
      {folder / "there/a", KRX_E_SAVE_FAILED, "Not a directory"},
      {folder.path(), KRX_E_SAVE_FAILED, "Is a directory"},
      {"", KRX_E_SAVE_NOT_NAMED, "there is no name to save under"},
  };
  const std::string bytes("a\0\x01\xFF", 4);
  for (const auto &row : rows) {
    std::string reason = "of an earlier call";
    EXPECT_EQ(kestrune::ReplaceFile(row.path.c_str(), bytes, &reason), row.result) << row.path;
    EXPECT_EQ(reason, row.reason) << row.path;
    if (row.result == S_OK) {
      EXPECT_EQ(support::read(row.path), bytes) << row.path;
    }
  }
  EXPECT_EQ(kestrune::ReplaceFile((folder / "there").c_str(), ""), S_OK);
  EXPECT_EQ(fs::file_size(folder / "there"), 0U);
  EXPECT_EQ(fs::status(folder / "there").permissions(), fs::perms::owner_all);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 2) << "and no other file stays";
}

TEST(ResultWords, EveryCodeHasThem) {
  const struct {
    long code;
    const char *name;
    const char *text;
  } rows[] = {
      {S_OK, "S_OK", "success"},
      {KRX_S_NO_ATTRIBUTE, "KRX_S_NO_ATTRIBUTE", "lacks the attribute"},
      {KRX_E_FILE_NOT_FOUND, "KRX_E_FILE_NOT_FOUND", "does not exist"},
      {0x80040008, "KRX_E_DUPLICATE_KEY", "used twice"},
      {E_INVALIDARG, "0x80070057", "0x80070057"},
      {7, "0x00000007", "0x00000007"},
  };
  for (const auto &row : rows) {
    EXPECT_EQ(kestrune::ResultName(row.code), row.name);
    EXPECT_NE(kestrune::ResultText(row.code).find(row.text), std::string::npos) << row.name;
  }
}

} // namespace
