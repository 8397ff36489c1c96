#include "kestrune/xml/member_view.h"

namespace kestrune {

std::vector<MemberView> MembersOf(CXMLFolder &folder) {
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

ItemClass ItemClassOf(CXMLCollectionFolder &collection) {
  ItemClass result{collection.m_itemTag, collection.m_keyName, std::unique_ptr<CXMLFolder>(collection.NewFolder())};
  if (result.item)
    result.item->PutTag(result.tag);
  return result;
}

} // namespace kestrune
