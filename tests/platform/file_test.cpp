#include "tests/test_support.h"

#include <cerrno>
#include <dlfcn.h>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What the host's calls below do for the library.
struct Faults {
  bool noRoom = false;       // the reservation ends half-way: the disk is full
  bool writeFails = false;   // no byte is written
  bool writeFalters = false; // a few bytes at a time, and a signal between them
  int calls = 0;
} faults;

template <class Function>
Function *next(const char *name) {
  return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" int posix_fallocate(int handle, off_t offset, off_t length) {
  if (!faults.noRoom)
    return next<decltype(posix_fallocate)>("posix_fallocate")(handle, offset, length);
  return ::ftruncate(handle, offset + length / 2) == 0 ? ENOSPC : EIO;
}

extern "C" ssize_t write(int handle, const void *bytes, size_t size) {
  ++faults.calls;
  if (faults.writeFails || (faults.writeFalters && faults.calls % 2 == 0)) {
    errno = faults.writeFails ? EIO : EINTR;
    return -1;
  }
  return next<decltype(write)>("write")(handle, bytes, faults.writeFalters ? std::min<size_t>(size, 7) : size);
}

namespace {

namespace fs = std::filesystem;

class FileTest : public testing::Test {
protected:
  ~FileTest() override { faults = {}; }

  /// Saves a document of some 300 bytes and `description`.
  long save(const std::string &path, const std::string &description) const {
    CXMLTopLevelFolder document;
    document.PutTag(CString("Root"));
    document.Contents.FileDescription = description.c_str();
    return document.SaveToFile(path.c_str(), nullptr, true);
  }

  support::TempFolder folder;
  const std::string file = folder / "f.xml";
  const support::Com com;
};

class SizeLimit : support::Unique {
public:
  explicit SizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &m_old);
    const rlimit limit{bytes, m_old.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_old); }

private:
  rlimit m_old{};
};

mode_t modeOf(const std::string &path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

TEST_F(FileTest, TheReadOnlyAttributeBindsEverybody) {
  support::write(file, "old");
  support::write(folder / "source", "new");
  const CFilename name(file.c_str()), source((folder / "source").c_str());
  ::chmod(file.c_str(), 0666);
  EXPECT_EQ(name.SetReadOnly(0), 1);
  EXPECT_EQ(modeOf(file), 0666U);
  EXPECT_EQ(name.SetReadOnly(1), 1);
  EXPECT_EQ(modeOf(file), 0444U);
  EXPECT_EQ(name.ReadOnly(), 1);
  EXPECT_EQ(save(file, "new"), KRX_E_SAVE_FAILED);
  EXPECT_EQ(source.CopyFileA(name), 3);
  EXPECT_EQ(support::read(file), "old");
  EXPECT_EQ(name.SetReadOnly(0), 1);
  EXPECT_EQ(modeOf(file), 0644U);
  ::chmod(file.c_str(), 0464); // any write bit will do
  EXPECT_EQ(name.ReadOnly(), 0);
  EXPECT_EQ(name.SetReadOnly(0), 1);
  EXPECT_EQ(modeOf(file), 0464U);
  ::chmod(file.c_str(), 0600);
  EXPECT_EQ(source.CopyFileA(name), 0);
  EXPECT_EQ(support::read(file), "new");
}

TEST_F(FileTest, ACopyOntoTheFileItselfHarmsNothing) {
  support::write(file, "precious");
  fs::create_symlink("f.xml", folder / "link");
  fs::create_hard_link(file, folder / "hard");
  for (const char *other : {"f.xml", "F.XML", "link", "hard", "./f.xml"}) {
    EXPECT_EQ(CFilename(file.c_str()).CopyFileA((folder / other).c_str()), 3) << other;
    EXPECT_EQ(CFilename((folder / other).c_str()).CopyFileA(file.c_str()), 3) << other;
    EXPECT_EQ(support::read(file), "precious") << other;
  }
  EXPECT_EQ(CFilename(folder.path().c_str()).CopyFileA((folder / "d").c_str()), 2);
  EXPECT_EQ(CFilename(file.c_str()).CopyFileA(folder.path().c_str()), 3);
  CFilename name(file.c_str());
  CString hard = (folder / "hard").c_str(), link = (folder / "link").c_str();
  EXPECT_NE(name.Rename(hard), 0U);
  EXPECT_NE(name.Rename(link), 0U);
  EXPECT_TRUE(fs::exists(file) && fs::is_symlink(folder / "link"));
}

TEST_F(FileTest, ASaveKeepsTheFileItself) {
  support::write(folder / "real.xml", std::string(5000, 'x'));
  ::chmod((folder / "real.xml").c_str(), 0620);
  fs::create_symlink("real.xml", file);
  fs::create_hard_link(folder / "real.xml", folder / "hard.xml");
  EXPECT_EQ(save(file, "short"), 0);
  EXPECT_TRUE(fs::is_symlink(file));
  EXPECT_EQ(modeOf(file), 0620U);
  const std::string saved = support::read(folder / "hard.xml");
  EXPECT_TRUE(saved.starts_with("<?xml") && saved.ends_with("</Root>\n") && saved.size() < 1000) << saved;
  EXPECT_EQ(save(file, std::string(3000, 'y')), 0);
  faults.writeFalters = true;
  EXPECT_EQ(save(folder / "slow.xml", "short"), 0);
  EXPECT_GT(faults.calls, 20);
  EXPECT_EQ(support::read(folder / "slow.xml").size(), saved.size());
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 4); // no other file was made on the way
}

