#include "benchmarks/contestants.h"

#include <ctime>
#include <fstream>
#include <iostream>

// Loads a chip data file, saves it where a second file is named, and prints the processor time that loading and saving
// took, in milliseconds, and the most memory that the process has held, in KiB. A program that starts only to read a
// file pays for every page of memory, which a long-running one has already; and each contestant is a program of its
// own, so that none carries the libraries of another.

namespace {

/// Runs `operation` and returns its processor time, or -1 when it has failed.
template <class Operation>
double timeOf(Operation operation) {
  const std::clock_t start = std::clock();
  const bool done = operation();
  return done ? 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC : -1;
}

template <class Contestant>
double timeOfSave(Contestant &file, const std::string &path) {
  if constexpr (requires { file.save(path); })
    return timeOf([&] { return file.save(path); });
  else
    return -1;
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
  CONTESTANT file;
  const double load = argc > 1 ? timeOf([&] { return file.load(argv[1]) > 0; }) : -1;
  const double save = argc > 2 ? timeOfSave(file, argv[2]) : 0;
  if (load < 0 || save < 0) {
    std::cerr << argv[0] << ": the file could not be loaded and saved\n";
    return 1;
  }
  std::cout << load << ' ' << save << ' ' << peakMemory() << '\n';
  return 0;
}
