#pragma once

#include "kestrune/library/kestrune_xml.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>

// What several test files need: a folder of their own, bytes in and out of files, and settings that end with the test.

namespace support {

/// A temporary folder, gone with everything in it at the end.
class TempFolder {
public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kestrune-XXXXXX").string();
    m_path = ::mkdtemp(pattern.data());
  }
  TempFolder(const TempFolder &) = delete;
  TempFolder &operator=(const TempFolder &) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }

  const std::filesystem::path &path() const { return m_path; }
  /// The host path of `name` below the folder.
  std::string operator/(const std::string &name) const { return (m_path / name).string(); }

private:
  std::filesystem::path m_path;
};

inline void write(const std::string &path, std::string_view bytes) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string read(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// An environment variable that has its old value again at the end. A null value unsets it.
class Environment {
public:
  Environment(const char *name, const char *value) : m_name(name) {
    if (const char *old = std::getenv(name)) {
      m_wasSet = true;
      m_old = old;
    }
    set(value);
  }
  Environment(const Environment &) = delete;
  Environment &operator=(const Environment &) = delete;
  ~Environment() { set(m_wasSet ? m_old.c_str() : nullptr); }

private:
  void set(const char *value) const {
    if (value != nullptr)
      ::setenv(m_name.c_str(), value, 1);
    else
      ::unsetenv(m_name.c_str());
  }

  std::string m_name, m_old;
  bool m_wasSet = false;
};

/// A current directory that is the old one again at the end.
class CurrentDirectory {
public:
  explicit CurrentDirectory(const std::filesystem::path &path) : m_old(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  CurrentDirectory(const CurrentDirectory &) = delete;
  CurrentDirectory &operator=(const CurrentDirectory &) = delete;
  ~CurrentDirectory() { std::filesystem::current_path(m_old); }

private:
  std::filesystem::path m_old;
};

/// COM for the current thread, as a program would hold it.
struct Com {
  Com() { CoInitialize(nullptr); }
  Com(const Com &) = delete;
  Com &operator=(const Com &) = delete;
  ~Com() { CoUninitialize(); }
};

/// The code page of the process, UTF-8 again at the end.
struct CodePage {
  explicit CodePage(unsigned page) { EXPECT_TRUE(platform::SetCodePage(page)); }
  CodePage(const CodePage &) = delete;
  CodePage &operator=(const CodePage &) = delete;
  ~CodePage() { platform::SetCodePage(65001); }
};

/// The formatted message of the exception that `call` throws, which is ended; empty when it throws none.
template <class Call>
std::string thrownMessage(Call &&call) {
  try {
    call();
  } catch (CKRXException *exception) {
    const std::string message = static_cast<const char *>(exception->GetFormattedMessage());
    exception->Delete();
    return message;
  }
  return {};
}

} // namespace support
