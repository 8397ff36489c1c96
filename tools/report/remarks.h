#pragma once

#include "tools/comparison.h"
#include "tools/files.h"
#include "tools/findings.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

/// What is to be said about the records of files: findings of `check`, and what changed since other files.
class Remarks {
public:
  /// A finding.
  struct Remark {
    const Finding *finding;
    Position place;
    std::string message;
    std::string record; ///< What people call the record, which may be one inside the item.
  };
  /// A member with another text than before, or a record inside an item that is new or gone.
  struct Change {
    std::string address; ///< Below the item.
    std::string before;
    std::string after;
    enum class Kind { kChanged, kAdded, kRemoved } kind = Kind::kChanged;
  };
  /// What changed in an item of a collection.
  struct ItemChange {
    enum class Kind { kSame, kChanged, kAdded } kind = Kind::kSame;
    std::vector<Change> changes;
  };

  /// Judges files, each by itself and all of them against each other, but for what .kestrune-check passes over.
  explicit Remarks(const std::vector<const Document *> &documents);

  /// Tells what changed in a file since an older one, which may be missing.
  void compare(const Document &now, const Document *before);

  /// The findings in an item of a collection of the root, or in a folder of it; those of the root itself with element
  /// 0.
  const std::vector<Remark> &findings(const Document &document, Outline::Index element) const;
  /// All findings of a file, in its order.
  const std::vector<Remark> &findings(const Document &document) const;
  /// The lines of .kestrune-check that are of no use, in words.
  const std::vector<std::string> &useless() const { return m_useless; }
  /// What changed in an item of a collection since the other files, by its address.
  const ItemChange &changes(const Document &document, const std::string &address) const;
  /// What is gone: names of items of a collection of the root.
  const std::vector<std::string> &removed(const Document &document, const std::string &collection) const;
  /// How much changed since the older file.
  struct Since {
    std::string name; ///< Of the older file; empty if there is none.
    Comparison comparison;
  };
  /// Null if the file was not compared.
  const Since *since(const Document &document) const;

private:
  struct File {
    std::vector<Remark> all;
    std::map<Outline::Index, std::vector<Remark>> byElement;
    std::unordered_map<std::string, ItemChange> changes;     // by address
    std::map<std::string, std::vector<std::string>> removed; // by collection
    std::unique_ptr<Since> since;
  };
  std::map<const Document *, File> m_files;
  std::vector<std::string> m_useless;
};
