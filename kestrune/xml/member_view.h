#pragma once

#include "kestrune/xml/record_members.h"
#include "kestrune/xml/xml_collection.h"

// Folders as they are seen from outside: for programs that show, compare or describe data whatever its class. It works
// for every folder that keeps the protocol, with a table or without. A document object that was just made shows the
// whole tree of its class: its members, and behind each collection the members of a blank item.

namespace kestrune {

/// How a member is stored in the file.
enum class MemberKind { Attribute, BoolAttribute, Element, HexElement, Folder, Collection };

/// A member of a folder; valid as long as the folder.
struct MemberView {
  CXMLPersistent *value; // the member itself, which knows its tag and its text
  MemberKind kind;
  const char *defaultText;          // the text of a new record; null for folders and for classes without a table
  CXMLFolder *folder;               // the member again if it is a folder or a collection, else null
  CXMLCollectionFolder *collection; // the member again if it is a collection, else null
};

/// The members of `folder` in the order of the file, as its pushMembers lists them now.
inline std::vector<MemberView> MembersOf(CXMLFolder &folder) {
  folder.pushMembers();
  const MemberTable table = folder.m_table != nullptr ? *folder.m_table : MemberTable();
  std::size_t next = 0;
  std::vector<MemberView> members;
  members.reserve(folder.m_members.size());
  for (CXMLPersistent *const value : folder.m_members) {
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
    // The rows stand in the order of the list, unless a class rearranges it or adds to it by hand.
    for (std::size_t tried = 0; member.folder == nullptr && tried < table.size(); ++tried) {
      const MemberRow &row = table[next++ % table.size()];
      if (&row.field(folder) == value) {
        member.defaultText = row.defaultText;
        break;
      }
    }
    members.push_back(member);
  }
  return members;
}

/// What a collection says of its items; the items themselves are what its Count and operator[] give.
struct ItemClass {
  CString tag;                      // the element of an item
  CString keyAttribute;             // the attribute that holds an item's key
  std::unique_ptr<CXMLFolder> item; // a blank item, which is not in the collection; null where it makes none
};

inline ItemClass ItemClassOf(CXMLCollectionFolder &collection) {
  ItemClass result{collection.m_itemTag, collection.m_keyName, std::unique_ptr<CXMLFolder>(collection.NewFolder())};
  if (result.item)
    result.item->PutTag(result.tag);
  return result;
}

} // namespace kestrune
