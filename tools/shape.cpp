#include "tools/shape.h"

#include <algorithm>
#include <map>

namespace {

/// The first version that has each member, by the tags on the way to it.
using Versions = std::map<std::string, int>;

// The depth is that of the classes.
RecordShape describe(CXMLFolder &folder, const std::string &road, const Versions &versions);

MemberShape describe(const kestrune::MemberView &member, const std::string &road, const Versions &versions) {
  const std::string tag(member.value->GetTag().View());
  const auto known = versions.find(road + tag);
  MemberShape shape{tag, member.kind, member.defaultText != nullptr ? member.defaultText : "",
                    known != versions.end() ? known->second : 1, nullptr};
  if (member.collection != nullptr) {
    const kestrune::ItemClass itemClass = kestrune::ItemClassOf(*member.collection);
    RecordShape item = describe(*itemClass.item, road + tag + "/", versions);
    item.keyAttribute = itemClass.keyAttribute.View();
    shape.folder = std::make_unique<const RecordShape>(std::move(item));
  } else if (member.folder != nullptr) {
    shape.folder = std::make_unique<const RecordShape>(describe(*member.folder, road + tag + "/", versions));
  }
  return shape;
}

RecordShape describe(CXMLFolder &folder, const std::string &road, const Versions &versions) {
  RecordShape shape{std::string(folder.GetTag().View()), {}, {}};
  for (const kestrune::MemberView &member : kestrune::MembersOf(folder))
    shape.members.push_back(describe(member, road, versions));
  return shape;
}

void note(const RecordShape &shape, const std::string &road, int version, Versions &versions) {
  for (const MemberShape &member : shape.members) {
    versions.emplace(road + member.tag, version);
    if (member.folder != nullptr)
      note(*member.folder, road + member.tag + "/", version, versions);
  }
}

RecordShape describe(const Kind &kind) {
  Versions versions;
  for (int version = 1; version <= kind.newest(); ++version)
    note(describe(*kind.make(version), "", {}), "", version, versions);
  return describe(*kind.make(kind.newest()), "", versions);
}

} // namespace

const MemberShape *RecordShape::member(std::string_view wanted) const {
  const auto found =
      std::find_if(members.begin(), members.end(), [&](const MemberShape &member) { return member.tag == wanted; });
  return found != members.end() ? &*found : nullptr;
}

const RecordShape &shapeOf(const Kind &kind) {
  static std::map<const Kind *, RecordShape> shapes;
  const auto found = shapes.find(&kind);
  return found != shapes.end() ? found->second : shapes.emplace(&kind, describe(kind)).first->second;
}
