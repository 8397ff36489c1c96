#include "tests/test_support.h"

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What the host's calls below do for the library.
struct Host {
  const char *failing = ""; // the call that fails with `error`
  int error = EIO;
  bool diskIsFull = false;
  int syncs = 0;
  off_t reservedFrom = -1;
} host;

template <class Function>
Function *real(const char *name) {
  return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

bool fails(const char *call) {
  errno = host.error;
  return std::strcmp(host.failing, call) == 0;
}

} // namespace

extern "C" int posix_fallocate(int handle, off_t offset, off_t length) {
  host.reservedFrom = offset;
  const int result =
      real<decltype(posix_fallocate)>("posix_fallocate")(handle, offset, host.diskIsFull ? length / 2 : length);
  return host.diskIsFull ? ENOSPC : result;
}
extern "C" int close(int handle) {
  const int result = real<decltype(close)>("close")(handle);
  return fails("close") ? -1 : result;
}
extern "C" int fsync(int handle) {
  ++host.syncs;
  return fails("fsync") ? -1 : real<decltype(fsync)>("fsync")(handle);
}
extern "C" int fchmod(int handle, mode_t mode) noexcept {
  return fails("fchmod") ? -1 : real<decltype(fchmod)>("fchmod")(handle, mode);
}
extern "C" int ftruncate(int handle, off_t size) noexcept {
  return fails("ftruncate") ? -1 : real<decltype(ftruncate)>("ftruncate")(handle, size);
}
extern "C" int flock(int handle, int operation) noexcept {
  return fails("flock") ? -1 : real<decltype(flock)>("flock")(handle, operation);
}
extern "C" int rename(const char *from, const char *to) noexcept {
  return fails("rename") ? -1 : real<decltype(rename)>("rename")(from, to);
}

