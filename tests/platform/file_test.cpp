#include "tests/failing_allocations.h"
#include "tests/test_support.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace {

/// What the host's calls below do for the library.
struct Faults {
  const char *call = ""; // fails with `error`
  int number = 0;        // ... this one of them; 0: each
  int error = EIO;
  int count = 0;             // of these calls
  bool noRoom = false;       // the reservation ends half-way: the disk is full
  bool writeFalters = false; // a few bytes at a time, and a signal between them
  int writes = 0;
  off_t reservedFrom = -1;
} faults;

template <class Function>
Function *next(const char *name) {
  return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

bool fails(const char *call) {
  if (std::strcmp(faults.call, call) != 0)
    return false;
  ++faults.count;
  errno = faults.error;
  return faults.number == 0 || faults.number == faults.count;
}

template <class Function, class... Arguments>
auto hosted(const char *call, Arguments... arguments) {
  return fails(call) ? -1 : next<Function>(call)(arguments...);
}

} // namespace

extern "C" int posix_fallocate(int handle, off_t offset, off_t length) {
  faults.reservedFrom = offset;
  const int result =
      next<decltype(posix_fallocate)>("posix_fallocate")(handle, offset, faults.noRoom ? length / 2 : length);
  return faults.noRoom ? ENOSPC : fails("posix_fallocate") ? faults.error : result;
}
extern "C" ssize_t write(int handle, const void *bytes, size_t size) {
  if (++faults.writes % 2 == 0 && faults.writeFalters) {
    errno = EINTR;
    return -1;
  }
  return hosted<decltype(write)>("write", handle, bytes, faults.writeFalters ? std::min<size_t>(size, 7) : size);
}
extern "C" int open(const char *path, int flags, ...) {
  va_list list;
  va_start(list, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(list, mode_t) : 0;
  va_end(list);
  return fails("open") ? -1 : next<decltype(open)>("open")(path, flags, mode);
}
extern "C" int close(int handle) {
  const int result = next<decltype(close)>("close")(handle);
  return fails("close") ? -1 : result;
}
extern "C" ssize_t read(int handle, void *bytes, size_t size) {
  return hosted<decltype(read)>("read", handle, bytes, size);
}
extern "C" ssize_t pread(int handle, void *bytes, size_t size, off_t offset) {
  return hosted<decltype(pread)>("pread", handle, bytes, size, offset);
}
extern "C" int ftruncate(int handle, off_t size) noexcept {
  return hosted<decltype(ftruncate)>("ftruncate", handle, size);
}
extern "C" int fsync(int handle) { return hosted<decltype(fsync)>("fsync", handle); }
extern "C" int fchmod(int handle, mode_t mode) noexcept { return hosted<decltype(fchmod)>("fchmod", handle, mode); }
extern "C" int flock(int handle, int operation) noexcept { return hosted<decltype(flock)>("flock", handle, operation); }
extern "C" int rename(const char *from, const char *to) noexcept {
  return hosted<decltype(rename)>("rename", from, to);
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
  EXPECT_GT(faults.writes, 20);
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
      {"write error", [] { faults.call = "write"; }},
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

// Each call that a save in place makes fails once, the first, the second and so on, over old files of every length.
TEST_F(FileTest, AFailureOnTheWayBringsTheOldBytesBack) {
  const std::string text(200000, 'n');
  EXPECT_EQ(save(file, text), 0);
  const std::size_t size = support::read(file).size();
  const struct {
    const char *call;
    std::size_t oldSize;
    int failures;
  } rows[] = {
      {"pread", 100, 1},           {"pread", size, 1},           {"pread", 2 * size, 1},
      {"posix_fallocate", 100, 1}, {"posix_fallocate", size, 1}, {"posix_fallocate", 2 * size, 1},
      {"write", 100, 4},           {"write", size, 4},           {"write", 2 * size, 4},
      {"ftruncate", 2 * size, 1},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.call + std::string(" over ") + std::to_string(row.oldSize) + " bytes");
    const std::string old(row.oldSize, 'o');
    int number = 0;
    for (long result = KRX_E_SAVE_FAILED; result != 0 && number < 10;) {
      support::write(file, old);
      faults.call = row.call;
      faults.number = ++number;
      result = save(file, text);
      faults = {};
      EXPECT_TRUE(result == 0 ? support::read(file).size() == size : support::read(file) == old) << number;
    }
    EXPECT_EQ(number - 1, row.failures);
  }
}

TEST_F(FileTest, RoomIsReservedForTheHolesOfTheOldFileToo) {
  for (const off_t oldSize : {100, 1000000}) {
    support::write(file, "");
    ASSERT_EQ(::truncate(file.c_str(), oldSize), 0);
    faults = {};
    EXPECT_EQ(save(file, "new"), 0);
    EXPECT_EQ(faults.reservedFrom, 0) << oldSize;
  }
}

TEST_F(FileTest, AFailureToCloseIsReported) {
  support::write(file, "old");
  faults.call = "close";
  EXPECT_EQ(save(file, "new"), KRX_E_SAVE_FAILED);
  EXPECT_EQ(save(folder / "made.xml", "new"), KRX_E_SAVE_FAILED);
  faults = {};
  EXPECT_TRUE(support::read(file).ends_with("</Root>\n"));
  EXPECT_FALSE(fs::exists(folder / "made.xml"));
}

TEST_F(FileTest, TooLittleMemoryLeavesTheFileAndNothingElse) {
  const std::string made = folder / "a folder/" + std::string(100, 'n') + ".xml";
  CXMLTopLevelFolder document;
  document.PutTag(CString("Root"));
  support::failEachAllocation([&] { document.SaveToFile(made.c_str(), nullptr, true); },
                              [&] { EXPECT_FALSE(fs::exists(folder / "a folder")); });
  EXPECT_TRUE(fs::exists(made));
  const auto expectOld = [&] {
    EXPECT_EQ(support::read(file), "old");
    EXPECT_NE(document.GetModified(), 0);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 2);
  };
  support::write(file, "old");
  document.Contents.FileDescription = "new";
  support::failEachAllocation([&] { document.SaveToFile(file.c_str(), nullptr, true); }, expectOld);
  support::write(file, "old");
  document.Contents.FileDescription = "newer";
  support::failEachAllocation([&] { kestrune::SaveReplacing(document, file.c_str(), nullptr, true); }, expectOld);
  EXPECT_NE(support::read(file), "old");
  const std::string copy = folder / "copy", text = support::read(file);
  support::write(copy, "old");
  support::failEachAllocation([&] { CFilename(file.c_str()).CopyFileA(copy.c_str()); },
                              [&] { EXPECT_TRUE(support::read(copy) == "old" || support::read(copy) == text); });
}

