#include "kestrune/platform/file.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/drives.h"
#include "kestrune/platform/host_file.h"

#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <unistd.h>

using kestrune::platform::IsReadOnly;
using kestrune::platform::Retried;
using kestrune::platform::WritableFile;

namespace {

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

/// The host path; throws if the name has none.
std::string hostPathOf(const char *name) {
  std::string path;
  if (!kestrune::platform::ToHostPath(name, path))
    throw new CFileException(CFileException::badPath, ENOENT, name);
  return path;
}

DWORD attributesOf(const struct stat &status) {
  const DWORD attributes =
      (IsReadOnly(status) ? FILE_ATTRIBUTE_READONLY : 0) | (S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : 0);
  return attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL;
}

bool setReadOnly(const std::string &path, const struct stat &status, bool on) {
  // The mode is changed only if needed: the file may belong to another user.
  if (IsReadOnly(status) == on)
    return true;
  const mode_t mode = status.st_mode & 07777U;
  return ::chmod(path.c_str(), on ? mode & ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH) : mode | S_IWUSR) == 0;
}

/// The last component of a name, as written.
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
  return kestrune::platform::ToHostPath(name, path, &status) ? attributesOf(status) : INVALID_FILE_ATTRIBUTES;
}

int SetFileAttributesA(const char *name, DWORD attributes) {
  std::string path;
  struct stat status {};
  return kestrune::platform::ToHostPath(name, path, &status) &&
         setReadOnly(path, status, (attributes & FILE_ATTRIBUTE_READONLY) != 0);
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
  m_name = name; // first: if memory runs out here, nothing has been created or emptied
  const bool exclusive = (flags & shareDenyWrite) != 0;
  if ((flags & modeWrite) != 0) {
    WritableFile file;
    if (file.open(path, (flags & modeCreate) != 0) != 0)
      return false;
    // The lock comes first: a file that somebody is reading must not be emptied.
    if ((exclusive && Retried([&] { return ::flock(file.handle(), LOCK_EX | LOCK_NB); }) != 0) ||
        ((flags & modeCreate) != 0 && file.isRegular() && file.resize(0) != 0)) {
      file.removeIfMade();
      return false;
    }
    m_handle = file.release();
  } else {
    kestrune::platform::Descriptor file = kestrune::platform::OpenForReading(path);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || S_ISDIR(status.st_mode))
      return false;
    // If the host has no locks, a reader still does no harm.
    if (exclusive && Retried([&] { return ::flock(file.get(), LOCK_SH | LOCK_NB); }) != 0 && errno == EWOULDBLOCK)
      return false;
    m_handle = file.release();
  }
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
    const ssize_t got = Retried([&] { return ::read(m_handle, static_cast<char *>(buffer) + done, count - done); });
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
  if (isRegular && kestrune::platform::ExceedsSizeLimit(static_cast<std::uint64_t>(position) + count))
    fail(EFBIG, m_name);
  if (const int error = kestrune::platform::WriteAll(m_handle, {static_cast<const char *>(buffer), count}); error != 0)
    fail(error, m_name);
}

bool CFile::GetStatus(const char *name, CFileStatus &status) {
  std::string path;
  struct stat found {};
  if (!kestrune::platform::ToHostPath(name, path, &found))
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
  // The host does not let anyone set the time of creation.
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
    // A file renamed to its own name takes the new upper and lower case.
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

bool kestrune::platform::IsFileOrFolder(const char *name) {
  std::string path;
  struct stat status {};
  return ToHostPath(name, path, &status) && (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode));
}
