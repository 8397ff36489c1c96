#pragma once

#include <string_view>
#include <vector>

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
int SaveFile(const char *name, const std::vector<std::string_view> &blocks);

} // namespace kestrune::platform
