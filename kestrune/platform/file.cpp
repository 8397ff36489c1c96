#include "kestrune/platform/file.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/drives.h"

#include <cerrno>
#include <fcntl.h>
#include <limits.h>
#include <string>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

/// Calls until a signal no longer interrupts.
template <class Call>
auto retried(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR)
    result = call();
  return result;
}

int causeOf(int error) {
  switch (error) {
  case ENOENT:
    return CFileException::fileNotFound;
  case ENOTDIR:
  case ENAMETOOLONG:
  case ELOOP:
    return CFileException::badPath;
  case EMFILE:
  case ENFILE:
    return CFileException::tooManyOpenFiles;
  case EACCES:
  case EPERM:
  case EROFS:
  case EEXIST:
  case EISDIR:
  case ENOTEMPTY:
    return CFileException::accessDenied;
  case EBADF:
    return CFileException::invalidFile;
  case EWOULDBLOCK:
  case ETXTBSY:
    return CFileException::sharingViolation;
  case ENOSPC:
  case EDQUOT:
  case EFBIG:
    return CFileException::diskFull;
  case EIO:
    return CFileException::hardIO;
  default:
    return CFileException::genericException;
  }
}

[[noreturn]] void fail(int error, const char *name) { throw new CFileException(causeOf(error), error, name); }

/// The host path, or a thrown failure.
std::string hostPathOf(const char *name) {
  std::string path;
  if (!kestrune::platform::ToHostPath(name, path))
    throw new CFileException(CFileException::badPath, ENOENT, name);
  return path;
}

/// The status of what `name` leads to in the end.
bool readStatus(const char *name, std::string &path, struct stat &status) {
  return kestrune::platform::ToHostPath(name, path) && ::stat(path.c_str(), &status) == 0;
}

bool isReadOnly(const struct stat &status) { return (status.st_mode & kWriteBits) == 0; }

DWORD attributesOf(const struct stat &status) {
  const DWORD attributes =
      (isReadOnly(status) ? FILE_ATTRIBUTE_READONLY : 0) | (S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : 0);
  return attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL;
}

bool setReadOnly(const std::string &path, const struct stat &status, bool on) {
  // The mode is touched only when that is needed: it may belong to somebody else.
  if (isReadOnly(status) == on)
    return true;
  const mode_t mode = status.st_mode & 07777U;
  return ::chmod(path.c_str(), on ? mode & ~kWriteBits : mode | S_IWUSR) == 0;
}

/// The place to which a symbolic link to nothing leads; a path that is no link, as it stands.
std::string linkTarget(std::string path) {
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

/// A file of the host that is open for writing, and may have been made by that.
class WritableFile {
public:
  WritableFile() = default;
  WritableFile(const WritableFile &) = delete;
  WritableFile &operator=(const WritableFile &) = delete;
  ~WritableFile() {
    if (m_handle != -1)
      ::close(m_handle);
  }

  /// Opens without a change to what is there. Returns 0 or the host's error number.
  int open(const std::string &path, bool create) {
    int error = openOrMake(path, create);
    if (error == 0 && ::fstat(m_handle, &m_status) != 0)
      error = errno;
    // The host lets a privileged program write to a read-only file too.
    if (error == 0 && m_made.empty() && isReadOnly(m_status))
      error = EACCES;
    return error;
  }

  int handle() const { return m_handle; }
  bool isRegular() const { return S_ISREG(m_status.st_mode); }
  /// The size at the opening.
  off_t oldSize() const { return m_status.st_size; }

  int resize(off_t size) const {
    return retried([&] { return ::ftruncate(m_handle, size); }) == 0 ? 0 : errno;
  }

  int release() { return std::exchange(m_handle, -1); }

  /// Only at its closing may the host tell that it could not keep what was written.
  int close() { return ::close(release()) == 0 || errno == EINTR ? 0 : errno; }

  void removeIfMade() const {
    if (!m_made.empty())
      ::unlink(m_made.c_str());
  }

private:
  /// A new file is opened apart from an existing one, so that nobody else's is taken for the one made here. Between the
  /// two somebody may make or remove it, so this is tried again.
  int openOrMake(const std::string &path, bool create) {
    constexpr int kTries = 10;
    int error = 0;
    for (int i = 0; i < kTries; ++i) {
      m_handle = retried([&] { return ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); });
      error = m_handle == -1 ? errno : 0;
      if (error != ENOENT || !create)
        break;
      const std::string target = linkTarget(path);
      m_handle = retried([&] { return ::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666); });
      error = m_handle == -1 ? errno : 0;
      if (error == 0)
        m_made = target;
      if (error != EEXIST)
        break;
    }
    return error;
  }

  int m_handle = -1;
  std::string m_made;
  struct stat m_status {};
};

