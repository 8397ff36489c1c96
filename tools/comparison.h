#pragma once

#include "tools/document.h"
#include "tools/output.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

// What differs between two documents, by item and member, whatever the order and layout.

/// What counts as a difference.
struct ComparisonOptions {
  std::vector<std::string> ignored; ///< Tags of members that are passed over; `*` and `?` match.
  bool numbers = false;             ///< Texts that programs read as the same number are equal.
  bool onlyStanding = false;        ///< A member that the first file lacks is passed over.
};

enum class Sign { kChanged, kAdded, kRemoved };

/// A member with another text.
struct TextChange {
  std::string member;
  std::string address; ///< In the first document.
  std::string before;
  std::string after;
};

struct ItemChange;
struct SectionChange;

/// What differs between two records, or two collections.
struct Differences {
  std::vector<TextChange> texts;
  std::vector<ItemChange> items;
  std::vector<SectionChange> sections;

  bool isEmpty() const { return texts.empty() && items.empty() && sections.empty(); }
};

/// An item that was changed, added or removed.
struct ItemChange {
  Sign sign;
  std::string name; ///< By which people know it.
  std::string key;
  std::string address; ///< In the first document, or in the second for one that was added.
  Differences inside;  ///< Of one that was changed.
};

/// A folder or collection in which something differs.
struct SectionChange {
  std::string tag;
  Differences inside;
};

/// How much differs: members with another text, items that were added or removed, and items of the sections of the file
/// in which nothing differs.
struct Counts {
  std::size_t changed = 0;
  std::size_t added = 0;
  std::size_t removed = 0;
  std::size_t equal = 0;
};

struct Comparison {
  Differences differences;
  std::vector<std::pair<std::string, Counts>> sections; ///< Of the file, in their order.

  bool isSame() const { return differences.isEmpty(); }
  Counts total() const;
};

/// Throws CouldNotWork for two documents that are not of one kind.
void checkSameKind(const Document &a, const Document &b);

/// Compares two documents of one kind that were read as the same version. Items belong together by their key, or else
/// by their name.
Comparison compare(const Document &before, const Document &after, const ComparisonOptions &options = {});

/// "Vorlan 2208-XT (KVO-2208X-S32H)"
std::string titleOf(const ItemChange &item);
/// "2 changed, 1 added, 0 removed, 60 equal"
std::string countsText(const Counts &counts);

/// A difference on its own.
struct Difference {
  Sign sign;
  std::string address;
  std::string record; ///< The name of the item; empty outside of items.
  std::string before; ///< Of a member. @{
  std::string after;
  ///@}
  bool isMember;
};
/// Calls `visit` with each difference, in the order of the file.
void forEachDifference(const Comparison &comparison, const std::function<void(const Difference &)> &visit);

/// Prints a comparison in the form that is wanted; with `onlyCounts` as numbers alone.
void printComparison(const Comparison &comparison, const Output &output, bool onlyCounts = false);

/// Two files of one name in two folders, or one that stands in only one of them.
struct FileChange {
  std::string file;
  Sign sign;
  Comparison comparison; ///< Of two files.

  bool isSame() const { return sign == Sign::kChanged && comparison.isSame(); }
};
/// Prints what differs between two folders. Files in which nothing does are not named.
void printFileChanges(const std::vector<FileChange> &files, const Output &output, bool onlyCounts = false);
