#include "kestrune/platform/input_file.h"

#include "kestrune/platform/host_file.h"

#include <unistd.h>

namespace kestrune::platform {

InputFile::InputFile(const std::string &path) : m_handle(OpenForReading(path).release()) {
  struct stat status {};
  if (m_handle == -1)
    m_error = errno;
  else if (::fstat(m_handle, &status) == 0 && S_ISREG(status.st_mode))
    LockFile(m_handle, Lock::kShared);
}

InputFile::~InputFile() {
  if (m_handle != -1)
    ::close(m_handle);
}

long InputFile::read(void *buffer, std::size_t size) {
  if (m_handle == -1)
    return -1;
  const ssize_t count = Retried([&] { return ::read(m_handle, buffer, size); });
  if (count < 0)
    m_error = errno;
  return count;
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
