#include "kestrune/kestrune_xml.h"
#include "tests/faults/operations.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

// Threads that share nothing but the library: each has its own documents and files. This program reports wrong answers;
// the thread sanitizer reports data races.

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 20;

std::atomic<int> wrong{0};

void demand(bool condition, const char *what) {
  if (!condition && ++wrong <= 10)
    std::fprintf(stderr, "wrong: %s\n", what);
}

template <class Document, class Check>
void workWith(const char *file, const std::string &ownFile, Check check) {
  Document document;
  demand(document.LoadFromFile(file) >= 0, file);
  check(document);
  Document copy(document);
  copy = document;
  check(copy);
  demand(copy.SaveToFile(ownFile.c_str(), nullptr, TRUE) == S_OK, "a save");
  Document again;
  demand(again.CXMLFolder::LoadFromFile(ownFile.c_str(), nullptr) >= 0, "a load of what was saved");
  check(again);
}

void throwOnce() {
  CMultiplier multiplier;
  try {
    multiplier.Cpu(); // "Unassigned" is not a number
    demand(false, "an exception");
  } catch (CKRXException *exception) {
    demand(exception->GetFormattedMessage().Find("Unassigned") >= 0, "the text of an exception");
    exception->Delete();
  }
}

void work(int thread) {
  CoInitialize(nullptr);
  const std::string own = "thread" + std::to_string(thread) + ".xml";
  for (int round = 0; round < kRounds; ++round) {
    if (thread == 0)
      kestrune::platform::SetDebugSink(round % 2 == 0 ? +[](const char *) {} : nullptr);
    workWith<CVorlanTyp4>("Types/Vorlan.xml", own, [](CVorlanTyp4 &document) {
      demand(document.VorlanModels4.Count() == 3, "the number of models");
      demand(document.VorlanModels4.FindByName("Three") != nullptr, "the model of the add-on");
    });
    workWith<CStdXcvr3>("Types/StdXcvr.xml", own, [](CStdXcvr3 &document) {
      demand(document.Transceivers3.FindByID(2) != nullptr, "the user's transceiver");
    });
    workWith<CSpidData2>("Types/spidData-sjis.xml", own, [](CSpidData2 &document) {
      demand(document.ManufacturerIDs2.Count() == 1, "the manufacturer");
    });
    workWith<CKestruneUI>("Types/KestruneUI.xml", own, [](CKestruneUI &document) {
      demand(document.UIInfo.ClockSpeeds == "5 MHz", "the clock speeds");
    });
    CFilename absolute;
    demand(CFilename("$StdVorlanTyp$").GetAbsolute(absolute, nullptr) && absolute.FileExists() != 0, "a macro name");
    throwOnce();
  }
  CoUninitialize();
}

} // namespace

int main() {
  const faults::WorkFolder folder;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread)
    threads.emplace_back(work, thread);
  for (std::thread &thread : threads)
    thread.join();
  std::printf("%d threads, %d rounds each, %d wrong answers\n", kThreads, kRounds, wrong.load());
  return wrong == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
