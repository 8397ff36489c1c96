#include "kestrune/platform/input_file.h"

#include "kestrune/platform/host_file.h"

#include <unistd.h>
#include <utility>

namespace kestrune::platform {

InputFile::InputFile(const std::string &path) : m_handle(OpenForReading(path).release()) {
  struct stat status {};
  if (m_handle == -1) {
    m_error = errno;
    return;
  }
  if (::fstat(m_handle, &status) == 0 && S_ISREG(status.st_mode)) {
    LockFile(m_handle, Lock::kShared);
    m_isSeekable = ::lseek(m_handle, 0, SEEK_CUR) == 0;
  }
  m_isKept = !m_isSeekable;
}

InputFile::~InputFile() { close(); }

void InputFile::close() {
  if (m_handle != -1)
    ::close(std::exchange(m_handle, -1));
}

long InputFile::read(void *buffer, std::size_t size) {
  if (m_text) {
    const std::size_t count = m_text->copy(static_cast<char *>(buffer), size, m_next);
    m_next += count;
    return static_cast<long>(count);
  }
  if (m_next < m_kept.size()) {
    const std::size_t count = m_kept.copy(static_cast<char *>(buffer), size, m_next);
    m_next += count;
    return static_cast<long>(count);
  }
  if (m_handle == -1)
    return -1;
  const ssize_t count = Retried([&] { return ::read(m_handle, buffer, size); });
  if (count < 0)
    m_error = errno;
  if (count > 0 && m_isKept) {
    m_kept.append(static_cast<const char *>(buffer), static_cast<std::size_t>(count));
    m_next = m_kept.size();
  }
  return count;
}

void InputFile::rewind() {
  m_next = 0;
  if (!m_text && m_isSeekable && ::lseek(m_handle, 0, SEEK_SET) != 0) {
    m_error = errno;
    close();
  }
}

bool InputFile::readAll(std::string &bytes) {
  constexpr std::size_t kPiece = std::size_t{64} << 10;
  while (true) {
    const std::size_t size = bytes.size();
    bytes.resize(size + kPiece);
    const long count = read(bytes.data() + size, kPiece);
    bytes.resize(size + static_cast<std::size_t>(count > 0 ? count : 0));
    if (count <= 0)
      return count == 0;
  }
}

} // namespace kestrune::platform