/// Past the limit the host would send a signal that ends the program, so it is never let to see such a write.
bool exceedsSizeLimit(std::uint64_t size) {
  struct rlimit limit {};
  return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && size > limit.rlim_cur;
}

int writeAll(int handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = retried([&] { return ::write(handle, bytes.data(), bytes.size()); });
    if (count <= 0)
      return count < 0 ? errno : EIO;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

int reserve(const WritableFile &file, off_t size) {
  int error = EINTR;
  while (error == EINTR)
    error = ::posix_fallocate(file.handle(), file.oldSize(), size - file.oldSize());
  return error;
}

int overwrite(const WritableFile &file, const std::vector<std::string_view> &blocks) {
  std::uint64_t total = 0;
  for (const std::string_view block : blocks)
    total += block.size();
  const auto size = static_cast<off_t>(total);
  if (file.isRegular() && exceedsSizeLimit(total))
    return EFBIG;
  const bool grows = file.isRegular() && size > file.oldSize();
  int error = grows ? reserve(file, size) : 0;
  for (auto block = blocks.begin(); error == 0 && block != blocks.end(); ++block)
    error = writeAll(file.handle(), *block);
  if (error == 0 && file.isRegular() && size < file.oldSize())
    error = file.resize(size);
  if (error != 0 && grows)
    file.resize(file.oldSize());
  return error;
}

/// The last component of a name, as it is written.
std::string lastComponent(const char *name) {
  std::string utf8;
  if (!kestrune::platform::TextToUtf8(name, utf8))
    return {};
  utf8.erase(utf8.find_last_not_of("/\\") + 1);
  return utf8.substr(utf8.find_last_of("/\\:") + 1);
}

} // namespace

DWORD GetFileAttributesA(const char *name) {
  std::string path;
  struct stat status {};
  return readStatus(name, path, status) ? attributesOf(status) : INVALID_FILE_ATTRIBUTES;
}

int SetFileAttributesA(const char *name, DWORD attributes) {
  std::string path;
  struct stat status {};
  return readStatus(name, path, status) && setReadOnly(path, status, (attributes & FILE_ATTRIBUTE_READONLY) != 0);
}

DWORD GetShortPathNameA(const char * /*name*/, char * /*buffer*/, DWORD /*size*/) { return 0; }

int _mkdir(const char *name) {
  std::string path;
  return kestrune::platform::ToHostPath(name, path) ? ::mkdir(path.c_str(), 0777) : -1;
}

CFile::~CFile() {
  if (m_handle != -1)
    ::close(m_handle);
}

bool CFile::Open(const char *name, unsigned flags) {
  std::string path;
  if (m_handle != -1 || !kestrune::platform::ToHostPath(name, path))
    return false;
  const bool exclusive = (flags & shareDenyWrite) != 0;
  if ((flags & modeWrite) != 0) {
    WritableFile file;
    if (file.open(path, (flags & modeCreate) != 0) != 0)
      return false;
    // The lock comes first: a file that somebody reads must not be emptied.
    if ((exclusive && retried([&] { return ::flock(file.handle(), LOCK_EX | LOCK_NB); }) != 0) ||
        ((flags & modeCreate) != 0 && file.isRegular() && file.resize(0) != 0)) {
      file.removeIfMade();
      return false;
    }
    m_handle = file.release();
  } else {
    m_handle = retried([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); });
    struct stat status {};
    const bool refused =
        m_handle == -1 || ::fstat(m_handle, &status) != 0 || S_ISDIR(status.st_mode) ||
        // Where the host has no locks a reader does no harm.
        (exclusive && retried([&] { return ::flock(m_handle, LOCK_SH | LOCK_NB); }) != 0 && errno == EWOULDBLOCK);
    if (refused) {
      if (m_handle != -1)
        ::close(std::exchange(m_handle, -1));
      return false;
    }
  }
  m_name = name;
  return true;
}

