#include "kestrune/platform/made_folders.h"

#include "kestrune/platform/drives.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrune::platform {

MadeFolders::~MadeFolders() {
  for (; !m_paths.empty(); m_paths.pop_back())
    ::rmdir(m_paths.back().c_str());
}

void MadeFolders::make(const char *name) {
  std::string path;
  if (!ToHostPath(name, path))
    return;
  m_paths.push_back(std::move(path));
  if (::mkdir(m_paths.back().c_str(), 0777) != 0) {
    if (errno != EEXIST)
      m_error = errno;
    m_paths.pop_back();
  }
}

} // namespace kestrune::platform
