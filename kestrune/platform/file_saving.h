#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace kestrune::platform {

/// How the saves of this thread write a file.
enum class SaveWay {
  kInPlace,   ///< overwrites the old bytes: links, owner and mode stay
  kReplacing, ///< writes a new file, which is on the disk before it replaces the old one
};

/// Sets how the saves of this thread write, until the destructor restores the old way.
class SaveWayScope {
public:
  explicit SaveWayScope(SaveWay way);
  SaveWayScope(const SaveWayScope &) = delete;
  SaveWayScope &operator=(const SaveWayScope &) = delete;
  ~SaveWayScope();

private:
  SaveWay m_old;
};

class FileOutput;
class OldBytes;

/// What a save writes. It is written twice where the first try shows that no new file can take the place of the old.
class SavedText {
public:
  virtual std::uint64_t size() const = 0;
  /// Appends the same bytes each time, `size()` of them. Nothing may fail any more, nor be allocated.
  virtual void writeTo(FileOutput &file) const = 0;

protected:
  ~SavedText() = default;
};

/// Bytes on their way to an open file, which gets them in pieces.
class FileOutput {
public:
  explicit FileOutput(const SavedText &text)
      : m_text(text), m_capacity(static_cast<std::size_t>(std::min<std::uint64_t>(text.size(), kMostBuffered))),
        m_buffer(std::make_unique_for_overwrite<char[]>(m_capacity)) {}

  /// Writes all of the text and returns 0 or the host's error number. A text of another size than it says fails too:
  /// the room that was made for it is not the right one. `old` keeps what is overwritten, unless it is null. Throws
  /// std::bad_alloc where that needs memory and there is none.
  int write(int handle, OldBytes *old);

  void append(std::string_view text) {
    if (text.size() > m_capacity - m_used)
      return appendLong(text);
    if (!text.empty())
      std::memcpy(m_buffer.get() + m_used, text.data(), text.size());
    m_used += text.size();
  }

private:
  static constexpr std::size_t kMostBuffered = std::size_t{64} << 10;

  void appendLong(std::string_view text);
  void flush();

  const SavedText &m_text;
  std::size_t m_capacity;
  std::unique_ptr<char[]> m_buffer;
  std::size_t m_used = 0;
  std::uint64_t m_written = 0;
  int m_handle = -1;
  OldBytes *m_old = nullptr;
  int m_error = 0;
};

/// Writes the file; other saves and loads wait meanwhile. Returns 0 or the host's error number: EWOULDBLOCK if somebody
/// else keeps the file locked for longer than a second.
///
/// In place, the space is reserved before the first old byte is overwritten, and the file is cut to its new length
/// after the last byte is written. The old bytes are kept in memory until then; after a failure they are written back
/// as far as the disk allows. A failure that shows only when the file is closed is returned with the new text in the
/// file. A file that the failed call itself created is removed. Throws std::bad_alloc before the file is touched.
///
/// A replacing save is done in place, but still flushed to the disk, if a new file could not be the same as the old
/// one: if the old one has other hard links, an access list or attributes of its own, or an owner that cannot be given
/// to the new one, if its folder is not writable, or if it is not a regular file.
int SaveFile(const char *name, const SavedText &text);

} // namespace kestrune::platform
