#pragma once

#include "tools/check/checked_file.h"
#include "tools/findings.h"

#include <bitset>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// A change of the bytes of a file that mends a finding.
struct Edit {
  std::size_t offset;
  std::size_t length;
  std::string text;
};

/// A finding in a file.
struct Hit {
  int number;
  std::size_t offset = 0;
  Position place; ///< Instead of the offset, where the line is not 0.
  std::string message;
  CheckedFile::Index record = CheckedFile::kNone;
  std::vector<Edit> edits; ///< What mends it, where that has one answer.
};

/// Which findings are looked for at all.
struct Selection {
  Level least = Level::kWarning;
  std::vector<std::string> only; ///< "KD3", "KD408": what a name begins with.
  std::vector<std::string> ignore;

  bool wants(int number) const;
};

/// The findings of a file. Of one number so many are kept that no file can fill the memory.
class Hits {
public:
  static constexpr std::size_t kMost = 100000;
  /// Whether a hit is to be passed over, as one that has been looked at.
  using IsKnown = std::function<bool(const Hit &)>;

  Hits(const CheckedFile &file, const Selection &selection);

  bool wants(int number) const { return m_wanted.test(static_cast<std::size_t>(number)); }
  void add(Hit hit);
  void add(int number, std::size_t offset, std::string message, CheckedFile::Index record = CheckedFile::kNone) {
    add(Hit{number, offset, {}, std::move(message), record, {}});
  }
  /// Whether no more of a number are kept; then it has been counted.
  bool onlyCounts(int number);
  void setKnown(IsKnown isKnown) { m_isKnown = std::move(isKnown); }

  /// All that were kept, in the order of the file.
  const std::vector<Hit> &sorted();
  /// How many there are of each number, with those that were not kept.
  const std::map<int, std::size_t> &counts() const { return m_counts; }

private:
  const CheckedFile &m_file;
  std::bitset<1000> m_wanted; // by number
  IsKnown m_isKnown;
  std::vector<Hit> m_hits;
  std::map<int, std::size_t> m_counts;
};

/// A file with its findings.
struct Checked {
  std::unique_ptr<CheckedFile> file;
  std::unique_ptr<Hits> hits;
};

// The families. Each judges one file; what stands twice in it, or is missing, is no reason for further findings.

void judgeForm(const CheckedFile &file, Hits &hits);   // 101 to 107
void judgeStructure(CheckedFile &file, Hits &hits);    // 201 to 212
void judgeValues(const CheckedFile &file, Hits &hits); // 301 to 309
void judgeRanges(const CheckedFile &file, Hits &hits); // 501 to 509
/// 401 to 414: within each file and, if there are several, between them.
void judgeRelations(std::vector<Checked> &files);
/// All of these.
void judgeAll(std::vector<Checked> &files);

/// "'10 MHz'": a text in a message, cut if it is long.
std::string inQuotes(std::string_view text);
/// A text as keys are compared.
std::string folded(std::string_view text);
