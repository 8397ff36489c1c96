#pragma once

#include "tools/check/hits.h"

#include <memory>
#include <string>
#include <vector>

// Findings that have been looked at: the lines of the files .kestrune-check.

/// A line such as `KD404  Vorlan.xml  VorlanModels/8  # one way on purpose`.
struct KnownLine {
  std::size_t line;
  std::string text;
  std::string number;
  std::string file;
  std::string address;
  bool isUsed = false;
};

/// The file .kestrune-check in a folder.
struct KnownFile {
  std::string path;
  std::string folder;
  std::vector<KnownLine> lines;
};

class KnownFindings {
public:
  /// The file .kestrune-check beside `file`, or in the nearest folder above it; null if there is none. Throws
  /// CouldNotWork once for a file that cannot be read, or has a line that is none; then it has no lines.
  KnownFile *findFor(const CheckedFile &file);
  /// Whether a line of `known` is meant for a finding; remembers that the line was of use.
  static bool covers(KnownFile &known, const CheckedFile &file, const Hit &hit);
  const std::vector<std::unique_ptr<KnownFile>> &files() const { return m_files; }
  /// The lines that cover nothing, though all that they speak of was looked for in this run.
  std::vector<std::pair<const KnownFile *, const KnownLine *>> useless(const std::vector<Checked> &checked) const;

private:
  std::vector<std::unique_ptr<KnownFile>> m_files;
};

/// Adds a line for each finding to the file .kestrune-check that covers it, or to a new one beside it. Returns what was
/// done, in words. Throws CouldNotWork.
std::string writeBaseline(KnownFindings &known, std::vector<Checked> &checked);
