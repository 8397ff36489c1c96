#include "tests/test_support.h"

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Standard input and standard error of the process, exchanged for a while.
class Streams : support::Unique {
public:
  Streams(int input, int error) : m_input(::dup(0)), m_error(::dup(2)) { put(input, error); }
  ~Streams() {
    put(m_input, m_error);
    ::close(m_input);
    ::close(m_error);
  }

private:
  static void put(int input, int error) {
    ::dup2(input, 0);
    ::dup2(error, 2);
  }
  int m_input, m_error;
};

constexpr UINT kSecond = 0x100, kThird = 0x200, kFourth = 0x300, kIcon = 0x30;

TEST(MessageBoxTest, WithoutATerminalTheDefaultButtonAnswers) {
  const int nothing = ::open("/dev/null", O_RDONLY);
  const auto answer = [nothing](UINT type) {
    testing::internal::CaptureStderr();
    int result = 0;
    {
      const Streams streams(nothing, 2);
      result = AfxMessageBox("text", type);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "text\n");
    return result;
  };
  EXPECT_EQ(answer(MB_OKCANCEL | kSecond), IDCANCEL);
  EXPECT_EQ(answer(MB_ABORTRETRYIGNORE), IDABORT);
  EXPECT_EQ(answer(MB_ABORTRETRYIGNORE | kSecond), IDRETRY);
  EXPECT_EQ(answer(MB_ABORTRETRYIGNORE | kThird), IDIGNORE);
  EXPECT_EQ(answer(MB_YESNOCANCEL | kThird), IDCANCEL);
  EXPECT_EQ(answer(MB_YESNO | kSecond | kIcon), IDNO);
  EXPECT_EQ(answer(MB_RETRYCANCEL), IDRETRY);
  EXPECT_EQ(answer(MB_OK | kSecond), IDOK) << "a default button that is not there is the first";
  EXPECT_EQ(answer(MB_YESNO | kFourth), IDYES);
  ::close(nothing);
}

TEST(MessageBoxTest, ATerminalIsAsked) {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(::grantpt(master), 0);
  ASSERT_EQ(::unlockpt(master), 0);
  const int slave = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
  ASSERT_GE(slave, 0);
  const auto answer = [&](UINT type, const std::string &typed) {
    EXPECT_EQ(::write(master, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    const Streams streams(slave, slave);
    std::clearerr(stdin);
    return AfxMessageBox("sure?", type);
  };
  EXPECT_EQ(answer(MB_YESNO, "n\n"), IDNO);
  EXPECT_EQ(answer(MB_YESNO, "maybe\nYes\n"), IDYES);
  EXPECT_EQ(answer(MB_ABORTRETRYIGNORE, "IGN\n"), IDIGNORE);
  EXPECT_EQ(answer(MB_YESNOCANCEL | kSecond, "\n"), IDNO) << "an empty line is the default";
  EXPECT_EQ(answer(MB_YESNO | kSecond, "\x04"), IDNO) << "the end of the input";
  EXPECT_EQ(answer(MB_OK, ""), IDOK) << "no choice to ask for";
  std::clearerr(stdin);
  ::close(slave);
  ::close(master);
}

TEST(DebugOutputTest, GoesToTheSinkOrOnDemandToStandardError) {
  std::string heard;
  const auto standardError = [](const char *text, const char *wanted) {
    const support::Environment variable("KESTRUNE_DEBUG", wanted);
    testing::internal::CaptureStderr();
    OutputDebugStringA(text);
    return testing::internal::GetCapturedStderr();
  };
  kestrune::platform::SetDebugSink([&](const char *text) {
    heard += text;
    if (heard.size() > 3)
      kestrune::platform::SetDebugSink(nullptr); // also from inside
  });
  EXPECT_EQ(standardError("one", "1"), "");
  EXPECT_EQ(standardError("two", nullptr), "");
  EXPECT_EQ(standardError("three\n", "1"), "three\n");
  EXPECT_EQ(standardError("four", nullptr), "");
  EXPECT_EQ(standardError("five", "0"), "");
  EXPECT_EQ(heard, "onetwo");
}

} // namespace
