#pragma once

#include <string>
#include <vector>

namespace kestrune::platform {

/// The folders that one operation makes on its way. At the end they are removed, unless it says that they are to stay
/// or somebody has put something into them.
class MadeFolders {
public:
  MadeFolders() = default;
  MadeFolders(const MadeFolders &) = delete;
  MadeFolders &operator=(const MadeFolders &) = delete;
  ~MadeFolders();

  /// Makes one folder where there is none.
  void make(const char *name);
  void keep() { m_paths.clear(); }

private:
  std::vector<std::string> m_paths; // host paths: nothing is needed to remove them
};

} // namespace kestrune::platform
