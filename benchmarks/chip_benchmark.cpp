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
// The argument of a benchmark is the number of models, and "per_model" the time in seconds for one of them. Loading and
// copying include the destruction of the object.

namespace {

std::filesystem::path folder;

std::string chipFile(const std::string &name, int first, int count) {
  const std::filesystem::path path = folder / name;
  if (!std::filesystem::exists(path))
    WriteChipFile(path, first, count);
  return path;
}

std::string chipFile(int count) { return chipFile("chips" + std::to_string(count) + ".xml", 0, count); }

/// A file with `count / 10` models and an add-on with `count` models, so that the share of merged models is the same at
/// every size.
std::string chipFileWithAddOn(int count) {
  const std::string name = "main" + std::to_string(count);
  chipFile(name + "-1.xml", count, count);
  return chipFile(name + ".xml", 0, count / 10);
}

void countModels(benchmark::State &state, int models) {
  using benchmark::Counter;
  state.counters["per_model"] = Counter(models, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

template <class Contestant>
void loadFile(benchmark::State &state, const std::string &path, int models) {
  for (auto _ : state) {
    Contestant file;
    if (file.load(path) != models)
      return state.SkipWithError("not all models were loaded");
  }
  countModels(state, models);
}

template <class Contestant>
void Load(benchmark::State &state) {
  const int models = static_cast<int>(state.range(0));
  loadFile<Contestant>(state, chipFile(models), models);
}

void LoadAddOn(benchmark::State &state) {
  const int models = static_cast<int>(state.range(0));
  loadFile<KestruneChipFile>(state, chipFileWithAddOn(models), models / 10 + models);
}

template <class Contestant>
void Save(benchmark::State &state) {
  const int models = static_cast<int>(state.range(0));
  Contestant file;
  file.load(chipFile(models));
  const std::string path = folder / "saved.xml";
  for (auto _ : state) {
    if (!file.save(path))
      return state.SkipWithError("the file was not saved");
  }
  countModels(state, models);
}

template <class Contestant>
void Copy(benchmark::State &state) {
  const int models = static_cast<int>(state.range(0));
  Contestant file;
  file.load(chipFile(models));
  for (auto _ : state) {
    const Contestant copy(file);
    benchmark::DoNotOptimize(&copy);
  }
  countModels(state, models);
}

#define COMPARE(...) BENCHMARK(__VA_ARGS__)->Arg(40)->Arg(20'000)->Unit(benchmark::kMillisecond)
#define GROW(...) BENCHMARK(__VA_ARGS__)->RangeMultiplier(10)->Range(1'000, 100'000)->Unit(benchmark::kMillisecond)

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

GROW(Load<KestruneChipFile>);
GROW(Save<KestruneChipFile>);
GROW(Copy<KestruneChipFile>);
BENCHMARK(LoadAddOn)->Arg(5'000)->Arg(50'000)->Unit(benchmark::kMillisecond);

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
