#pragma once

#include <string_view>
#include <vector>

namespace kestrune::platform {

/// How the saves of this thread bring the new text into a file.
enum class SaveWay {
  kInPlace,   ///< over the old bytes: links, owner and mode stay
  kReplacing, ///< in a new file that takes the old one's place whole, and reaches the disk before that
};

/// Lets the saves of this thread go one way until its end.
class SaveWayScope {
public:
  explicit SaveWayScope(SaveWay way);
  SaveWayScope(const SaveWayScope &) = delete;
  SaveWayScope &operator=(const SaveWayScope &) = delete;
  ~SaveWayScope();

private:
  SaveWay m_old;
};

/// Writes the file, in whose way other saves and loads wait. Returns 0, or the host's error number: EWOULDBLOCK where
/// somebody else has it locked for longer than a second.
///
/// In place the room is reserved before the first old byte is overwritten, and the file is cut to its new length after
/// the last is written. The old bytes are kept in memory until then: after a failure they are written back, as far as
/// the disk takes them. A failure that only shows when the file is closed is returned with the new text in the file.
/// A file that the failed call itself made is removed. Throws std::bad_alloc before the file is touched.
///
/// The replacing way falls back on the one in place, but brings it to the disk all the same, where a new file could not
/// be the old one: it has further hard links, access lists or attributes of its own, or an owner that cannot be given;
/// its folder cannot be written to; it is not a regular file.
int SaveFile(const char *name, const std::vector<std::string_view> &blocks);

} // namespace kestrune::platform
