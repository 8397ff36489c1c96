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
  const std::pair<UINT, int> rows[] = {
      {MB_OK, IDOK},     {MB_OKCANCEL, IDOK}, {0x101, IDCANCEL},       {MB_ABORTRETRYIGNORE, IDABORT},
      {0x102, IDRETRY},  {0x202, IDIGNORE},   {MB_YESNOCANCEL, IDYES}, {0x103, IDNO},
      {0x203, IDCANCEL}, {MB_YESNO, IDYES},   {0x104, IDNO},           {MB_RETRYCANCEL, IDRETRY},
      {0x105, IDCANCEL}, {0x304, IDYES},      {0x134, IDNO},           {0x100, IDOK},
  };
  const int nothing = ::open("/dev/null", O_RDONLY);
  testing::internal::CaptureStderr();
  {
    const Streams streams(nothing, 2);
    for (const auto &[type, answer] : rows)
      EXPECT_EQ(AfxMessageBox("text", type), answer) << type;
  }
  ::close(nothing);
  std::string expected;
  for (std::size_t i = 0; i < std::size(rows); ++i)
    expected += "text\n";
  EXPECT_EQ(testing::internal::GetCapturedStderr(), expected);
}

TEST(MessageBoxTest, ATerminalIsAsked) {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_TRUE(master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0);
  const int slave = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
  ASSERT_GE(slave, 0);
  const std::tuple<UINT, std::string, int> rows[] = {
      {MB_YESNO, "n\n", IDNO},
      {MB_YESNOCANCEL, "\n", IDYES},
      {0x103, "\n", IDNO},
      {MB_YESNO, "maybe\nYes\n", IDYES},
      {MB_ABORTRETRYIGNORE, "IGN\n", IDIGNORE},
      {0x104, "\x04", IDNO},
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
