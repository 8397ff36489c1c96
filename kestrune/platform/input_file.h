#pragma once

#include <cstddef>
#include <string>

namespace kestrune::platform {

/// A file that a load reads. While it is open, saves wait for it. Opening waits up to a second for a save in progress,
/// and then what is there is read. A pipe or a terminal is read as its bytes arrive.
class InputFile {
public:
  /// `path` is a host path. A failure to open it is reported by the first read.
  explicit InputFile(const std::string &path);
  InputFile(const InputFile &) = delete;
  InputFile &operator=(const InputFile &) = delete;
  ~InputFile();

  /// Returns the number of bytes read, 0 at the end, or -1: then `error` has the reason.
  long read(void *buffer, std::size_t size);
  /// Appends all bytes up to the end. Returns false on failure.
  bool readAll(std::string &bytes);
  /// The host's error number of the failure.
  int error() const { return m_error; }

private:
  int m_handle;
  int m_error = 0;
};

} // namespace kestrune::platform
