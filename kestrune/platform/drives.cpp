#include "kestrune/platform/drives.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/code_page.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <limits.h>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

// The code below works on UTF-8, in which a separator byte is never part of another character.

namespace {

using Parts = std::vector<std::string>;

constexpr int kDriveC = 2;
constexpr int kDriveZ = 25;

bool sameButCase(char a, char b) { return kestrune::platform::AsciiLower(a) == kestrune::platform::AsciiLower(b); }

bool isSeparator(char c) { return c == '/' || c == '\\'; }

/// Two slashes at the start mean a network name.
bool isHostPath(std::string_view name) { return name.starts_with('/') && !name.starts_with("//"); }

/// Appends the components of `path` to `parts`. `..` removes the last one, if there is one.
void append(Parts &parts, std::string_view path, const char *separators) {
  while (!path.empty()) {
    const std::string_view part = path.substr(0, path.find_first_of(separators));
    path.remove_prefix(std::min(part.size() + 1, path.size()));
    if (part == "..") {
      if (!parts.empty())
        parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.emplace_back(part);
    }
  }
}

/// What the host returned, where a null means that it could not: but a lack of memory says nothing about the name.
template <class Result>
Result *orNoMemory(Result *result) {
  if (result == nullptr && errno == ENOMEM)
    throw std::bad_alloc();
  return result;
}

Parts hostParts(std::string_view path) {
  Parts parts;
  append(parts, path, "/");
  return parts;
}

std::string join(const Parts &parts, char separator) {
  std::string path;
  for (const std::string &part : parts)
    path += separator + part;
  return path;
}

bool beginsWith(const Parts &parts, const Parts &front) {
  return parts.size() >= front.size() && std::equal(front.begin(), front.end(), parts.begin());
}

/// The folders of the drives A to Z, each split into its components, as the environment defines them now.
class DriveMap {
public:
  DriveMap() {
    const char *const variable = std::getenv("KESTRUNE_DRIVES");
    std::string_view entries = variable != nullptr ? variable : "";
    m_folders[kDriveC] = m_folders[kDriveZ] = Parts();
    while (!entries.empty()) {
      const std::string_view entry = entries.substr(0, entries.find(';'));
      entries.remove_prefix(std::min(entry.size() + 1, entries.size()));
      const int drive = entry.empty() ? -1 : indexOf(entry[0]);
      if (drive >= 0 && drive != kDriveZ && entry.substr(1).starts_with("=/"))
        m_folders[static_cast<std::size_t>(drive)] = hostParts(entry.substr(2));
    }
  }

  /// 0 for A; -1 for a character that is not a letter.
  static int indexOf(char letter) {
    const char upper = kestrune::platform::AsciiUpper(letter);
    return upper >= 'A' && upper <= 'Z' ? upper - 'A' : -1;
  }

  /// The components of the drive's folder, or null if the drive is not mapped.
  const Parts *folder(int drive) const {
    const bool isMapped = drive >= 0 && drive < 26 && m_folders[static_cast<std::size_t>(drive)];
    return isMapped ? &*m_folders[static_cast<std::size_t>(drive)] : nullptr;
  }

private:
  std::array<std::optional<Parts>, 26> m_folders;
};

/// A mapped drive and the components below its folder.
struct Location {
  int drive = kDriveC;
  Parts parts;

