#include "tests/faults/fault_driver.h"

#include "kestrune/kestrune_xml.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

namespace faults {

namespace {

// The exit statuses of a child.
constexpr int kSurvived = 10;
constexpr int kNothingFailed = 11;
constexpr int kBroken = 12;

constexpr long kOutOfMemory = 1000001; // the results of an operation that throws
constexpr long kThrew = 1000002;

long act(Operation &operation) {
  try {
    return operation.act();
  } catch (const std::bad_alloc &) {
    return kOutOfMemory;
  } catch (CException *exception) {
    exception->Delete();
    return kThrew;
  }
}

/// The result of a success, found in a child without a fault.
struct Expected {
  long result = 0;
  std::string outcome;
};

[[noreturn]] void giveUp(const std::string &what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::_Exit(kBroken);
}

Expected expectedOf(const Scenario &scenario) {
  const pid_t child = ::fork();
  if (child == 0) {
    CoInitialize(nullptr);
    const auto operation = scenario.make();
    const long result = act(*operation);
    const std::string outcome = operation->outcome();
    Write("expected.txt", std::to_string(result) + '\n' + outcome);
    std::_Exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  const std::string text = Read("expected.txt");
  const std::size_t end = text.find('\n');
  return {std::atol(text.c_str()), text.substr(end + 1)};
}

/// Runs the operation with one fault and checks everything that is promised afterwards.
[[noreturn]] void actWithFault(const Scenario &scenario, const Expected &expected, Fault &fault, long number,
                               bool forEver) {
  CoInitialize(nullptr);
  if (scenario.warm) {
    for (int i = 0; i < 2; ++i) {
      const auto earlier = scenario.make();
      act(*earlier);
      earlier->outcome();
    }
  }
  const long before = fault.liveBlocks();
  auto operation = scenario.make();

  fault.arm(number, forEver);
  const long result = act(*operation);
  if (!fault.disarm())
    std::_Exit(kNothingFailed);

  const bool succeeded = result == expected.result;
  const bool passedOver = scenario.passesOverFiles && fault.mayHideFile();
  if (succeeded && !passedOver && operation->outcome() != expected.outcome)
    giveUp("success, but not with all texts");
  if (!succeeded && fault.mustPassUnseen())
    giveUp("noticed, result " + std::to_string(result));
  if (!succeeded && result != kOutOfMemory && result != kThrew && !operation->documents(result))
    giveUp("undocumented result " + std::to_string(result));
  if (const std::string damage = operation->damage(); !succeeded && !damage.empty() && !fault.mayTearFile(forEver))
    giveUp(damage);

  if (!passedOver && (act(*operation) != expected.result || operation->outcome() != expected.outcome))
    giveUp("the same object does not work afterwards");
  operation.reset();
  if (scenario.warm && fault.liveBlocks() != before)
    giveUp("blocks are left: " + std::to_string(fault.liveBlocks() - before));
  std::_Exit(kSurvived);
}

/// The exit status of a child, or nothing if a signal ended it.
std::optional<int> statusOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

struct Counts {
  long children = 0;
  long broken = 0;
};

void runScenario(const Scenario &scenario, Fault &fault, Counts &counts) {
  const Expected expected = expectedOf(scenario);
  for (const bool forEver : {false, true}) {
    for (long number = 1;; number += scenario.stride) {
      const pid_t child = ::fork();
      if (child == 0)
        actWithFault(scenario, expected, fault, number, forEver);
      const std::optional<int> status = statusOf(child);
      if (status == kNothingFailed)
        break;
      ++counts.children;
      if (status != kSurvived) {
        ++counts.broken;
        std::fprintf(stderr, "^ %s: %s, call %ld%s%s\n", scenario.name, fault.name().c_str(), number,
                     forEver ? " and all later" : "", status ? "" : ": ended by a signal");
      }
    }
  }
}

} // namespace

int Run(const std::vector<Fault *> &faults) {
  const WorkFolder folder;

  Counts counts;
  for (Fault *const fault : faults) {
    Counts ofFault;
    for (const Scenario &scenario : Scenarios())
      runScenario(scenario, *fault, ofFault);
    std::printf("%-28s %6ld failures, %ld not survived\n", fault->name().c_str(), ofFault.children, ofFault.broken);
    counts.children += ofFault.children;
    counts.broken += ofFault.broken;
  }
  std::printf("%-28s %6ld failures, %ld not survived\n", "together", counts.children, counts.broken);
  // A run in which nothing failed proves nothing.
  return counts.broken == 0 && counts.children > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace faults
