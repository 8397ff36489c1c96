#include "tests/test_support.h"

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

/// A standard stream of the process that leads elsewhere for a while.
class Redirected : support::Unique {
public:
  Redirected(int stream, int target) : m_stream(stream), m_old(::dup(stream)) { ::dup2(target, stream); }
  ~Redirected() {
    ::dup2(m_old, m_stream);
    ::close(m_old);
  }

private:
  int m_stream, m_old;
};

constexpr UINT kSecond = 0x100, kThird = 0x200, kIcon = 0x30;

TEST(MessageBoxTest, WithoutATerminalTheDefaultButtonAnswers) {
  const int nothing = ::open("/dev/null", O_RDONLY);
  const Redirected input(0, nothing);
  ::close(nothing);
  testing::internal::CaptureStderr();
  EXPECT_EQ(AfxMessageBox("text", MB_OKCANCEL | kSecond), IDCANCEL);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "text\n");
  EXPECT_EQ(AfxMessageBox("text", MB_ABORTRETRYIGNORE | kThird), IDIGNORE);
  EXPECT_EQ(AfxMessageBox("text", MB_YESNO | kSecond | kIcon), IDNO);
  EXPECT_EQ(AfxMessageBox("text", MB_OK | kSecond), IDOK) << "a default button that is not there is the first";
}

TEST(MessageBoxTest, ATerminalIsAsked) {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(::grantpt(master), 0);
  ASSERT_EQ(::unlockpt(master), 0);
  const int terminal = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
  termios mode{};
  ::tcgetattr(terminal, &mode);
  mode.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  ::tcsetattr(terminal, TCSANOW, &mode);
  const auto answer = [&](UINT type, std::string_view typed, const std::string &shown) {
    const Redirected input(0, terminal), error(2, terminal);
    EXPECT_EQ(::write(master, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    std::clearerr(stdin);
    const int button = AfxMessageBox("sure?", type);
    std::string seen;
    pollfd ready{master, POLLIN, 0};
    for (char c = 0; seen.size() < shown.size() && ::poll(&ready, 1, 1000) > 0 && ::read(master, &c, 1) == 1;)
      seen += c;
    EXPECT_EQ(seen, shown);
    return button;
  };
  const std::string yesOrNo = "Yes, No? [Yes] ";
  EXPECT_EQ(answer(MB_YESNO, "maybe\nn\n", "sure?\r\n" + yesOrNo + yesOrNo), IDNO);
  EXPECT_EQ(answer(MB_YESNOCANCEL | kSecond, "\n", "sure?\r\nYes, No, Cancel? [No] "), IDNO) << "the default";
  std::clearerr(stdin);
  ::close(terminal);
  ::close(master);
}

TEST(DebugOutputTest, GoesToTheSinkOrOnDemandToStandardError) {
  std::string heard;
  testing::internal::CaptureStderr();
  const support::Environment wanted("KESTRUNE_DEBUG", "1");
  kestrune::platform::SetDebugSink([&](const char *text) { heard += text; });
  OutputDebugStringA("one");
  kestrune::platform::SetDebugSink(nullptr);
  OutputDebugStringA("two\n");
  const support::Environment unwanted("KESTRUNE_DEBUG", nullptr);
  OutputDebugStringA("three");
  EXPECT_EQ(heard, "one");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "two\n");
}

} // namespace
