#include "tools/source.h"

#include "kestrune/platform/drives.h"
#include "tools/messages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class Opened {
public:
  explicit Opened(int descriptor) : m_descriptor(descriptor) {}
  Opened(const Opened &) = delete;
  Opened &operator=(const Opened &) = delete;
  ~Opened() {
    if (m_descriptor > STDERR_FILENO)
      close(m_descriptor);
  }
  int get() const { return m_descriptor; }

private:
  int m_descriptor;
};

[[noreturn]] void fail(const std::string &name, int reason) {
  throw CouldNotWork(name + ": " + std::generic_category().message(reason));
}

std::string readAll(const std::string &name, int descriptor) {
  std::string bytes;
  struct stat status {};
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
    bytes.reserve(static_cast<std::size_t>(status.st_size));
  if (S_ISDIR(status.st_mode))
    fail(name, EISDIR);
  std::array<char, std::size_t{1} << 16> piece{};
  while (true) {
    const ssize_t count = read(descriptor, piece.data(), piece.size());
    if (count > 0)
      bytes.append(piece.data(), static_cast<std::size_t>(count));
    else if (count == 0)
      return bytes;
    else if (errno != EINTR)
      fail(name, errno);
  }
}

bool isDataFile(const fs::path &path) {
  const CString extension(path.extension().c_str());
  return extension.CompareNoCase(".xml") == 0;
}

void addFilesOf(const std::string &folder, std::vector<std::string> &files) {
  const std::size_t before = files.size();
  std::error_code error;
  for (fs::recursive_directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    std::error_code ignored;
    if (isDataFile(at->path()) && at->is_regular_file(ignored))
      files.push_back(at->path());
  }
  if (error)
    fail(folder, error.value());
  if (files.size() == before)
    throw CouldNotWork(folder + ": no file in this folder ends in .xml");
  std::sort(files.begin() + static_cast<std::ptrdiff_t>(before), files.end());
}

} // namespace

std::string hostPath(const std::string &file) {
  if (file.empty())
    throw CouldNotWork("'': the name of a file is empty");
  struct stat status {};
  if (file.find('\0') != std::string::npos || lstat(file.c_str(), &status) == 0)
    return file;
  std::string found;
  return kestrune::platform::ToHostPath(file.c_str(), found) ? found : file;
}

Source readSource(const std::string &file, const std::string &inputName) {
  if (file == "-") {
    const std::string name = inputName.empty() ? "standard input" : inputName;
    return {name, {}, readAll(name, STDIN_FILENO)};
  }
  std::string path = hostPath(file);
  const Opened opened(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (opened.get() < 0)
    fail(file, errno);
  std::string bytes = readAll(file, opened.get());
  return {inputName.empty() ? file : inputName, std::move(path), std::move(bytes)};
}

std::vector<std::string> withoutFolders(const std::vector<std::string> &files) {
  std::vector<std::string> result;
  for (const std::string &file : files) {
    struct stat status {};
    const bool isFolder =
        !file.empty() && file != "-" && stat(hostPath(file).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    if (isFolder)
      addFilesOf(file, result);
    else
      result.push_back(file);
  }
  return result;
}
