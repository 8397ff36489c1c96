#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <kestrune/kestrune_xml.h>
#include <string>
#include <thread>

// The library works until it is unloaded: whatever ends last in a thread or a process may still load, save and expand
// macros. Its one argument is a folder to work in.

namespace {

constexpr const char *kSpeeds = "\x80 5 MHz \xE9"; // not ASCII, so that the code page takes part

void demand(bool condition, const char *where, const char *what) {
  if (condition)
    return;
  std::fprintf(stderr, "%s: %s fails\n", where, what);
  std::_Exit(EXIT_FAILURE);
}

/// Works with a document and the macros in its destructor.
class AtEnd {
public:
  AtEnd(const char *where, const char *name) : m_where(where), m_name(name), m_file("D:\\" + m_name) {}
  AtEnd(const AtEnd &) = delete;
  AtEnd &operator=(const AtEnd &) = delete;
  ~AtEnd() { work(); }

  /// The first call gives the document its name; later ones use the remembered one.
  void work() {
    CoInitialize(nullptr);
    m_document.UIInfo.ClockSpeeds = kSpeeds;
    demand(m_document.SaveToFile(m_file, nullptr, true) == S_OK, m_where, "save");
    m_file.Empty();
    CKestruneUI again;
    demand(again.LoadFromFile("$N99$\\" + m_name) == S_OK, m_where, "load");
    demand(again.UIInfo.ClockSpeeds == kSpeeds, m_where, "the text");
    CString expanded;
    demand(CMacroString("$N99$\\x.xml").Explode(expanded, 10) && expanded == "D:\\x.xml", m_where, "a macro");
    OutputDebugStringA(m_where);
    CoUninitialize();
  }

private:
  const char *m_where;
  CString m_name;
  CString m_file;
  CKestruneUI m_document;
};

AtEnd inStatic("destructor of a static object", "s.xml");

void inThread() {
  thread_local AtEnd object("destructor of a thread's object", "t.xml");
  object.work();
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 2)
    return 2;
  const std::string folder = std::filesystem::absolute(argv[1]).string();
  std::filesystem::create_directories(folder);
  ::setenv("KESTRUNE_DRIVES", ("E=/no/such/folder/of/some/length;D=" + folder).c_str(), 1);
  demand(kestrune::platform::SetCodePage(1252), "main", "the code page");
  for (int i = 0; i < 100; ++i)
    CMacroString().AddMacro(("$N" + std::to_string(i) + "$").c_str(), "D:");
  kestrune::platform::SetDebugSink([](const char *text) { std::printf("%s\n", text); });
  std::atexit([] { AtEnd("exit handler", "e.xml").work(); });
  inStatic.work();
  std::thread(inThread).join();
  return EXIT_SUCCESS;
}