// Each place where a save may end early, for an old file, a new one, and one behind symbolic links to nothing.
TEST_F(FileTest, AFailedSaveLeavesWhatWasThere) {
  fs::create_directories(folder / "sub");
  fs::create_symlink("sub/../sub/target.xml", folder / "first");
  fs::create_symlink(folder / "first", folder / "second");
  const std::string target = folder / "sub/target.xml", old = "<Root>old</Root>", large(5000, 'n');
  std::optional<SizeLimit> limit;
  const std::pair<const char *, std::function<void()>> ways[] = {
      {"disk full", [] { faults.noRoom = true; }},
      {"write error", [] { faults.writeFails = true; }},
      {"size limit", [&] { limit.emplace(1000); }},
  };
  for (const auto &[way, arm] : ways) {
    SCOPED_TRACE(way);
    support::write(file, old);
    arm();
    EXPECT_EQ(save(file, large), KRX_E_SAVE_FAILED);
    EXPECT_EQ(save(folder / "new.xml", large), KRX_E_SAVE_FAILED);
    EXPECT_EQ(save(folder / "second", large), KRX_E_SAVE_FAILED);
    limit.reset();
    faults = {};
    EXPECT_TRUE(support::read(file) == old);
    EXPECT_FALSE(fs::exists(folder / "new.xml"));
    EXPECT_FALSE(fs::exists(target));
    EXPECT_TRUE(fs::is_symlink(folder / "first") && fs::is_symlink(folder / "second"));
  }
  EXPECT_EQ(CFilename((folder / "second").c_str()).FileExists(), 0);
  EXPECT_EQ(save(folder / "second", ""), 0);
  EXPECT_GT(support::read(target).size(), 100U);

  limit.emplace(1000);
  EXPECT_EQ(save(file, ""), 0); // what fits under the limit is written
  support::write(folder / "source", std::string(900, 's'));
  EXPECT_EQ(CFilename((folder / "source").c_str()).CopyFileA((folder / "copy").c_str()), 0);
  limit.reset();
  limit.emplace(800);
  EXPECT_EQ(CFilename((folder / "source").c_str()).CopyFileA((folder / "copy").c_str()), 5);
  limit.reset();
  EXPECT_FALSE(fs::exists(folder / "copy"));

  EXPECT_EQ(save("/dev/full", large), KRX_E_SAVE_FAILED);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  EXPECT_EQ(save(folder.path(), large), KRX_E_SAVE_FAILED);
  fs::create_symlink("loop", folder / "loop");
  EXPECT_EQ(save(folder / "loop", large), KRX_E_SAVE_FAILED);
  EXPECT_EQ(save("\\\\srv\\x.xml", large), KRX_E_SAVE_FAILED);
}

} // namespace
