#include "benchmarks/contestants.h"

#include <ctime>
#include <fstream>
#include <iostream>

// Loads a chip data file, saves it if a second file is named, and prints the processor times of loading and saving in
// milliseconds and the peak memory of the process in KiB. A program that starts only to read a file pays for each page
// of memory, which a long-running one already has. Each contestant is a separate program, so that none loads the
// libraries of another.

namespace {

/// Runs `operation` and returns its processor time in milliseconds, or -1 if it failed.
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

/// Not from getrusage, whose value is at least the memory of the program that started this one.
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