  /// In drive form.
  std::string text() const {
    const std::string rest = join(parts, '\\');
    return static_cast<char>('A' + drive) + (rest.empty() ? std::string(":\\") : ":" + rest);
  }
};

/// The location on the mapped drive whose folder is the longest prefix of `path`. With `followLinks` the real path of a
/// drive's folder counts too, as the host reports the current directory by its real path.
Location locate(const DriveMap &drives, const Parts &path, bool followLinks) {
  Location best;
  std::size_t longest = 0;
  bool found = false;
  const auto offer = [&](int drive, const Parts &folder) {
    if (!beginsWith(path, folder) || (found && folder.size() <= longest))
      return;
    found = true;
    longest = folder.size();
    best.drive = drive;
  };
  const auto offerDrive = [&](int drive) {
    const Parts *folder = drives.folder(drive);
    if (folder == nullptr)
      return;
    offer(drive, *folder);
    if (!followLinks || folder->empty())
      return;
    const std::unique_ptr<char, decltype(&std::free)> real(orNoMemory(::realpath(join(*folder, '/').c_str(), nullptr)),
                                                           std::free);
    if (real != nullptr)
      offer(drive, hostParts(real.get()));
  };
  offerDrive(kDriveC);
  for (int drive = 0; drive <= kDriveZ; ++drive)
    offerDrive(drive);
  best.parts.assign(path.begin() + static_cast<std::ptrdiff_t>(longest), path.end());
  return best;
}

/// Nothing if the current directory no longer exists.
std::optional<Location> currentLocation(const DriveMap &drives = {}) {
  const std::unique_ptr<char, decltype(&std::free)> path(orNoMemory(::getcwd(nullptr, 0)), std::free);
  if (path == nullptr || *path != '/')
    return std::nullopt;
  return locate(drives, hostParts(path.get()), true);
}

/// The location of a name, or nothing if it has none on the host.
std::optional<Location> locateName(const DriveMap &drives, std::string_view name) {
  if (isHostPath(name)) {
    Parts parts;
    append(parts, name, "/\\");
    return locate(drives, parts, false);
  }
  if (name.empty() || (name.size() > 1 && isSeparator(name[0]) && isSeparator(name[1])))
    return std::nullopt;
  std::optional<Location> place;
  if (name.size() > 1 && name[1] == ':') {
    const int drive = DriveMap::indexOf(name[0]);
    if (drives.folder(drive) == nullptr)
      return std::nullopt;
    name.remove_prefix(2);
    place = name.empty() || !isSeparator(name[0]) ? currentLocation(drives) : std::nullopt;
    // The current directory of any other drive is its root.
    if (!place || place->drive != drive)
      place = Location{drive, {}};
  } else {
    place = currentLocation(drives);
    if (!place)
      return std::nullopt;
    if (isSeparator(name[0]))
      place->parts.clear();
  }
  append(place->parts, name, "/\\");
  return place;
}

/// With `status` a symbolic link counts for what it leads to.
bool isThere(const std::string &path, struct stat *status = nullptr) {
  struct stat own {};
  return (status != nullptr ? ::stat(path.c_str(), status) : ::lstat(path.c_str(), &own)) == 0;
}

/// Unless `folder` has an entry `name`, gives `name` the case of the entry that differs only in it. Of several that is
/// the first in byte order, so that the result does not depend on the order of the directory. False if the folder
/// cannot be read.
bool matchCase(const std::string &folder, std::string &name) {
  const auto close = [](DIR *directory) { ::closedir(directory); };
  const std::unique_ptr<DIR, decltype(close)> directory(orNoMemory(::opendir(folder.empty() ? "/" : folder.c_str())),
                                                        close);
  if (directory == nullptr)
    return false;
  std::string found;
  while (const dirent *entry = ::readdir(directory.get())) {
    const std::string_view candidate = entry->d_name;
    if (candidate == name)
      return true;
    if (std::equal(candidate.begin(), candidate.end(), name.begin(), name.end(), sameButCase) &&
        (found.empty() || candidate < found))
      found = candidate;
  }
  if (!found.empty())
    name = std::move(found);
  return true;
}

/// The path of `parts`, which are not below `folder` as they stand. There is at least one.
std::string search(const Parts &folder, const Parts &parts) {
  std::string path = join(folder, '/');
  // Mostly the last component alone is missing: then its folder answers at once.
  const std::string parent = path + join({parts.begin(), parts.end() - 1}, '/');
  if (std::string name = parts.back(); matchCase(parent, name))
    return parent + '/' + name;
  bool exists = true;
  for (const std::string &part : parts) {
    std::string name = part;
    if (exists && !isThere(path + '/' + part))
      exists = matchCase(path, name) && name != part;
    path += '/' + name;
  }
  return path;
}

} // namespace

namespace kestrune::platform {

CString ToDrivePath(const char *name) {
  std::string utf8;
  if (name == nullptr || !isHostPath(name) || !TextToUtf8(name, utf8))
    return name;
  Parts parts;
  append(parts, utf8, "/\\");
  const Location place = locate({}, parts, false);
  std::string path = place.text();
  if (isSeparator(utf8.back()) && path.back() != '\\')
    path += '\\';
  return Utf8ToText(path).c_str();
}

bool IsRelativeHostName(const char *name) {
  if (name == nullptr || name[0] == '\0' || name[0] == '/' || name[1] == ':')
    return false;
  bool hasSlash = false;
  for (const char *p = name; *p != '\0'; p = CharNextA(p)) {
    if (*p == '\\' || *p == '$')
      return false;
    hasSlash = hasSlash || *p == '/';
  }
  return hasSlash;
}

bool ToHostPath(const char *name, std::string &hostPath, struct stat *status) {
  std::string utf8;
  if (name == nullptr || !TextToUtf8(name, utf8))
    return false;
  const DriveMap drives;
  const std::optional<Location> place = locateName(drives, utf8);
  if (!place)
    return false;
  const Parts &folder = *drives.folder(place->drive);
  hostPath = join(folder, '/') + join(place->parts, '/');
  if (hostPath.empty())
    hostPath = "/";
  bool found = isThere(hostPath, status);
  if (!found && !place->parts.empty()) {
    std::string other = search(folder, place->parts);
    found = status != nullptr && other != hostPath && isThere(other, status);
    hostPath = std::move(other);
  }
  // Only a directory may be named with a trailing separator: keep it, so that the host checks this.
  if (isSeparator(utf8.back()) && !place->parts.empty())
    hostPath += '/';
  return status == nullptr || (found && (S_ISDIR(status->st_mode) || !isSeparator(utf8.back())));
}

} // namespace kestrune::platform

int _getdrive() {
  const std::optional<Location> current = currentLocation();
  return (current ? current->drive : kDriveC) + 1;
}

char *_getdcwd(int drive, char *buffer, int size) {
  if (drive < 0 || drive > kDriveZ + 1 || buffer == nullptr)
    return nullptr;
  std::optional<Location> place = currentLocation();
  if (drive != 0 && (!place || place->drive != drive - 1))
    place = Location{drive - 1, {}};
  if (!place)
    return nullptr;
  const std::string path = kestrune::platform::Utf8ToText(place->text());
  if (size < 0 || path.size() >= static_cast<std::size_t>(size))
    return nullptr;
  std::memcpy(buffer, path.c_str(), path.size() + 1);
  return buffer;
}

DWORD GetCurrentDirectoryA(DWORD size, char *buffer) {
  const std::optional<Location> place = currentLocation();
  if (!place)
    return 0;
  const std::string path = kestrune::platform::Utf8ToText(place->text());
  if (path.size() >= size || buffer == nullptr)
    return static_cast<DWORD>(path.size() + 1);
  std::memcpy(buffer, path.c_str(), path.size() + 1);
  return static_cast<DWORD>(path.size());
}