TEST_F(FileTest, FoldersThatAFailedSaveMadeGo) {
  const std::string there = folder / "there";
  fs::create_directory(there);
  const std::string tooLong = there + "/made/" + std::string(300, 'n') + ".xml";
  EXPECT_EQ(save(tooLong, "new"), KRX_E_SAVE_FAILED);
  faults.call = "write";
  EXPECT_EQ(save(there + "/made/too/f.xml", "new"), KRX_E_SAVE_FAILED);
  EXPECT_EQ(save(there + "/f.xml", "new"), KRX_E_SAVE_FAILED);
  faults = {};
  EXPECT_TRUE(fs::is_empty(there));
}

TEST_F(FileTest, ACopyOfWhatCannotBeReadLeavesTheTarget) {
  support::write(file, "source");
  support::write(folder / "target", "old");
  const CFilename source(file.c_str());
  faults.call = "read";
  EXPECT_EQ(source.CopyFileA((folder / "target").c_str()), 5);
  EXPECT_EQ(source.CopyFileA((folder / "made").c_str()), 5);
  faults = {};
  EXPECT_EQ(support::read(folder / "target"), "old");
  EXPECT_FALSE(fs::exists(folder / "made"));
  support::write(file, std::string(20000, 's'));
  faults.call = "read";
  faults.number = 2;
  EXPECT_EQ(source.CopyFileA((folder / "target").c_str()), 5);
  EXPECT_FALSE(fs::exists(folder / "target"));
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
  faults.call = "flock";
  faults.error = ENOLCK;
  EXPECT_EQ(document.LoadFromFile(file.c_str(), nullptr), 0);
  EXPECT_EQ(save(file, "without locks"), 0);
}

