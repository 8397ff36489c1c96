#pragma once

#include <string>
#include <vector>

namespace kestrune::platform {

/// The folders that one operation creates. The destructor removes them, unless `keep` was called or somebody has put
/// something into them.
class MadeFolders {
public:
  MadeFolders() = default;
  MadeFolders(const MadeFolders &) = delete;
  MadeFolders &operator=(const MadeFolders &) = delete;
  ~MadeFolders();

  /// Creates one folder if it does not exist.
  void make(const char *name);
  void keep() { m_paths.clear(); }

private:
  std::vector<std::string> m_paths; // host paths, so that removing them needs no memory
};

} // namespace kestrune::platform
