#pragma once

#include <cstddef>
#include <string>

namespace kestrune::platform {

/// A file that a load reads. While it is open, saves wait for it; it waits itself up to a second for a save that is on
/// the way, and then reads what is there. A pipe or a terminal is read as its bytes come.
class InputFile {
public:
  /// `path` is a host path. A failure shows at the first reading.
  explicit InputFile(const std::string &path);
  InputFile(const InputFile &) = delete;
  InputFile &operator=(const InputFile &) = delete;
  ~InputFile();

  /// The number of bytes read, 0 at the end, or -1: then `error` has the reason.
  long read(void *buffer, std::size_t size);
  /// Appends all bytes up to the end. False on failure.
  bool readAll(std::string &bytes);
  /// The host's error number of what failed.
  int error() const { return m_error; }

private:
  int m_handle;
  int m_error = 0;
};

} // namespace kestrune::platform
