#pragma once

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <utility>

// The host's own files, used by everything that opens, reads or writes one. Functions return 0 or the host's error
// number.

namespace kestrune::platform {

/// Repeats the call while signals interrupt it.
template <class Call>
auto Retried(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR)
    result = call();
  return result;
}

/// An open file of the host, closed by the destructor.
class Descriptor {
public:
  Descriptor() = default;
  explicit Descriptor(int handle) : m_handle(handle) {}
  Descriptor(Descriptor &&other) noexcept : m_handle(other.release()) {}
  Descriptor &operator=(Descriptor &&other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
  }
  ~Descriptor() { close(); }

  int get() const { return m_handle; }
  bool isOpen() const { return m_handle != -1; }
  int release() { return std::exchange(m_handle, -1); }
  /// Some hosts report only here that they could not keep what was written.
  int close();

private:
  int m_handle = -1;
};

/// Opens a file for reading. On failure the result is not open and errno has the reason. Waits for the writer of a
/// pipe.
Descriptor OpenForReading(const std::string &path);

enum class Lock { kShared, kExclusive };

/// How long a load or a save waits for the lock of another one.
constexpr std::chrono::milliseconds kLockWait{1000};

/// Locks the file against other loads and saves. False if somebody else keeps it locked for all of `kLockWait`. A host
/// without locks counts as a success.
bool LockFile(int handle, Lock lock);

bool IsReadOnly(const struct stat &status);

/// The path that symbolic links lead to, even if nothing is there; a path that is not a link is returned as it is.
std::string LinkTarget(std::string path);

/// The host ends a program with a signal when it writes past its size limit, so such a write is never tried.
bool ExceedsSizeLimit(std::uint64_t size);

int WriteAll(int handle, std::string_view bytes);

/// Reserves disk space for the file up to `size`, so that writing it cannot run out of space.
int Reserve(int handle, off_t offset, off_t size);

/// A file that is open for writing, and may have been created by opening it.
class WritableFile {
public:
  /// Opens without changing what is there. A read-only file is refused even to a privileged program.
  int open(const std::string &path, bool create);
  /// The same for a save: a regular file is also locked, and is still the one at `path`. Returns EWOULDBLOCK if
  /// somebody else keeps it locked.
  int openLocked(const std::string &path, bool create);

  int handle() const { return m_file.get(); }
  int release() { return m_file.release(); }
  int close() { return m_file.close(); }
  /// As it was when the file was opened or locked.
  const struct stat &status() const { return m_status; }
  bool isRegular() const { return S_ISREG(m_status.st_mode); }
  bool isReadable() const { return m_isReadable; }

  int resize(off_t size) const;
  void removeIfMade();

private:
  int openOrMake(const std::string &path, bool create);
  bool isStillAt(const std::string &path) const;

  Descriptor m_file;
  std::string m_made;
  struct stat m_status {};
  bool m_isReadable = false;
};

} // namespace kestrune::platform
