#pragma once

#include "kestrune/xml/record_members.h"
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
inline std::vector<MemberView> MembersOf(CXMLFolder &folder) {
  folder.pushMembers();
  const MemberList &list = folder.m_members;
  const MemberTable table = list.table() != nullptr ? *list.table() : MemberTable();
  std::size_t next = 0;
  std::vector<MemberView> members;
  members.reserve(list.size());
  for (CXMLPersistent *const value : list) {
    MemberView member{value, MemberKind::Attribute, nullptr, nullptr, nullptr};
    if (value->isFolder()) {
      member.folder = static_cast<CXMLFolder *>(value);
      member.collection = dynamic_cast<CXMLCollectionFolder *>(value);
      member.kind = member.collection != nullptr ? MemberKind::Collection : MemberKind::Folder;
    } else if (dynamic_cast<CXMLElement *>(value) != nullptr) {
      member.kind = dynamic_cast<CXMLHexElement *>(value) != nullptr ? MemberKind::HexElement : MemberKind::Element;
    } else if (dynamic_cast<CXMLBoolAttribute *>(value) != nullptr) {
      member.kind = MemberKind::BoolAttribute;
    }
    // The rows are in the order of the list, unless a class rearranges it or adds to it by hand.
    for (std::size_t tried = 0; member.folder == nullptr && tried < table.size(); ++tried) {
      const MemberRow &row = table[next++ % table.size()];
      if (&MemberRows::member(folder, row) == value) {
        member.defaultText = row.defaultText;
        break;
      }
    }
    members.push_back(member);
  }
  return members;
}

/// The kind of item in a collection. Count and operator[] return the items themselves.
struct ItemClass {
  CString tag;                      ///< The name of an item's element.
  CString keyAttribute;             ///< The name of the attribute with an item's key.
  std::unique_ptr<CXMLFolder> item; ///< A blank item outside the collection; null if it cannot make one.
};

/// What the items of `collection` are; the collection does not change.
inline ItemClass ItemClassOf(CXMLCollectionFolder &collection) {
  ItemClass result{collection.m_itemTag, collection.m_keyName, std::unique_ptr<CXMLFolder>(collection.NewFolder())};
  if (result.item)
    result.item->PutTag(result.tag);
  return result;
}

} // namespace kestrune
