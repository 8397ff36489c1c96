#include "tests/faults/fault_driver.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <limits>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

// Replaces the system calls of the whole process: a call from inside a library ends here too.

namespace {

/// Used as the error of a read or write that does less than it was asked to do.
constexpr int kShortCount = -1;

class CallFault;
constinit CallFault *armed = nullptr;

class CallFault : public faults::Fault {
public:
  CallFault(std::string_view call, int error) : m_call(call), m_error(error) {}

  std::string name() const override {
    return std::string(m_call) + ": " + (m_error == kShortCount ? "a short count" : std::strerror(m_error));
  }
  void arm(long number, bool forEver) override {
    m_first = number;
    // A host never interrupts a call for ever.
    m_last = !forEver ? number : m_error == EINTR ? number + 2 : std::numeric_limits<long>::max();
    m_calls = 0;
    armed = this;
  }
  bool disarm() override {
    armed = nullptr;
    return m_calls >= m_first;
  }
  bool mustPassUnseen() const override { return m_error == EINTR || m_error == kShortCount; }
  bool mayTearFile(bool forEver) const override { return forEver && (m_call == "write" || m_call == "ftruncate"); }
  bool mayHideFile() const override { return !mustPassUnseen(); }

  /// The error with which this call is to fail, or 0.
  static int next(std::string_view call) {
    if (armed == nullptr || armed->m_call != call)
      return 0;
    const long number = ++armed->m_calls;
    return number >= armed->m_first && number <= armed->m_last ? armed->m_error : 0;
  }

private:
  std::string_view m_call;
  int m_error;
  long m_first = 0;
  long m_last = 0;
  long m_calls = 0;
};

/// The host's own function.
template <class Function>
Function *real(const char *name) {
  return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

/// Calls the host, or fails instead.
template <class Function, class... Arguments>
auto callOrFail(const char *name, Function *host, Arguments... arguments) -> decltype(host(arguments...)) {
  if (const int error = CallFault::next(name); error != 0) {
    errno = error;
    return static_cast<decltype(host(arguments...))>(-1);
  }
  return host(arguments...);
}

/// The same for a call that moves `size` bytes.
template <class Function, class Buffer, class... Offset>
ssize_t moveOrFail(const char *name, Function *host, int file, Buffer *buffer, std::size_t size, Offset... offset) {
  const int error = CallFault::next(name);
  if (error == kShortCount)
    return host(file, buffer, std::min<std::size_t>(size, 7), offset...);
  if (error != 0) {
    errno = error;
    return -1;
  }
  return host(file, buffer, size, offset...);
}

} // namespace

extern "C" {

int open(const char *path, int flags, ...) {
  static auto *const host = real<int(const char *, int, mode_t)>("open");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return callOrFail("open", host, path, flags, mode);
}

int __open_2(const char *path, int flags) { return open(path, flags); }

ssize_t read(int file, void *buffer, std::size_t size) {
  static auto *const host = real<ssize_t(int, void *, std::size_t)>("read");
  return moveOrFail("read", host, file, buffer, size);
}

ssize_t __read_chk(int file, void *buffer, std::size_t size, std::size_t) { return read(file, buffer, size); }

ssize_t pread(int file, void *buffer, std::size_t size, off_t offset) {
  static auto *const host = real<ssize_t(int, void *, std::size_t, off_t)>("pread");
  return moveOrFail("pread", host, file, buffer, size, offset);
}

ssize_t __pread_chk(int file, void *buffer, std::size_t size, off_t offset, std::size_t) {
  return pread(file, buffer, size, offset);
}

ssize_t write(int file, const void *buffer, std::size_t size) {
  static auto *const host = real<ssize_t(int, const void *, std::size_t)>("write");
  return moveOrFail("write", host, file, buffer, size);
}

ssize_t pwrite(int file, const void *buffer, std::size_t size, off_t offset) {
  static auto *const host = real<ssize_t(int, const void *, std::size_t, off_t)>("pwrite");
  return moveOrFail("write", host, file, buffer, size, offset);
}

int ftruncate(int file, off_t size) noexcept {
  static auto *const host = real<int(int, off_t)>("ftruncate");
  return callOrFail("ftruncate", host, file, size);
}

int posix_fallocate(int file, off_t offset, off_t size) {
  static auto *const host = real<int(int, off_t, off_t)>("posix_fallocate");
  const int error = CallFault::next("posix_fallocate");
  return error != 0 ? error : host(file, offset, size);
}

// The host closes a file even if it reports an error.
int close(int file) {
  static auto *const host = real<int(int)>("close");
  const int result = host(file);
  return callOrFail(
      "close", +[](int closed) { return closed; }, result);
}

int stat(const char *path, struct stat *status) noexcept {
  static auto *const host = real<int(const char *, struct stat *)>("stat");
  return callOrFail("stat", host, path, status);
}

int lstat(const char *path, struct stat *status) noexcept {
  static auto *const host = real<int(const char *, struct stat *)>("lstat");
  return callOrFail("lstat", host, path, status);
}

int fstat(int file, struct stat *status) noexcept {
  static auto *const host = real<int(int, struct stat *)>("fstat");
  return callOrFail("fstat", host, file, status);
}

int mkdir(const char *path, mode_t mode) noexcept {
  static auto *const host = real<int(const char *, mode_t)>("mkdir");
  return callOrFail("mkdir", host, path, mode);
}

int unlink(const char *path) noexcept {
  static auto *const host = real<int(const char *)>("unlink");
  return callOrFail("unlink", host, path);
}

int fsync(int file) {
  static auto *const host = real<int(int)>("fsync");
  return callOrFail("fsync", host, file);
}

int rename(const char *from, const char *to) noexcept {
  static auto *const host = real<int(const char *, const char *)>("rename");
  return callOrFail("rename", host, from, to);
}

int flock(int file, int operation) noexcept {
  static auto *const host = real<int(int, int)>("flock");
  return callOrFail("flock", host, file, operation);
}

off_t lseek(int file, off_t offset, int whence) noexcept {
  static auto *const host = real<off_t(int, off_t, int)>("lseek");
  return callOrFail("lseek", host, file, offset, whence);
}

ssize_t readlink(const char *path, char *buffer, std::size_t size) noexcept {
  static auto *const host = real<ssize_t(const char *, char *, std::size_t)>("readlink");
  return callOrFail("readlink", host, path, buffer, size);
}

char *getcwd(char *buffer, std::size_t size) noexcept {
  static auto *const host = real<char *(char *, std::size_t)>("getcwd");
  const int error = CallFault::next("getcwd");
  errno = error != 0 ? error : errno;
  return error != 0 ? nullptr : host(buffer, size);
}

} // extern "C"

int main() {
  CallFault rows[] = {
      {"open", EINTR},
      {"open", EACCES},
      {"open", EMFILE},
      {"read", EINTR},
      {"read", EIO},
      {"read", kShortCount},
      {"pread", EINTR},
      {"pread", EIO},
      {"pread", kShortCount},
      {"write", EINTR},
      {"write", EIO},
      {"write", ENOSPC},
      {"write", kShortCount},
      {"ftruncate", EINTR},
      {"ftruncate", EIO},
      {"posix_fallocate", EINTR},
      {"posix_fallocate", ENOSPC},
      {"close", EINTR},
      {"close", EIO},
      {"stat", EACCES},
      {"lstat", EACCES},
      {"fstat", EIO},
      {"mkdir", EACCES},
      {"mkdir", ENOSPC},
      {"unlink", EACCES},
      {"flock", EINTR},
      {"flock", ENOLCK},
      {"fsync", EIO},
      {"rename", EIO},
      {"lseek", EIO},
      {"readlink", EIO},
      {"getcwd", EACCES},
  };
  std::vector<faults::Fault *> faults;
  for (CallFault &row : rows)
    faults.push_back(&row);
  return faults::Run(faults);
}
