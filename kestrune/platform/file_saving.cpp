#include "kestrune/platform/file_saving.h"

#include "kestrune/platform/drives.h"
#include "kestrune/platform/host_file.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace kestrune::platform {

/// The bytes that a save overwrites, kept so that they can be written back. Those that stay the same are not kept.
class OldBytes {
public:
  /// `size` is that of the old file.
  OldBytes(int handle, off_t size) : m_handle(handle), m_size(static_cast<std::uint64_t>(size)) {}

  /// Keeps what `bytes` is about to overwrite at `offset`. Returns 0 or the host's error number.
  int keep(std::uint64_t offset, std::string_view bytes) {
    if (offset >= m_size || bytes.empty())
      return 0;
    auto size = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), m_size - offset));
    if (!m_next || m_capacity < size) {
      m_next = std::make_unique_for_overwrite<char[]>(size);
      m_capacity = size;
    }
    for (std::size_t done = 0; done < size;) {
      const ssize_t count = Retried(
          [&] { return ::pread(m_handle, m_next.get() + done, size - done, static_cast<off_t>(offset + done)); });
      if (count < 0)
        return errno;
      if (count == 0)
        size = done; // the file has become shorter meanwhile
      done += static_cast<std::size_t>(count);
    }
    if (std::string_view(m_next.get(), size) == bytes.substr(0, size))
      return 0;
    m_pieces.push_back({offset, size, std::move(m_next)});
    return 0;
  }

  void writeBack() const {
    for (const Piece &piece : m_pieces) {
      for (std::size_t done = 0; done < piece.size;) {
        const ssize_t count = Retried([&] {
          return ::pwrite(m_handle, piece.bytes.get() + done, piece.size - done,
                          static_cast<off_t>(piece.offset + done));
        });
        if (count <= 0)
          return;
        done += static_cast<std::size_t>(count);
      }
    }
  }

private:
  struct Piece {
    std::uint64_t offset;
    std::size_t size;
    std::unique_ptr<char[]> bytes;
  };

  int m_handle;
  std::uint64_t m_size;
  std::vector<Piece> m_pieces;
  std::unique_ptr<char[]> m_next; // for the next piece
  std::size_t m_capacity = 0;
};

namespace {

constinit thread_local SaveWay saveWay = SaveWay::kInPlace;

int synchronize(int handle) {
  const bool done = Retried([&] { return ::fsync(handle); }) == 0;
  return done || errno == EINVAL || errno == EROFS ? 0 : errno; // some files cannot be synchronised
}

/// Writes everything in place; the caller closes the file.
int overwrite(const WritableFile &file, FileOutput &output, std::uint64_t total) {
  if (!file.isRegular())
    return output.write(file.handle(), nullptr);
  if (ExceedsSizeLimit(total))
    return EFBIG;
  const off_t oldSize = file.status().st_size;
  const auto size = static_cast<off_t>(total);
  // An old file may have holes, which need space too. Some hosts have to read the file to reserve it.
  int error = Reserve(file.handle(), file.isReadable() ? 0 : oldSize, size);
  if (error == 0) {
    OldBytes old(file.handle(), oldSize);
    try {
      error = output.write(file.handle(), file.isReadable() ? &old : nullptr);
    } catch (...) { // no memory for an old piece
      old.writeBack();
      file.resize(oldSize);
      throw;
    }
    if (error == 0 && size < oldSize)
      error = file.resize(size);
    if (error != 0)
      old.writeBack();
  }
  if (error != 0)
    file.resize(oldSize);
  return error;
}

/// Whether the file has attributes that a new file in its place would lack.
bool hasOwnAttributes(int handle) {
  std::string names(std::size_t{64} << 10, '\0');
  const ssize_t length = ::flistxattr(handle, names.data(), names.size());
  names.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  for (std::size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
    const std::string_view name = names.c_str() + at;
    if (name.starts_with("user.") || name == "system.posix_acl_access")
      return true;
  }
  return false;
}

/// A new file that is to replace another one; the destructor removes it if it did not.
class NewFile {
public:
  explicit NewFile(std::string target)
      : m_target(std::move(target)), m_folder(m_target.substr(0, m_target.rfind('/') + 1)) {}
  NewFile(const NewFile &) = delete;
  NewFile &operator=(const NewFile &) = delete;
  ~NewFile() {
    if (m_isThere)
      ::unlink(m_path.c_str());
  }

  int open(mode_t mode) {
    static std::atomic<unsigned> number = 0;
    const std::string start = m_folder + ".kestrune-" + std::to_string(::getpid()) + "-";
    do {
      m_path = start + std::to_string(++number) + ".tmp";
      m_file =
          Descriptor(Retried([&] { return ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode); }));
    } while (!m_file.isOpen() && errno == EEXIST);
    m_isThere = m_file.isOpen();
    return m_isThere ? 0 : errno;
  }

