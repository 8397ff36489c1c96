#include "tests/names/names_support.h"

#include <new>
#include <string>
#include <thread>
#include <vector>

namespace {

/// How many allocations of this thread still succeed before one fails; -1 for all.
thread_local int allocationsLeft = -1;

} // namespace

void *operator new(std::size_t size) {
  if (allocationsLeft >= 0 && allocationsLeft-- == 0)
    throw std::bad_alloc();
  if (void *const memory = std::malloc(size != 0 ? size : 1))
    return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void *memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }

namespace {

using Table = support::NameProbe;

std::string contents() {
  std::string text;
  for (int i = 0; i < Table::oMacros.GetCount(); ++i)
    text += std::string(Table::oMacros[i].name) + "=" + std::string(Table::oMacros[i].value) + "\n";
  return text;
}

/// Runs `operation` with its n-th allocation failing, for each n from 1 until none fails. `failed` looks at what each
/// failure left.
template <class Operation, class Failed>
void failEachAllocation(Operation operation, Failed failed) {
  int failures = 0;
  bool isDone = false;
  for (int n = 0; !isDone; ++n) {
    allocationsLeft = n;
    try {
      operation();
      isDone = allocationsLeft >= 0;
      allocationsLeft = -1;
    } catch (const std::bad_alloc &) {
      SCOPED_TRACE("allocation " + std::to_string(n + 1));
      failed();
      ++failures;
    }
  }
  EXPECT_GT(failures, 0);
}

using MacroTable = support::NameTest;

TEST_F(MacroTable, FindsTheFirstEntryOfAName) {
  macros.AddMacro("$M90$", "");
  macros.AddMacro("$M91$", "");
  Table::oMacros[5].name = "$m91$"; // as a derived class may change it
  Table::oMacros[6].name = "";
  EXPECT_EQ(macros.FindMacro("$M91$"), 5);
  EXPECT_EQ(macros.FindMacro("$M90$"), 16);
  EXPECT_EQ(macros.FindMacro("$M9$"), -1);
  EXPECT_EQ(macros.FindMacro(""), 6);
  const support::CodePage page(932);
  Table::oMacros[0].name = "$\x83\x41$"; // the trail byte looks like an A
  EXPECT_EQ(macros.FindMacro("$\x83\x41$"), 0);
  EXPECT_EQ(macros.FindMacro("$\x83\x61$"), -1);
}

TEST_F(MacroTable, AFailedFillIsTriedAgain) {
  const std::string defaults = contents();
  failEachAllocation(
      [] {
        Table::oMacros.RemoveAll();
        const CMacroString text("x");
      },
      [] { EXPECT_EQ(contents(), ""); });
  EXPECT_EQ(contents(), defaults);
}

TEST_F(MacroTable, AFailedAddLosesNothing) {
  macros.AddMacro("$OLD$", "a value that does not stand in place");
  for (const char *macro : {"$old$", "$NEW$"}) {
    const std::string before = contents();
    failEachAllocation([&] { macros.AddMacro(macro, "another value, just as long as that"); },
                       [&] { EXPECT_EQ(contents(), before) << macro; });
  }
}

// In a process of its own, as ctest runs each test, these are its first names. A long registry file makes them meet.
TEST(MacroTableThreads, FillItOnce) {
  const support::TempFolder folder;
  support::write(folder / "own.reg", "Windows Registry Editor Version 5.00\n" + std::string(1000000, '\n'));
  const support::Environment registry("KESTRUNE_REGISTRY", (folder / "own.reg").c_str());
  std::vector<std::string> expansions(8);
  std::vector<std::thread> threads;
  for (std::string &expansion : expansions)
    threads.emplace_back([&expansion] {
      CMacroString text("$DSDEFAULTTEMPLATES$");
      text.Explode(text, 10);
      expansion = std::string(text) + " " + std::to_string(text.GetMacroCount());
    });
  for (std::thread &thread : threads)
    thread.join();
  for (const std::string &expansion : expansions)
    EXPECT_EQ(expansion, "C:\\Kestrune\\Plinthforge\\Templates\\Draftsmith\\v3 16");
}

} // namespace
