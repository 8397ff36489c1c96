#pragma once

#include "kestrune/kestrune_xml.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

// What several test files need: a folder of their own, bytes in and out of files, and settings that end with the test.

namespace support {

/// What a test holds for a while and does not copy.
struct Unique {
  Unique() = default;
  Unique(const Unique &) = delete;
  Unique &operator=(const Unique &) = delete;
};

/// A temporary folder, gone with everything in it at the end.
class TempFolder : Unique {
public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kestrune-XXXXXX").string();
    m_path = ::mkdtemp(pattern.data());
  }
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
class Environment : Unique {
public:
  Environment(const char *name, const char *value) : m_name(name) {
    if (const char *old = std::getenv(name))
      m_old = old;
    set(value);
  }
  ~Environment() { set(m_old ? m_old->c_str() : nullptr); }

private:
  void set(const char *value) const {
    value != nullptr ? ::setenv(m_name.c_str(), value, 1) : ::unsetenv(m_name.c_str());
  }

  std::string m_name;
  std::optional<std::string> m_old;
};

/// A current directory that is the old one again at the end.
class CurrentDirectory : Unique {
public:
  explicit CurrentDirectory(const std::filesystem::path &path) : m_old(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~CurrentDirectory() { std::filesystem::current_path(m_old); }

private:
  std::filesystem::path m_old;
};

/// COM for the current thread, as a program would hold it.
struct Com : Unique {
  Com() { CoInitialize(nullptr); }
  ~Com() { CoUninitialize(); }
};

/// The code page of the process, UTF-8 again at the end.
struct CodePage : Unique {
  explicit CodePage(unsigned page) { EXPECT_TRUE(kestrune::platform::SetCodePage(page)); }
  ~CodePage() { kestrune::platform::SetCodePage(65001); }
};

/// Whether `call` throws an exception of that class, which is ended.
template <class Exception, class Call>
bool throws(Call &&call) {
  try {
    call();
  } catch (Exception *exception) {
    exception->Delete();
    return true;
  }
  return false;
}

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
