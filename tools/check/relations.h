#pragma once

#include "tools/check/facts.h"

#include <string>
#include <utility>
#include <vector>

/// The files of a run, as they belong together.
class FileSet {
public:
  explicit FileSet(std::vector<Checked> &files) : m_files(files) {}

  std::vector<Checked> &all() const { return m_files; }
  /// Whether there are relations between files at all.
  bool isSeveral() const { return m_files.size() > 1; }
  /// The files of a kind that belong to `file`: those in its folder, or all of them if there are none and these lie in
  /// one folder. None for a lone file.
  std::vector<Checked *> related(const CheckedFile &file, std::string_view root) const;
  /// The chip data that belongs together, the main file first, followed by its add-ons in the order of their numbers.
  std::vector<Checked *> chipData(const CheckedFile &main) const;
  /// The main file of an add-on, if it was given.
  Checked *mainOf(const CheckedFile &addOn) const;
  /// Whether a file is an add-on of a file that was given or lies beside it.
  bool isAddOn(const CheckedFile &file) const {
    return file.addOnNumber() > 0 && (mainOf(file) != nullptr || isBeside(file, file.addOnOf()));
  }
  /// Whether a file of that name lies beside `file`, given or not.
  bool isBeside(const CheckedFile &file, const std::string &name) const;

private:
  std::vector<Checked> &m_files;
};

/// Whether a file is the user's own list of transceivers, by its name.
bool isUserFile(const CheckedFile &file);

/// "line 12" for a place in the same file, "StdXcvr.xml:12" for one in another.
std::string placeIn(const CheckedFile &from, const CheckedFile &file, std::size_t offset);

void judgeModels(FileSet &files);     // 401, 405 to 407, 410, 411
void judgeLinks(FileSet &files);      // 402 to 404
void judgeNumbers(FileSet &files);    // 408
void judgeUserFile(FileSet &files);   // 409
void judgeReferences(FileSet &files); // 412 to 414