  /// Takes over the owner and mode of the old file.
  int become(const struct stat &old) {
    struct stat own {};
    if (::fstat(m_file.get(), &own) != 0)
      return errno;
    if ((own.st_uid != old.st_uid || own.st_gid != old.st_gid) && ::fchown(m_file.get(), old.st_uid, old.st_gid) != 0)
      return errno;
    return ::fchmod(m_file.get(), old.st_mode & 07777U) == 0 ? 0 : errno;
  }

  int write(FileOutput &output, std::uint64_t size) {
    int error = Reserve(m_file.get(), 0, static_cast<off_t>(size));
    if (error == 0)
      error = output.write(m_file.get(), nullptr);
    if (error == 0)
      error = synchronize(m_file.get());
    const int closing = m_file.close();
    return error != 0 ? error : closing;
  }

  int takePlace() {
    if (::rename(m_path.c_str(), m_target.c_str()) != 0)
      return errno;
    m_isThere = false;
    const Descriptor directory = OpenForReading(m_folder);
    return directory.isOpen() ? synchronize(directory.get()) : 0;
  }

private:
  std::string m_target;
  std::string m_folder;
  std::string m_path;
  Descriptor m_file;
  bool m_isThere = false;
};

bool allowsInPlaceOnly(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EXDEV ||
         error == ENAMETOOLONG;
}

/// Replaces the file at `path`, open as `old` if it exists. Returns nothing if it can only be saved in place.
std::optional<int> replace(const std::string &path, const WritableFile *old, FileOutput &output, std::uint64_t size) {
  if (old != nullptr && (!old->isRegular() || old->status().st_nlink > 1 || hasOwnAttributes(old->handle())))
    return std::nullopt;
  if (ExceedsSizeLimit(size))
    return EFBIG;
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), std::free);
  if (old != nullptr && real == nullptr)
    return std::nullopt;
  NewFile file(old != nullptr ? real.get() : LinkTarget(path));
  // Nobody else may open it until it has the mode of the old file.
  int error = file.open(old != nullptr ? 0600 : 0666);
  if (error == 0 && old != nullptr && file.become(old->status()) != 0)
    return std::nullopt;
  if (error == 0) {
    error = file.write(output, size);
    if (error != 0)
      return error;
    error = file.takePlace();
  }
  return allowsInPlaceOnly(error) ? std::nullopt : std::optional(error);
}

} // namespace

SaveWayScope::SaveWayScope(SaveWay way) : m_old(std::exchange(saveWay, way)) {}
SaveWayScope::~SaveWayScope() { saveWay = m_old; }

int FileOutput::write(int handle, OldBytes *old) {
  m_handle = handle;
  m_old = old;
  m_used = 0;
  m_written = 0;
  m_error = 0;
  m_text.writeTo(*this);
  flush();
  return m_error == 0 && m_written != m_text.size() ? EIO : m_error;
}

void FileOutput::appendLong(std::string_view text) {
  while (!text.empty()) {
    if (m_used == m_capacity)
      flush();
    const std::size_t count = std::min(text.size(), m_capacity - m_used);
    if (count == 0)
      return; // a text of no size has no buffer
    std::memcpy(m_buffer.get() + m_used, text.data(), count);
    m_used += count;
    text.remove_prefix(count);
  }
}

void FileOutput::flush() {
  if (m_error == 0 && m_written + m_used > m_text.size())
    m_error = EIO;
  const std::string_view bytes(m_buffer.get(), m_used);
  if (m_error == 0 && m_old != nullptr)
    m_error = m_old->keep(m_written, bytes);
  if (m_error == 0)
    m_error = WriteAll(m_handle, bytes);
  m_written += m_used;
  m_used = 0;
}

int SaveFile(const char *name, const SavedText &text) {
  std::string path;
  if (!ToHostPath(name, path))
    return ENOENT;
  const std::uint64_t size = text.size();
  FileOutput output(text);
  const bool replacing = saveWay == SaveWay::kReplacing;
  WritableFile file;
  int error = file.openLocked(path, !replacing);
  if (replacing && (error == 0 || error == ENOENT)) {
    if (const std::optional<int> result = replace(path, error == 0 ? &file : nullptr, output, size))
      return *result;
    if (error == ENOENT)
      error = file.openLocked(path, true);
  }
  if (error == 0)
    error = overwrite(file, output, size);
  if (error == 0 && replacing)
    error = synchronize(file.handle());
  if (error != 0)
    file.removeIfMade();
  const int closing = file.close();
  if (closing != 0)
    file.removeIfMade();
  return error != 0 ? error : closing;
}

} // namespace kestrune::platform
