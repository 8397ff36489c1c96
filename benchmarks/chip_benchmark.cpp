#include "benchmarks/chip_file_generator.h"
#include "benchmarks/contestants.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <malloc.h>

// Measures how long it takes to load, to save and to copy chip data files:
//
//   chip_benchmark FOLDER [options of Google Benchmark]      creates the files that FOLDER lacks
//
// The argument of a benchmark is the number of models. Loading and copying include the destruction of the object.

namespace {

std::filesystem::path folder;

std::string chipFile(int count) {
  const std::filesystem::path path = folder / ("chips" + std::to_string(count) + ".xml");
  if (!std::filesystem::exists(path))
    WriteChipFile(path, 0, count);
  return path;
}

template <class Contestant>
void Load(benchmark::State &state) {
  const int models = static_cast<int>(state.range(0));
  const std::string path = chipFile(models);
  for (auto _ : state) {
    Contestant file;
    if (file.load(path) != models)
      return state.SkipWithError("not all models were loaded");
  }
}

template <class Contestant>
void Save(benchmark::State &state) {
  Contestant file;
  file.load(chipFile(static_cast<int>(state.range(0))));
  const std::string path = folder / "saved.xml";
  for (auto _ : state) {
    if (!file.save(path))
      return state.SkipWithError("the file was not saved");
  }
}

template <class Contestant>
void Copy(benchmark::State &state) {
  Contestant file;
  file.load(chipFile(static_cast<int>(state.range(0))));
  for (auto _ : state) {
    const Contestant copy(file);
    benchmark::DoNotOptimize(&copy);
  }
}

#define COMPARE(...) BENCHMARK(__VA_ARGS__)->Arg(40)->Arg(20'000)->Unit(benchmark::kMillisecond)

COMPARE(Load<KestruneChipFile>);
COMPARE(Save<KestruneChipFile>);
COMPARE(Copy<KestruneChipFile>);
COMPARE(Load<ExpatPass>);
#ifdef WITH_PUGIXML
COMPARE(Load<PugixmlChipFile>);
COMPARE(Save<PugixmlChipFile>);
COMPARE(Copy<PugixmlChipFile>);
#endif
#ifdef WITH_LIBXML2
COMPARE(Load<LibXml2Tree>);
#endif

} // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 2) {
    std::cerr << "usage: chip_benchmark FOLDER [options]\n";
    return 2;
  }
  // Keep freed memory in the heap, so that page faults do not depend on the benchmark that ran before. The programs of
  // fresh_process.cpp measure their cost.
  ::mallopt(M_MMAP_MAX, 0);
  ::mallopt(M_TRIM_THRESHOLD, -1);

  folder = std::filesystem::absolute(argv[1]);
  // A vorlan.xml in the folder $PFDT$ or in the current directory would be read instead of the named file.
  ::unsetenv("PFDT");
  std::filesystem::current_path(folder);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
