#pragma once

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <utility>

// The host's own files, beneath everything that opens, reads and writes one. Functions return 0 or the host's error
// number.

namespace kestrune::platform {

/// Calls until a signal no longer interrupts.
template <class Call>
auto Retried(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR)
    result = call();
  return result;
}

/// An open file of the host, closed at the end.
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
  /// Only at its closing may the host report that it could not keep what was written.
  int close();

private:
  int m_handle = -1;
};

/// Opens a file for reading; closed, with the reason in errno, where that fails. A pipe waits for a writer.
Descriptor OpenForReading(const std::string &path);

enum class Lock { kShared, kExclusive };

/// How long a load or a save waits for the lock of another one.
constexpr std::chrono::milliseconds kLockWait{1000};

/// Locks the file against other loads and saves. False where somebody else has it locked all the time. A host without
/// locks counts as a success.
bool LockFile(int handle, Lock lock);

bool IsReadOnly(const struct stat &status);

/// The place that a symbolic link to nothing leads to; a path that is not a link, as it is.
std::string LinkTarget(std::string path);

/// Past the limit the host would send a signal that ends the program, so such a write is never tried.
bool ExceedsSizeLimit(std::uint64_t size);

int WriteAll(int handle, std::string_view bytes);

/// Puts the file's blocks up to `size` on the disk, so that writing them cannot lack room.
int Reserve(int handle, off_t offset, off_t size);

/// A file that is open for writing, and may have been made by that.
class WritableFile {
public:
  /// Opens without a change to what is there. A read-only file is refused to a privileged program too.
  int open(const std::string &path, bool create);
  /// The same for a save: a regular file is locked, and is still the one at `path` then. EWOULDBLOCK where somebody
  /// else keeps it locked.
  int openLocked(const std::string &path, bool create);

  int handle() const { return m_file.get(); }
  int release() { return m_file.release(); }
  int close() { return m_file.close(); }
  /// As it was when the file was opened, or locked.
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
