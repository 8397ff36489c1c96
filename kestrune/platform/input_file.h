#pragma once

#include <cstddef>
#include <string>

namespace kestrune::platform {

/// A file that a load reads. While it is open, saves wait for it. Opening waits up to a second for a save in progress,
/// and then what is there is read. A pipe or a terminal is read as its bytes arrive; it keeps them, so that it can
/// rewind too.
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
  /// Goes back to the first byte. Where that fails, the next read does.
  void rewind();
  /// Whether it goes back in the file itself: no pipe, and nothing that may be without an end.
  bool isSeekable() const { return m_isSeekable; }
  /// There will be no rewind(), so bytes need not be kept.
  void forget() { m_isKept = false; }
  /// The host's error number of the failure.
  int error() const { return m_error; }

private:
  void close();

  int m_handle;
  int m_error = 0;
  bool m_isSeekable = false;
  bool m_isKept = false;
  std::string m_kept;     // all that was read so far of a file that is kept
  std::size_t m_next = 0; // byte of it to give out; behind all of them the file goes on
};

} // namespace kestrune::platform
