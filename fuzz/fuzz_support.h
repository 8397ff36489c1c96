#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

/// Aborts if the library breaks a promise, so that the fuzzer keeps the input.
inline void Require(bool holds, const char *promise, const std::string &detail = {}) {
  if (holds)
    return;
  std::fprintf(stderr, "not kept: %s\n%s\n", promise, detail.c_str());
  std::abort();
}

/// A folder for the files of a run: in TMPDIR if that is set, else in memory if possible. It is removed at the end,
/// unless the run was aborted.
class Scratch {
public:
  Scratch() {
    const bool inMemory = std::getenv("TMPDIR") == nullptr && std::filesystem::is_directory("/dev/shm");
    const std::filesystem::path parent = inMemory ? "/dev/shm" : std::filesystem::temp_directory_path();
    std::string name = (parent / "kestrune-fuzz-XXXXXX").string();
    Require(::mkdtemp(name.data()) != nullptr, "there is room for the files");
    m_folder = name;
  }
  Scratch(const Scratch &) = delete;
  Scratch &operator=(const Scratch &) = delete;
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }

  std::string path(const char *name) const { return (m_folder / name).string(); }

  std::string read(const char *name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  void write(const char *name, std::string_view bytes) const {
    std::ofstream(path(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }

private:
  std::filesystem::path m_folder;
};
