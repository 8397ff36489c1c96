#pragma once

#include "kestrune/xml/xml_collection.h"

/// \file
/// The members of any folder, for programs that show, compare or describe data of every class. This works for each
/// folder that overrides `pushMembers`, with or without a table. A newly constructed document shows the whole structure
/// of its class: its members and, for each collection, the members of a blank item.

namespace kestrune {

/// How a member is stored in the file.
enum class MemberKind {
  Attribute,     ///< CXMLAttribute
  BoolAttribute, ///< CXMLBoolAttribute
  Element,       ///< CXMLElement
  HexElement,    ///< CXMLHexElement
  Folder,        ///< CXMLFolder
  Collection,    ///< CXMLCollectionFolder
};

/// A member of a folder; valid as long as the folder exists.
struct MemberView {
  CXMLPersistent *value;            ///< The member itself, with its tag and text; a field of the folder.
  MemberKind kind;                  ///< How it is stored.
  const char *defaultText;          ///< Its text in a new record; null for a folder or without a table.
  CXMLFolder *folder;               ///< `value` if it is a folder or a collection, else null.
  CXMLCollectionFolder *collection; ///< `value` if it is a collection, else null.
};

/// The members of `folder` in the order of the file. Rebuilds its member list with `pushMembers` first.
KESTRUNE_API std::vector<MemberView> MembersOf(CXMLFolder &folder);

/// The kind of item in a collection. Count and operator[] return the items themselves.
struct ItemClass {
  CString tag;                      ///< The name of an item's element.
  CString keyAttribute;             ///< The name of the attribute with an item's key.
  std::unique_ptr<CXMLFolder> item; ///< A blank item outside the collection; null if it cannot make one.
};

/// What the items of `collection` are; the collection does not change.
KESTRUNE_API ItemClass ItemClassOf(CXMLCollectionFolder &collection);

} // namespace kestrune