void CFile::Close() {
  if (::close(std::exchange(m_handle, -1)) != 0 && errno != EINTR)
    fail(errno, m_name);
}

std::uint64_t CFile::GetLength() const {
  struct stat status {};
  if (::fstat(m_handle, &status) != 0)
    fail(errno, m_name);
  return static_cast<std::uint64_t>(status.st_size);
}

UINT CFile::Read(void *buffer, UINT count) {
  UINT done = 0;
  while (done < count) {
    const ssize_t got = retried([&] { return ::read(m_handle, static_cast<char *>(buffer) + done, count - done); });
    if (got < 0)
      fail(errno, m_name);
    if (got == 0)
      break;
    done += static_cast<UINT>(got);
  }
  return done;
}

void CFile::Write(const void *buffer, UINT count) {
  struct stat status {};
  const off_t position = ::lseek(m_handle, 0, SEEK_CUR);
  const bool isRegular = position >= 0 && ::fstat(m_handle, &status) == 0 && S_ISREG(status.st_mode);
  if (isRegular && exceedsSizeLimit(static_cast<std::uint64_t>(position) + count))
    fail(EFBIG, m_name);
  if (const int error = writeAll(m_handle, {static_cast<const char *>(buffer), count}); error != 0)
    fail(error, m_name);
}

bool CFile::GetStatus(const char *name, CFileStatus &status) {
  std::string path;
  struct stat found {};
  if (!readStatus(name, path, found))
    return false;
  status.m_ctime = found.st_ctime;
  status.m_mtime = found.st_mtime;
  status.m_atime = found.st_atime;
  status.m_size = S_ISDIR(found.st_mode) ? 0 : found.st_size;
  status.m_attribute = attributesOf(found);
  return true;
}

void CFile::SetStatus(const char *name, const CFileStatus &status) {
  const std::string path = hostPathOf(name);
  // The host keeps the time of creation for itself.
  const struct timespec times[] = {{status.m_atime, 0}, {status.m_mtime, 0}};
  struct stat old {};
  if (::stat(path.c_str(), &old) != 0 || ::utimensat(AT_FDCWD, path.c_str(), times, 0) != 0 ||
      !setReadOnly(path, old, (status.m_attribute & FILE_ATTRIBUTE_READONLY) != 0))
    fail(errno, name);
}

void CFile::Rename(const char *oldName, const char *newName) {
  const std::string oldPath = hostPathOf(oldName);
  std::string newPath = hostPathOf(newName);
  struct stat status {};
  if (::lstat(oldPath.c_str(), &status) != 0)
    fail(errno, oldName);
  if (newPath == oldPath) {
    // The file itself: it takes its own name as it is written now.
    const std::size_t start = newPath.rfind('/') + 1;
    const std::string written = lastComponent(newName);
    if (kestrune::platform::AsciiLower(written) == kestrune::platform::AsciiLower(newPath.substr(start)))
      newPath.replace(start, std::string::npos, written);
  } else if (::lstat(newPath.c_str(), &status) == 0) {
    fail(EEXIST, newName);
  }
  if (::rename(oldPath.c_str(), newPath.c_str()) != 0)
    fail(errno, oldName);
}

void CFile::Remove(const char *name) {
  if (::unlink(hostPathOf(name).c_str()) != 0)
    fail(errno, name);
}

namespace kestrune::platform {

int WriteFileInPlace(const char *name, const std::vector<std::string_view> &blocks) {
  std::string path;
  if (!ToHostPath(name, path))
    return ENOENT;
  WritableFile file;
  int error = file.open(path, true);
  if (error == 0)
    error = overwrite(file, blocks);
  if (file.handle() != -1) {
    const int closing = file.close();
    error = error != 0 ? error : closing;
  }
  if (error != 0)
    file.removeIfMade();
  return error;
}

} // namespace kestrune::platform
