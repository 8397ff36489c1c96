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

TEST(MessageBoxTest, WithoutATerminalTheDefaultButtonAnswers) {
  constexpr UINT kSecond = 0x100, kThird = 0x200, kFourth = 0x300, kIcon = 0x30;
  const struct {
    UINT type;
    int answer;
  } rows[] = {
      {MB_OK, IDOK},
      // The buttons of each kind, in their order.
      {MB_OKCANCEL | kSecond, IDCANCEL},
      {MB_ABORTRETRYIGNORE, IDABORT},
      {MB_ABORTRETRYIGNORE | kSecond, IDRETRY},
      {MB_ABORTRETRYIGNORE | kThird, IDIGNORE},
      {MB_YESNOCANCEL | kSecond, IDNO},
      {MB_YESNO | kSecond | kIcon, IDNO},
      // A default button that is not there is the first.
      {MB_OK | kSecond, IDOK},
      {MB_YESNO | kFourth, IDYES},
  };
  const int nothing = ::open("/dev/null", O_RDONLY);
  for (const auto &row : rows) {
    testing::internal::CaptureStderr();
    {
      const Streams streams(nothing, 2);
      EXPECT_EQ(AfxMessageBox("text", row.type), row.answer) << row.type;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "text\n");
  }
  ::close(nothing);
}

TEST(MessageBoxTest, ATerminalIsAsked) {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(::grantpt(master), 0);
  ASSERT_EQ(::unlockpt(master), 0);
  const int slave = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
  ASSERT_GE(slave, 0);
  const struct {
    UINT type;
    std::string typed;
    int answer;
  } rows[] = {
      {MB_YESNO, "n\n", IDNO},
      // An empty line and the end of the input give the default; only a choice is asked for.
      {MB_YESNOCANCEL | 0x100, "\n", IDNO},
      {MB_YESNO | 0x100, "\x04", IDNO},
      {MB_YESNO, "maybe\nYes\n", IDYES},
      {MB_ABORTRETRYIGNORE, "IGN\n", IDIGNORE},
      {MB_OK, "", IDOK},
  };
  for (const auto &[type, typed, answer] : rows) {
    ASSERT_EQ(::write(master, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    const Streams streams(slave, slave);
    std::clearerr(stdin);
    EXPECT_EQ(AfxMessageBox("sure?", type), answer) << type << typed;
  }
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
