#include "tests/test_support.h"

namespace {

/// An exception of some other module of the tool.
class ModuleException : public CKesException {
public:
  explicit ModuleException(int module) : CKesException(module) { m_message = "m"; }
};

TEST(KrxException, MessageNamesTextModuleAndSubCode) {
  EXPECT_STREQ(CKRXException().GetFormattedMessage(), "uninitialized [KRX]");
  EXPECT_STREQ(CKRXException(101, "abc").GetFormattedMessage(),
               "Unexpected non-numeric value found in XML data (abc) [KRX#101]");
  EXPECT_STREQ(CKRXException(126, "unused").GetFormattedMessage(), "File not named before save [KRX#126]");
  EXPECT_STREQ(CKRXException(7, 115).GetFormattedMessage(), " [KRX#7]") << "no text of that number";
  EXPECT_EQ(CKRXException(7, 101, "x").GetSubCode(), 7);
  EXPECT_EQ(CKRXException().GetModuleCode(), 3);
  std::string all;
  for (unsigned text = 100; text <= 133; ++text)
    all += std::string(CKRXException(0, text, "x").GetFormattedMessage()) + "\n";
  for (int module = -1; module <= 20; ++module)
    all += std::string(ModuleException(module).GetFormattedMessage()) + "\n";
  EXPECT_EQ(all, support::read(KESTRUNE_TEST_DATA "/errors/messages.txt"));
}

/// The end of the error message for a text, in a buffer of `size` bytes, after what all of them begin with.
std::string cutMessage(const char *text, UINT size) {
  char buffer[128] = "................................................................................";
  EXPECT_EQ(CKRXException(101, text).GetErrorMessage(buffer, size), TRUE);
  EXPECT_EQ(buffer[size], '.') << "after the buffer";
  const std::string begin = "Unexpected non-numeric value found in XML data (";
  EXPECT_TRUE(std::string(buffer).starts_with(begin)) << buffer;
  return buffer + begin.size();
}

TEST(KrxException, ACutNeverFallsInsideACharacter) {
  EXPECT_EQ(cutMessage("\u20AC1", 52), "\u20AC");
  EXPECT_EQ(cutMessage("\u20AC1", 51), "");
  const support::CodePage page(932);
  EXPECT_EQ(cutMessage("\x83\\1", 51), "\x83\\");
  EXPECT_EQ(cutMessage("\x83\\1", 50), "");
  char buffer[] = "##";
  EXPECT_EQ(CKRXException().GetErrorMessage(buffer, 0), TRUE);
  EXPECT_STREQ(buffer, "##") << "no room for anything";
}

TEST(KrxException, EveryExceptionHasAMessage) {
  const auto message = [](const CException &exception) {
    char buffer[80] = "##";
    const bool has = exception.GetErrorMessage(buffer, sizeof buffer) == TRUE;
    return (has ? "" : "none:") + std::string(buffer);
  };
  EXPECT_EQ(message(CException()), "none:");
  EXPECT_EQ(message(CInvalidArgException()), "Invalid argument");
  EXPECT_EQ(message(CFileException(CFileException::fileNotFound, 2, "f")), "f: No such file or directory");
}

TEST(KrxException, IsCaughtAsItsBaseAndReportsItself) {
  EXPECT_TRUE(support::throws<CKesException>([] { throw new CKRXException(101, "a"); }));
  std::string shown;
  kestrune::platform::SetMessageBoxHandler([&](const char *text, UINT type, UINT help) {
    shown = text + std::string("|") + std::to_string(type) + "|" + std::to_string(help);
    return IDNO;
  });
  EXPECT_EQ(CKRXException(0, 125).ReportError(MB_YESNO, 9), IDNO);
  EXPECT_EQ(shown, "Unexpected data [KRX]|4|0");
  kestrune::platform::SetMessageBoxHandler({});
}

} // namespace
