#include "kestrune/kestrune_xml.h"
#include "tests/faults/operations.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// Processes that work on one file: one saves while another loads, and one is killed while it saves. The documents
// differ in every model and in length, so that a mixture of the two always shows.

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char *kFile = "shared.xml";
constexpr const char *kShort = "old";
constexpr const char *kLong = "new and longer";

enum class State { Old, New, Failure, Mixture };

/// In place, or through a new file that replaces the old one.
using SaveWay = long (*)(CVorlanTyp4 &document);

long saveInPlace(CVorlanTyp4 &document) { return document.SaveToFile(kFile, nullptr, TRUE); }
long saveReplacing(CVorlanTyp4 &document) { return kestrune::SaveReplacing(document, kFile, nullptr, TRUE); }

void fill(CVorlanTyp4 &document, const char *text) {
  for (int i = 0; i < 300; ++i) {
    CVorlanModel4 &model = *document.VorlanModels4.Add(("M" + std::to_string(i)).c_str());
    model.KeyText = static_cast<const char *>(model.Name);
    model.ImageName = text;
  }
}

State load() {
  CVorlanTyp4 document;
  if (document.CXMLFolder::LoadFromFile(kFile, nullptr) < 0)
    return State::Failure;
  const int count = document.VorlanModels4.Count();
  int longOnes = 0;
  for (int i = 0; i < count; ++i)
    longOnes += document.VorlanModels4[i]->ImageName == kLong ? 1 : 0;
  if (count != 300 || (longOnes != 0 && longOnes != count))
    return State::Mixture;
  return longOnes == 0 ? State::Old : State::New;
}

template <class Act>
pid_t inChild(Act act) {
  const pid_t child = ::fork();
  if (child == 0) {
    CoInitialize(nullptr);
    act();
    std::_Exit(0);
  }
  return child;
}

void end(pid_t child) {
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

using Counts = std::map<State, int>;

/// Loads for `duration` while another process saves the two documents in turn.
Counts loadWhileSaving(SaveWay save, std::chrono::milliseconds duration) {
  CVorlanTyp4 shorter;
  CVorlanTyp4 longer;
  fill(shorter, kShort);
  fill(longer, kLong);
  saveReplacing(shorter); // the saver before may have been killed half-way
  const pid_t saver = inChild([&] {
    while (true) {
      save(longer);
      save(shorter);
    }
  });
  Counts counts;
  for (const auto until = Clock::now() + duration; Clock::now() < until;)
    ++counts[load()];
  end(saver);
  return counts;
}

/// Kills `kills` processes, each at a random moment while it saves the longer document, and loads after each.
Counts loadAfterKills(SaveWay save, int kills) {
  std::mt19937 random(1);
  CVorlanTyp4 shorter;
  fill(shorter, kShort);
  Counts counts;
  for (int i = 0; i < kills; ++i) {
    saveReplacing(shorter);
    const pid_t saver = inChild([save] {
      CVorlanTyp4 longer;
      fill(longer, kLong);
      save(longer);
    });
    ::usleep(std::uniform_int_distribution<useconds_t>(0, 15000)(random));
    end(saver);
    ++counts[load()];
  }
  return counts;
}

int report(const char *what, Counts counts, bool mayFail) {
  std::printf("%-44s %4d old, %4d new, %4d failures, %d mixtures\n", what, counts[State::Old], counts[State::New],
              counts[State::Failure], counts[State::Mixture]);
  const bool worked = counts[State::Old] + counts[State::New] > 0;
  return worked && counts[State::Mixture] == 0 && (mayFail || counts[State::Failure] == 0) ? 0 : 1;
}

} // namespace

int main() {
  const faults::WorkFolder folder;
  CoInitialize(nullptr);
  using std::chrono::milliseconds;
  int wrong = report("while another saves in place", loadWhileSaving(saveInPlace, milliseconds(1000)), false);
  wrong += report("while another saves replacing", loadWhileSaving(saveReplacing, milliseconds(1000)), false);
  wrong += report("after a process was killed saving in place", loadAfterKills(saveInPlace, 20), true);
  wrong += report("after a process was killed saving replacing", loadAfterKills(saveReplacing, 20), false);
  return wrong == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
