#include "benchmarks/contestants.h"

#include <ctime>
#include <fstream>
#include <iostream>

// Loads a chip data file, saves it where a second file is named, and prints the processor time that the load took, in
// milliseconds, and the most memory that the process has held, in KiB. A program that starts only to read a file pays
// for every page of memory, which a long-running one has already; and each contestant is a program of its own, so that
// none carries the libraries of another.

namespace {

template <class Contestant>
bool work(const std::vector<std::string> &files, double &milliseconds) {
  Contestant file;
  const std::clock_t start = std::clock();
  bool done = !files.empty() && file.load(files[0]) > 0;
  milliseconds = 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  if constexpr (requires { file.save(files[1]); })
    done = done && (files.size() < 2 || file.save(files[1]));
  return done;
}

/// What getrusage tells is no less than the memory of the program that started this one.
long peakMemory() {
  std::ifstream status("/proc/self/status");
  std::string word;
  long peak = 0;
  while (status >> word && word != "VmHWM:") {
  }
  status >> peak;
  return peak;
}

} // namespace

int main(int argc, char **argv) {
  double milliseconds = 0;
  if (!work<CONTESTANT>({argv + 1, argv + argc}, milliseconds)) {
    std::cerr << argv[0] << ": the file could not be loaded and saved\n";
    return 1;
  }
  std::cout << milliseconds << ' ' << peakMemory() << '\n';
  return 0;
}
