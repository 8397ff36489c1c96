#include "kestrune/kestrune_xml.h"
#include "tests/faults/operations.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

// Threads that have their own documents and files, and copies of one text and one document. This program reports wrong
// answers; the thread sanitizer reports data races.

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

/// Changes copies whose texts are shared with those of the other threads.
void changeCopies(const CString &text, CVorlanTyp4 &document, const std::string &ownFile) {
  CString changed = text;
  changed += ownFile.c_str();
  demand(changed.Find(ownFile.c_str()) == text.GetLength() && changed != text, "a changed text");
  changed = text;
  changed.SetAt(0, 't');
  demand(text[0] == 'T', "the text of the other threads");

  CVorlanModel4 *const model = document.VorlanModels4.FindByName("Three");
  model->TransceiverList = changed;
  model->ImageName.MakeUpper();
  demand(document.SaveToFile(ownFile.c_str(), nullptr, TRUE) == S_OK, "a save of a copy");
  CVorlanTyp4 again;
  demand(again.CXMLFolder::LoadFromFile(ownFile.c_str(), nullptr) >= 0, "a load of a copy");
  const CVorlanModel4 *const saved = again.VorlanModels4.FindByName("Three");
  demand(saved != nullptr && saved->TransceiverList == changed, "the change of a copy");
}

void work(int thread, CString text, std::unique_ptr<CVorlanTyp4> copy) {
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
    changeCopies(text, *std::make_unique<CVorlanTyp4>(*copy), own);
  }
  copy.reset();
  CoUninitialize();
}

} // namespace

int main() {
  const faults::WorkFolder folder;
  std::vector<std::thread> threads;
  {
    const CString text = "Text of all threads";
    CVorlanTyp4 document;
    CoInitialize(nullptr);
    document.LoadFromFile("Types/Vorlan.xml");
    CoUninitialize();
    document.VorlanModels4.FindByName("Three")->ImageName = "Image of all threads";
    for (int thread = 0; thread < kThreads; ++thread)
      threads.emplace_back(work, thread, text, std::make_unique<CVorlanTyp4>(document));
  }
  for (std::thread &thread : threads)
    thread.join();
  std::printf("%d threads, %d rounds each, %d wrong answers\n", kThreads, kRounds, wrong.load());
  return wrong == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