TEST_F(FileTest, ASaveThatHasWaitedWritesTheFileThatIsThereThen) {
  support::write(file, "old");
  support::write(folder / "other", "other");
  std::optional<Locked> other(std::in_place, file, LOCK_EX);
  std::thread thread([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    fs::rename(folder / "other", file);
    other.reset();
  });
  EXPECT_EQ(save(file, "new"), 0);
  thread.join();
  EXPECT_TRUE(support::read(file).ends_with("</Root>\n"));
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
  faults.call = "fsync";
  faults.number = -1;
  EXPECT_EQ(save(file, "in place"), 0);
  EXPECT_EQ(faults.count, 0);
  EXPECT_EQ(saveReplacing(folder / "link"), 0);
  EXPECT_EQ(faults.count, 2) << "the file and its folder";
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_NE(statusOf(file).st_ino, old.st_ino);
  EXPECT_EQ(statusOf(file).st_uid, old.st_uid);
  EXPECT_EQ(modeOf(file), 0640U);
  EXPECT_TRUE(isSaved(file));
  fs::create_symlink("made.xml", folder / "dangling");
  EXPECT_EQ(saveReplacing(folder / "dangling"), 0);
  EXPECT_TRUE(isSaved(folder / "made.xml"));
  support::write(folder / "plain", "");
  EXPECT_EQ(modeOf(folder / "made.xml"), modeOf(folder / "plain"));
  Renaming renaming;
  renaming.PutTag(CString("Root"));
  EXPECT_EQ(kestrune::SaveReplacing(renaming, (folder / "own").c_str(), nullptr, true), 0);
  EXPECT_TRUE(isSaved(folder / "own.xml"));
  EXPECT_EQ(kestrune::SaveReplacing(renaming, (folder / "own").c_str(), nullptr, false), KRX_E_WRITE_PROTECTED);
  EXPECT_EQ(countFiles(), 6);
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
    faults.call = row.call;
    faults.error = row.error;
    EXPECT_EQ(saveReplacing(file), 0) << row.call;
    faults = {};
    EXPECT_EQ(statusOf(file).st_ino, old) << row.call;
    EXPECT_TRUE(isSaved(file)) << row.call;
    EXPECT_EQ(countFiles(), 1) << row.call;
  }
  if (::setxattr(file.c_str(), "user.kestrune", "", 0, 0) == 0) { // where the host has such attributes
    const ino_t old = statusOf(file).st_ino;
    EXPECT_EQ(saveReplacing(file), 0);
    EXPECT_EQ(statusOf(file).st_ino, old);
    ::removexattr(file.c_str(), "user.kestrune");
  }
  fs::create_hard_link(file, folder / "hard");
  support::write(file, "old");
  EXPECT_EQ(saveReplacing(file), 0);
  EXPECT_TRUE(isSaved(folder / "hard"));
  EXPECT_EQ(saveReplacing("/dev/full"), KRX_E_SAVE_FAILED);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(ReplacingSave, LeavesTheOldFileAfterAnyFailure) {
  for (const char *call : {"posix_fallocate", "write", "fsync", "close", "rename"}) {
    faults.call = call;
    faults.number = 1;
    EXPECT_EQ(saveReplacing(file), KRX_E_SAVE_FAILED) << call;
    faults = {};
    EXPECT_EQ(support::read(file), "old") << call;
    EXPECT_EQ(countFiles(), 1) << call;
  }
  ::chmod(file.c_str(), 0444);
  EXPECT_EQ(saveReplacing(file), KRX_E_SAVE_FAILED);
  EXPECT_EQ(modeOf(file), 0444U);
}

TEST_F(FileTest, ASignalDoesNotEndALoad) {
  EXPECT_EQ(save(file, "text"), 0);
  for (const char *call : {"open", "read"}) {
    faults = {};
    faults.call = call;
    faults.number = 1;
    faults.error = EINTR;
    CXMLTopLevelFolder document;
    document.PutTag(CString("Root"));
    EXPECT_EQ(document.LoadFromFile(file.c_str(), nullptr), 0) << call;
    EXPECT_GT(faults.count, 1) << call;
  }
}

} // namespace
