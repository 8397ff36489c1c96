#include "tests/test_support.h"

#include <memory>

namespace {

struct Ender {
  void operator()(CException *exception) const { exception->Delete(); }
};
using Exception = std::unique_ptr<CKRXException, Ender>;

/// An exception of some other module of the tool.
class ModuleException : public CKesException {
public:
  explicit ModuleException(int module) : CKesException(module) { m_message = "m"; }
};

TEST(KrxException, MessageNamesTextModuleAndSubCode) {
  const struct {
    Exception exception;
    const char *message;
    int subCode;
  } rows[] = {
      {Exception(new CKRXException()), "uninitialized [KRX]", 0},
      {Exception(new CKRXException(0xFFFFFFFFu)), "uninitialized [KRX#-1]", -1},
      {Exception(new CKRXException(101, "abc")), "Unexpected non-numeric value found in XML data (abc) [KRX#101]", 101},
      {Exception(new CKRXException(126, "unused")), "File not named before save [KRX#126]", 126},
      {Exception(new CKRXException(42, 124)), "File not found [KRX#42]", 42},
      {Exception(new CKRXException(7, 101, "x")), "Unexpected non-numeric value found in XML data (x) [KRX#7]", 7},
      {Exception(new CKRXException(7, 115)), " [KRX#7]", 7},
  };
  for (const auto &row : rows) {
    EXPECT_STREQ(row.exception->GetFormattedMessage(), row.message);
    EXPECT_EQ(row.exception->GetSubCode(), row.subCode) << row.message;
    EXPECT_EQ(row.exception->GetModuleCode(), 3) << row.message;
  }
  EXPECT_STREQ(ModuleException(0).GetFormattedMessage(), "m [QOV]");
  EXPECT_STREQ(ModuleException(19).GetFormattedMessage(), "m [XOL]");
  for (const int unknown : {-1, 20})
    EXPECT_STREQ(ModuleException(unknown).GetFormattedMessage(), "m [MSC]");
}

TEST(KrxException, ErrorMessageIsCutToItsBuffer) {
  CKRXException exception(0, 124);
  const CException &base = exception;
  char buffer[32] = "................";
  UINT help = 77;
  EXPECT_EQ(exception.GetErrorMessage(buffer, 5, &help), TRUE);
  EXPECT_STREQ(buffer, "File");
  EXPECT_EQ(buffer[5], '.');
  EXPECT_EQ(help, 77u);
  EXPECT_EQ(base.GetErrorMessage(buffer, sizeof buffer), TRUE);
  EXPECT_STREQ(buffer, "File not found [KRX]");
  buffer[0] = '#';
  EXPECT_EQ(exception.GetErrorMessage(buffer, 0), TRUE);
  EXPECT_EQ(buffer[0], '#');
}

TEST(KrxException, ACutNeverFallsInsideACharacter) {
  const struct {
    unsigned codePage;
    const char *text;
    UINT size;
    const char *cut;
  } rows[] = {
      {65001, "\u20AC1", 53, "Unexpected non-numeric value found in XML data (\u20AC1"},
      {65001, "\u20AC1", 52, "Unexpected non-numeric value found in XML data (\u20AC"},
      {65001, "\u20AC1", 51, "Unexpected non-numeric value found in XML data ("},
      {932, "\x83\\1", 51, "Unexpected non-numeric value found in XML data (\x83\\"},
      {932, "\x83\\1", 50, "Unexpected non-numeric value found in XML data ("},
      {65001, "1", 1, ""},
  };
  for (const auto &row : rows) {
    const support::CodePage page(row.codePage);
    char buffer[128] = "untouched";
    CKRXException(101, row.text).GetErrorMessage(buffer, row.size);
    EXPECT_STREQ(buffer, row.cut) << row.text << " in " << row.size << " bytes";
  }
}

TEST(KrxException, IsCaughtAsEveryBaseAndReportsItself) {
  try {
    throw new CKRXException(101, "a");
  } catch (CObject *object) {
    EXPECT_EQ(dynamic_cast<CKesException &>(*object).GetSubCode(), 101);
    delete object;
  }
  std::string shown;
  kestrune::platform::SetMessageBoxHandler([&](const char *text, UINT type, UINT help) {
    shown = text + std::string("|") + std::to_string(type) + "|" + std::to_string(help);
    return IDNO;
  });
  EXPECT_EQ(CKRXException(0, 125).ReportError(MB_YESNO, 9), IDNO);
  EXPECT_EQ(shown, "Unexpected data [KRX]|4|0");
  AfxMessageBox("text", 40, 2);
  EXPECT_EQ(shown, "text|40|2");
  kestrune::platform::SetMessageBoxHandler({});
}

} // namespace
