#pragma once

#include "tools/kinds.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

// What may stand where in a kind of file, as the library's own tables tell it.

struct RecordShape;

/// A member of a record.
struct MemberShape {
  std::string tag;
  kestrune::MemberKind kind;
  std::string defaultText;                   ///< Empty for a folder.
  int version;                               ///< The first format version that has it.
  std::unique_ptr<const RecordShape> folder; ///< The record itself, for a folder; its items, for a collection.

  bool isAttribute() const {
    return kind == kestrune::MemberKind::Attribute || kind == kestrune::MemberKind::BoolAttribute;
  }
  bool isCollection() const { return kind == kestrune::MemberKind::Collection; }
  bool isValue() const { return folder == nullptr; }
};

/// A record: the root of a file, a folder in it, or an item of a collection.
struct RecordShape {
  std::string tag;                  ///< Its element.
  std::string keyAttribute;         ///< The attribute with the key by which a collection reads it; empty for others.
  std::vector<MemberShape> members; ///< In the order of the file.

  /// The member with that tag, exactly so written; null if there is none.
  const MemberShape *member(std::string_view tag) const;
};

/// The shape of a whole file of the kind's newest version. The same object at each call.
const RecordShape &shapeOf(const Kind &kind);
