#include "benchmarks/contestants.h"

#include <iostream>
#include <valgrind/callgrind.h>

// To be run by callgrind with collecting off at the start: loads a chip data file and, if a second file is named, saves
// it there and copies it. The instructions of each operation are written to a dump that names it as its trigger.

namespace {

template <class Operation>
bool counted(const char *name, Operation operation) {
  CALLGRIND_TOGGLE_COLLECT;
  const bool done = operation();
  CALLGRIND_TOGGLE_COLLECT;
  CALLGRIND_DUMP_STATS_AT(name);
  return done;
}

} // namespace

int main(int argc, char **argv) {
  KestruneChipFile file;
  bool done = argc > 1 && counted("load", [&] { return file.load(argv[1]) > 0; });
  if (argc > 2) {
    done = done && counted("save", [&] { return file.save(argv[2]); });
    counted("copy", [&] {
      const KestruneChipFile copy(file);
      return true;
    });
  }
  if (!done)
    std::cerr << argv[0] << ": the file could not be loaded and saved\n";
  return done ? 0 : 1;
}
