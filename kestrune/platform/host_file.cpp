#include "kestrune/platform/host_file.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace kestrune::platform {

namespace {

constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

/// Another process may create, replace or remove the file between two calls of the host; then the open is tried again.
constexpr int kTries = 10;

} // namespace

int Descriptor::close() {
  if (m_handle == -1)
    return 0;
  return ::close(release()) == 0 || errno == EINTR ? 0 : errno;
}

Descriptor OpenForReading(const std::string &path) {
  return Descriptor(Retried([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); }));
}

bool LockFile(int handle, Lock lock) {
  constexpr std::chrono::milliseconds kPause{10};
  const auto end = std::chrono::steady_clock::now() + kLockWait;
  const int operation = (lock == Lock::kShared ? LOCK_SH : LOCK_EX) | LOCK_NB;
  while (Retried([&] { return ::flock(handle, operation); }) != 0 && errno == EWOULDBLOCK) {
    if (std::chrono::steady_clock::now() >= end)
      return false;
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

bool IsReadOnly(const struct stat &status) { return (status.st_mode & kWriteBits) == 0; }

std::string LinkTarget(std::string path) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    std::string target(PATH_MAX, '\0');
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    if (length <= 0)
      break;
    target.resize(static_cast<std::size_t>(length));
    path = target.front() == '/' ? target : path.substr(0, path.rfind('/') + 1) + target;
  }
  return path;
}

bool ExceedsSizeLimit(std::uint64_t size) {
  struct rlimit limit {};
  return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && size > limit.rlim_cur;
}

int WriteAll(int handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = Retried([&] { return ::write(handle, bytes.data(), bytes.size()); });
    if (count <= 0)
      return count < 0 ? errno : EIO;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

int Reserve(int handle, off_t offset, off_t size) {
  if (offset >= size)
    return 0;
  int error = EINTR;
  while (error == EINTR)
    error = ::posix_fallocate(handle, offset, size - offset);
  return error;
}

int WritableFile::open(const std::string &path, bool create) {
  int error = openOrMake(path, create);
  if (error == 0 && ::fstat(handle(), &m_status) != 0)
    error = errno;
  if (error == 0 && m_made.empty() && IsReadOnly(m_status))
    error = EACCES;
  return error;
}

int WritableFile::openLocked(const std::string &path, bool create) {
  for (int i = 1;; ++i) {
    *this = WritableFile();
    if (const int error = open(path, create); error != 0)
      return error;
    if (!isRegular())
      return 0;
    if (!LockFile(handle(), Lock::kExclusive)) {
      removeIfMade();
      return EWOULDBLOCK;
    }
    // The previous holder of the lock may have resized, replaced or removed the file.
    if (isStillAt(path) || i == kTries)
      return ::fstat(handle(), &m_status) == 0 ? 0 : errno;
  }
}

int WritableFile::resize(off_t size) const {
  return Retried([&] { return ::ftruncate(handle(), size); }) == 0 ? 0 : errno;
}

void WritableFile::removeIfMade() {
  if (!m_made.empty())
    ::unlink(m_made.c_str());
  m_made.clear();
}

/// Creating is a separate, exclusive open, so that somebody else's file is never taken for the one created here.
int WritableFile::openOrMake(const std::string &path, bool create) {
  const auto attempt = [&](const std::string &name, int flags) {
    m_file = Descriptor(Retried([&] { return ::open(name.c_str(), flags | O_CLOEXEC | O_NOCTTY, 0666); }));
    return m_file.isOpen() ? 0 : errno;
  };
  int error = 0;
  for (int i = 0; i < kTries; ++i) {
    // A pipe has to be opened only for writing: otherwise the open does not wait for its reader.
    struct stat status {};
    m_isReadable = ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    error = attempt(path, m_isReadable ? O_RDWR : O_WRONLY);
    if (error == EACCES && m_isReadable) {
      m_isReadable = false;
      error = attempt(path, O_WRONLY);
    }
    if (error != ENOENT || !create)
      break;
    std::string target = LinkTarget(path);
    error = attempt(target, O_RDWR | O_CREAT | O_EXCL);
    if (error == 0) {
      m_isReadable = true;
      m_made = std::move(target);
    }
    if (error != EEXIST)
      break;
  }
  return error;
}

bool WritableFile::isStillAt(const std::string &path) const {
  struct stat there {};
  return ::stat(path.c_str(), &there) == 0 && there.st_dev == m_status.st_dev && there.st_ino == m_status.st_ino;
}

} // namespace kestrune::platform
