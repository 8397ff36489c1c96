#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kestrune::platform {

/// A file that a load reads, or a text in its place. While a file is open, saves wait for it. Opening waits up to a
/// second for a save in progress, and then what is there is read. A pipe or a terminal is read as its bytes arrive; it
/// keeps them, so that it can rewind too.
class InputFile {
public:
  /// `path` is a host path. A failure to open it is reported by the first read.
  explicit InputFile(const std::string &path);
  /// Reads `text` itself, which has to stay as it is.
  static InputFile OfText(std::string_view text) { return InputFile(Text{text}); }
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
  struct Text {
    std::string_view bytes;
  };
  explicit InputFile(Text text) : m_text(text.bytes), m_isSeekable(true) {}

  void close();

  std::optional<std::string_view> m_text; // read in place of a file
  int m_handle = -1;
  int m_error = 0;
  bool m_isSeekable = false;
  bool m_isKept = false;
  std::string m_kept;     // all that was read so far of a file that is kept
  std::size_t m_next = 0; // byte of it, or of the text, to give out; behind all of the first the file goes on
};

} // namespace kestrune::platform
