#pragma once

#include "tools/document.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class Command;

// The FILE arguments that commands share, and what they stand for.

/// The files that a command was given, and how they are meant.
struct FileOptions {
  std::vector<std::string> files;
  std::string inputName;    ///< What messages call the standard input.
  bool asInstalled = false; ///< Whether a path too means what programs get.
  bool evenInPart = false;  ///< Whether a file is welcome of which some records cannot be loaded.
};

/// Gives a command the option -D, and tells which macros it defined: their names, with both `$`.
std::shared_ptr<std::vector<std::string>> addMacros(Command &command);

/// Gives a command the argument FILE, or FILE..., and the options --name, --as-installed and -D. A command that writes
/// files takes each for itself, and no option --as-installed.
enum class FileUse { kRead, kReadMany, kWrite };
std::shared_ptr<FileOptions> addFiles(Command &command, FileUse use);

/// The files that programs read when they load the file of that name, as full paths in drive form, in the order of
/// reading. The first may not exist, and is empty if the name leads to nothing.
std::vector<CString> filesOf(const Kind &kind, const CString &name);

/// What a FILE stands for: that file and nothing else or, as installed, all files that take part when programs load it.
class Loaded {
public:
  /// An item of a collection, with the file that it comes from.
  struct Item {
    const Document *document = nullptr;
    Record record;
  };

  /// Reads the file or files. Throws CouldNotWork if one of them cannot be loaded whole.
  Loaded(const std::string &file, const FileOptions &options);
  Loaded(Loaded &&) noexcept;
  Loaded &operator=(Loaded &&) noexcept;
  ~Loaded();

  /// The first file: the one that was named or, as installed, the one that takes its place.
  const Document &main() const { return *m_parts.front(); }
  /// All files, in the order of reading.
  const std::vector<std::unique_ptr<Document>> &parts() const { return m_parts; }
  bool isAsInstalled() const { return m_merged != nullptr; }
  /// What programs get, as one document that lies in no file.
  std::unique_ptr<Document> merged() const;

  /// The items of a collection of the first file, those that programs get from the other files behind them.
  std::vector<Item> items(const Member &collection) const;
  /// The items of other files that programs do not get.
  std::vector<Item> dropped(const Member &collection) const;

private:
  void match(const Member &collection, std::vector<Item> *taken, std::vector<Item> *dropped) const;

  std::vector<std::unique_ptr<Document>> m_parts;
  std::unique_ptr<CXMLTopLevelFolder> m_merged; // what programs get
};

/// Lets a command work on each FILE in turn, and on the data files of each that is a folder. Reports those that cannot
/// be worked on and goes on. The answer to one is out before the next is read: that may be a pipe on which nothing
/// arrives yet. `work` is told whether there is only one file, and returns a status; the highest is returned.
int forEachFile(const FileOptions &options, const std::function<int(const std::string &file, bool isOnly)> &work);

/// The names of the files that took part: "A.xml, A-1.xml".
std::string partNames(const Loaded &loaded);

/// The first line of an answer about what programs get, with its end: "Files: A.xml, A-1.xml".
std::string filesLine(const std::vector<std::string> &files);
/// That line of what was loaded as programs get it; else nothing.
std::string filesLine(const Loaded &loaded);