namespace {

namespace fs = std::filesystem;

class FileTest : public testing::Test {
protected:
  ~FileTest() override { host = {}; }

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

struct stat statusOf(const std::string &path) {
  struct stat status {};
  ::stat(path.c_str(), &status);
  return status;
}
mode_t modeOf(const std::string &path) { return statusOf(path).st_mode & 07777U; }

TEST_F(FileTest, TheReadOnlyAttributeBindsEverybody) {
  support::write(file, "old");
  support::write(folder / "source", "new");
  const CFilename name(file.c_str()), source((folder / "source").c_str());
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
  CString hard = (folder / "hard").c_str();
  EXPECT_NE(CFilename(file.c_str()).Rename(hard), 0U);
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
  EXPECT_TRUE(saved.starts_with("<?xml")) << saved;
  EXPECT_TRUE(saved.ends_with("</Root>\n")) << saved;
  EXPECT_EQ(save(file, std::string(3000, 'y')), 0);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 3); // no other file was made on the way
}

// A save that fails early: of an old file, of a new one, and through symbolic links to nothing.
TEST_F(FileTest, AFailedSaveLeavesWhatWasThere) {
  fs::create_directories(folder / "sub");
  fs::create_symlink("sub/../sub/target.xml", folder / "first");
  fs::create_symlink(folder / "first", folder / "second");
  const std::string target = folder / "sub/target.xml", old = "<Root>old</Root>", large(5000, 'n');
  support::write(file, old);
  host.diskIsFull = true;
  EXPECT_EQ(save(file, large), KRX_E_SAVE_FAILED);
  EXPECT_EQ(save(folder / "new.xml", large), KRX_E_SAVE_FAILED);
  EXPECT_EQ(save(folder / "second", large), KRX_E_SAVE_FAILED);
  host = {};
  EXPECT_EQ(support::read(file), old);
  EXPECT_FALSE(fs::exists(folder / "new.xml"));
  EXPECT_FALSE(fs::exists(target));
  EXPECT_TRUE(fs::is_symlink(folder / "second"));
  EXPECT_EQ(save(folder / "second", ""), 0);
  EXPECT_GT(support::read(target).size(), 100U);
  EXPECT_EQ(save("/dev/full", large), KRX_E_SAVE_FAILED);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  EXPECT_EQ(save("\\\\srv\\x.xml", large), KRX_E_SAVE_FAILED);
}

TEST_F(FileTest, RoomIsReservedForTheHolesOfTheOldFileToo) {
  for (const off_t oldSize : {100, 1000000}) {
    support::write(file, "");
    ASSERT_EQ(::truncate(file.c_str(), oldSize), 0);
    host = {};
    EXPECT_EQ(save(file, "new"), 0);
    EXPECT_EQ(host.reservedFrom, 0) << oldSize;
  }
}

TEST_F(FileTest, TheOldBytesAreWrittenBack) {
  const std::string old(5000, 'o');
  support::write(file, old);
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{100, limit.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(save(file, "new"), KRX_E_SAVE_FAILED);
  ::setrlimit(RLIMIT_FSIZE, &limit);
  host.failing = "ftruncate"; // after the new bytes have been written
  EXPECT_EQ(save(file, "new"), KRX_E_SAVE_FAILED);
  EXPECT_EQ(support::read(file), old);
}

TEST_F(FileTest, AFailureToCloseIsReported) {
  support::write(file, "old");
  host.failing = "close";
  EXPECT_EQ(save(file, "new"), KRX_E_SAVE_FAILED);
  EXPECT_EQ(save(folder / "made.xml", "new"), KRX_E_SAVE_FAILED);
  host = {};
  EXPECT_TRUE(support::read(file).ends_with("</Root>\n"));
  EXPECT_FALSE(fs::exists(folder / "made.xml"));
}

TEST_F(FileTest, FoldersThatAFailedSaveMadeGo) {
  const std::string there = folder / "there";
  fs::create_directory(there);
  const std::string tooLong = there + "/made/" + std::string(300, 'n') + ".xml";
  EXPECT_EQ(save(tooLong, "new"), KRX_E_SAVE_FAILED);
  host.diskIsFull = true;
  EXPECT_EQ(save(there + "/made/too/f.xml", "new"), KRX_E_SAVE_FAILED);
  host = {};
  EXPECT_TRUE(fs::is_empty(there));
}

/// A lock as another program would hold it.
class Locked : support::Unique {
public:
  Locked(const std::string &path, int operation) : m_handle(::open(path.c_str(), O_RDWR)) {
    EXPECT_EQ(::flock(m_handle, operation), 0);
  }
  ~Locked() { ::close(m_handle); }

private:
  int m_handle;
};

TEST_F(FileTest, LoadsAndSavesWaitForALock) {
  EXPECT_EQ(save(file, "old"), 0);
  const std::string old = support::read(file);
  CXMLTopLevelFolder document;
  document.PutTag(CString("Root"));
  {
    const Locked writer(file, LOCK_EX);
    EXPECT_EQ(save(file, "new"), KRX_E_SAVE_FAILED);
    EXPECT_EQ(document.LoadFromFile(file.c_str(), nullptr), 0);
  }
  {
    const Locked reader(file, LOCK_SH);
    EXPECT_EQ(save(file, "new"), KRX_E_SAVE_FAILED);
  }
  EXPECT_EQ(support::read(file), old);
  host.failing = "flock";
  host.error = ENOLCK;
  EXPECT_EQ(document.LoadFromFile(file.c_str(), nullptr), 0);
  EXPECT_EQ(save(file, "without locks"), 0);
}

/// Saves under another name than the one it is given, as a program's own class might.
struct Renaming : CXMLTopLevelFolder {
  long SaveToFile(const char *name, const char *base, bool overwrite) override {
    return CXMLTopLevelFolder::SaveToFile((std::string(name) + ".xml").c_str(), base, overwrite);
  }
};

class ReplacingSave : public FileTest {
protected:
  ReplacingSave() {
    support::write(file, "old");
    ::chmod(file.c_str(), 0640);
  }

  static long saveReplacing(const std::string &path) {
    CXMLTopLevelFolder document;
    document.PutTag(CString("Root"));
    return kestrune::SaveReplacing(document, path.c_str(), nullptr, true);
  }
  static bool isSaved(const std::string &path) { return support::read(path).ends_with("</Root>\n"); }
  std::ptrdiff_t countFiles() const { return std::distance(fs::directory_iterator(folder.path()), {}); }
};

TEST_F(ReplacingSave, PutsANewFileInTheOldOnesPlace) {
  fs::create_symlink("f.xml", folder / "link");
  const int held = ::open(file.c_str(), O_RDONLY); // its number is not used again
  EXPECT_EQ(::fchown(held, ::geteuid() == 0 ? 1234 : -1, -1), 0);
  const struct stat old = statusOf(file);
  EXPECT_EQ(save(file, "in place"), 0);
  EXPECT_EQ(host.syncs, 0);
  EXPECT_EQ(saveReplacing(folder / "link"), 0);
  EXPECT_EQ(host.syncs, 2) << "the file and its folder";
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_NE(statusOf(file).st_ino, old.st_ino);
  EXPECT_EQ(statusOf(file).st_uid, old.st_uid);
  EXPECT_EQ(modeOf(file), 0640U);
  EXPECT_TRUE(isSaved(file));
  EXPECT_EQ(saveReplacing(folder / "made.xml"), 0);
  EXPECT_TRUE(isSaved(folder / "made.xml"));
  Renaming renaming;
  renaming.PutTag(CString("Root"));
  EXPECT_EQ(kestrune::SaveReplacing(renaming, (folder / "own").c_str(), nullptr, true), 0);
  EXPECT_TRUE(isSaved(folder / "own.xml"));
  EXPECT_EQ(kestrune::SaveReplacing(renaming, (folder / "own").c_str(), nullptr, false), KRX_E_WRITE_PROTECTED);
  EXPECT_EQ(countFiles(), 4);
  host.failing = "fsync";
  EXPECT_EQ(saveReplacing(file), KRX_E_SAVE_FAILED);
  host.error = EINVAL; // it cannot be synchronised
  EXPECT_EQ(saveReplacing(file), 0);
  host = {};
  EXPECT_EQ(saveReplacing("/proc/none.xml"), KRX_E_SAVE_FAILED) << "nobody can make a file there";
  ::close(held);
}

TEST_F(ReplacingSave, FallsBackOnTheSaveInPlace) {
  const struct {
    const char *call;
    int error;
  } rows[] = {{"fchmod", EPERM}, {"rename", EACCES}, {"rename", EBUSY}};
  for (const auto &row : rows) {
    support::write(file, "old");
    const ino_t old = statusOf(file).st_ino;
    host.failing = row.call;
    host.error = row.error;
    EXPECT_EQ(saveReplacing(file), 0) << row.call;
    host = {};
    EXPECT_EQ(statusOf(file).st_ino, old) << row.call;
    EXPECT_TRUE(isSaved(file)) << row.call;
    EXPECT_EQ(countFiles(), 1) << row.call;
  }
  fs::create_hard_link(file, folder / "hard");
  support::write(file, "old");
  EXPECT_EQ(saveReplacing(file), 0);
  EXPECT_TRUE(isSaved(folder / "hard"));
}

} // namespace
