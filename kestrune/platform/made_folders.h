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
  /// Why the last one that could not be created could not; 0 if there is none.
  int error() const { return m_error; }

private:
  std::vector<std::string> m_paths; // host paths, so that removing them needs no memory
  int m_error = 0;
};

} // namespace kestrune::platform
