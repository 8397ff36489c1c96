#include "tools/check/hits.h"
#include "tools/messages.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

// 201 to 212: what stands where, and what does not.

namespace {

using Index = CheckedFile::Index;
using Record = CheckedFile::Record;

/// Collections in which programs need an item.
bool needsItems(std::string_view collection) {
  return collection == "VorlanModels" || collection == "ClockingSchemes" || collection == "Clocks";
}

/// Sections that programs do not take from an add-on.
bool isLeftInAddOn(std::string_view collection) {
  return collection == "LinkCompatibleModels" || collection == "ClockingSchemes";
}

class Structure {
public:
  Structure(CheckedFile &file, Hits &hits) : m_file(file), m_outline(file.outline()), m_hits(hits) {}

  void judge() {
    for (Index number = 0; number < m_file.records().size(); ++number) {
      const Record &record = m_file.record(number);
      const bool isFirst = number == 0 || m_file.record(number - 1).parent != record.parent ||
                           m_file.record(number - 1).collection != record.collection;
      if (isFirst && record.collection != nullptr)
        judgeItems(number);
      judgeRecord(number);
    }
  }

private:
  std::string lineOf(std::size_t offset) const { return "line " + std::to_string(m_outline.at(offset).line); }

  /// The items of a collection, of which `first` is the first.
  void judgeItems(Index first);
  void judgeRecord(Index number);
  void judgeChildren(Index number, std::vector<bool> &excused);
  void judgeAttributes(Index number, std::vector<bool> &excused);
  /// What stands inside a collection, or inside a text.
  bool judgeInside(Index number, const MemberShape &member, Index element);
  void judgeMissing(Index number, const std::vector<bool> &excused);
  /// A member that is not read from where it stands, or not from where it should stand.
  bool judgeBorrowed(Index number, const MemberShape &member, bool isMissing);
  void judgeOrder(Index number, const std::vector<const MemberShape *> &standing, bool areAttributes);

  /// Where something stands in a record: between which of its members. Null members are its ends.
  struct Place {
    const MemberShape *before = nullptr;
    const MemberShape *behind = nullptr;
    std::vector<bool> *excused = nullptr; // the members of the record that are not told as missing
  };
  void unknownElement(Index number, Index element, const RecordShape &shape, const Place *place);
  void unknownAttribute(Index number, Index element, const Outline::Attribute &attribute, const Place *place);
  /// The member that is meant by a name, and that it is this: "; did you mean 'ROMend'?"
  const MemberShape *meant(const Record &record, const RecordShape &shape, std::string_view name, bool isAttribute,
                           const Place *place, std::string &hint);
  /// A member that the record lacks and that a save would put at a place; null if there is none.
  const MemberShape *lackedAt(const Record &record, const Place &place, bool isAttribute) const;
  bool isLacked(const Record &record, const MemberShape &member, const std::vector<bool> &excused) const;
  /// The first child of a record behind `child` that is one of its members.
  const MemberShape *nextMember(const Record &record, Index child);
  std::vector<Edit> renamed(Index element, std::string_view name, const std::string &to) const;

  CheckedFile &m_file;
  const Outline &m_outline;
  Hits &m_hits;
  std::size_t m_guesses = 0;
  struct {
    Index around = CheckedFile::kNone;
    Index child = 0;
    const MemberShape *member = nullptr;
  } m_next;                           // the member that nextMember found last, and where
  std::unordered_set<Index> m_nested; // items inside items, whose members are mixed up with those of the outer one
};

void Structure::judgeItems(Index first) {
  const Record &record = m_file.record(first);
  const RecordShape &shape = *record.shape;
  const Index end = static_cast<Index>(m_file.records().size());
  // The library compares the key attribute with the Key of the items before, which for models is a member of its own.
  const MemberShape *const key = shape.member("Key");
  const bool hasOwnKey = key != nullptr && !key->isAttribute();
  std::unordered_map<std::string, Index> known;
  Index outerEnd = 0;
  Index outer = first;
  for (Index number = first; number < end && m_file.record(number).parent == record.parent &&
                             m_file.record(number).collection == record.collection;
       ++number) {
    const Record &item = m_file.record(number);
    const std::size_t offset = m_outline.offset(item.element);
    if (item.element < outerEnd) {
      m_nested.insert(number);
      m_hits.add(205, offset,
                 inQuotes(shape.tag) + " stands inside another one, which begins in " +
                     lineOf(m_outline.offset(m_file.record(outer).element)) + "; both are read as items",
                 number);
    } else {
      outer = number;
      outerEnd = m_outline.end(item.element);
    }
    const auto name = m_outline.attribute(item.element, shape.keyAttribute);
    if (!name || name->empty()) {
      m_file.lose(number);
      if (name)
        m_hits.add(207, m_outline.attributeOffset(item.element, shape.keyAttribute),
                   "the key '" + shape.keyAttribute + "' is empty; the item is left out", number);
      continue; // 206 has to know about misspelt attributes
    }
    const auto found = known.find(folded(*name));
    if (found != known.end()) {
      m_file.lose(number);
      const Record &other = m_file.record(found->second);
      m_hits.add(208, m_outline.attributeValueOffset(item.element, shape.keyAttribute),
                 shape.keyAttribute + " " + inQuotes(*name) +
                     (hasOwnKey ? " is the Key of the model in " : " is there already, in ") +
                     lineOf(m_outline.offset(other.element)) + "; the item is left out",
                 number);
      continue;
    }
    known.emplace(folded(hasOwnKey ? m_file.text(item, *key).value_or("Unassigned") : std::string(*name)), number);
  }
}

void Structure::judgeRecord(Index number) {
  std::vector<bool> excused(m_file.record(number).shape->members.size());
  judgeAttributes(number, excused);
  judgeChildren(number, excused);
  judgeMissing(number, excused);
}

std::size_t indexOf(const RecordShape &shape, const MemberShape *member) {
  return static_cast<std::size_t>(member - shape.members.data());
}

/// The member that is named like this, or almost.
const MemberShape *nearMember(const RecordShape &shape, std::string_view name, const std::vector<std::string> &tags) {
  const std::vector<std::string> near = nearTo(name, tags, 1);
  // One that only holds the word somewhere is another one.
  const std::size_t most = std::max<std::size_t>(2, name.size() / 2);
  if (near.empty() || name.size() < 3 || near.front().size() > name.size() + most)
    return nullptr;
  return shape.member(near.front());
}

bool Structure::isLacked(const Record &record, const MemberShape &member, const std::vector<bool> &excused) const {
  return m_file.slot(record, member) == CheckedFile::kNone && member.version <= m_file.version() &&
         !excused[indexOf(*record.shape, &member)];
}

const MemberShape *Structure::lackedAt(const Record &record, const Place &place, bool isAttribute) const {
  const std::vector<MemberShape> &members = record.shape->members;
  const std::size_t begin = place.before != nullptr ? indexOf(*record.shape, place.before) + 1 : 0;
  const std::size_t end = place.behind != nullptr ? indexOf(*record.shape, place.behind) : members.size();
  const MemberShape *found = nullptr;
  for (std::size_t i = begin; i < end; ++i) {
    if (members[i].isAttribute() != isAttribute || !isLacked(record, members[i], *place.excused))
      continue;
    if (found != nullptr) // in a record without any member it could be each
      return place.before != nullptr || place.behind != nullptr ? found : nullptr;
    found = &members[i];
  }
  return found;
}

const MemberShape *Structure::nextMember(const Record &record, Index child) {
  if (m_next.around != record.element || m_next.child <= child) {
    m_next = {record.element, m_outline.end(child), nullptr};
    for (; m_next.child < m_outline.end(record.element); m_next.child = m_outline.end(m_next.child)) {
      const MemberShape *const member = record.shape->member(m_outline.name(m_next.child));
      if (member == nullptr || member->isAttribute() || m_file.slot(record, *member) != m_next.child)
        continue;
      m_next.member = member;
      break;
    }
  }
  return m_next.member;
}

const MemberShape *Structure::meant(const Record &record, const RecordShape &shape, std::string_view name,
                                    bool isAttribute, const Place *place, std::string &hint) {
  constexpr std::size_t kMostGuesses = 20000; // a file of nothing but unknown names
  if (const MemberShape *const member = shape.member(name)) {
    hint = "; " + inQuotes(name) + (isAttribute ? " is an element" : " is an attribute");
    return member;
  }
  if (++m_guesses > kMostGuesses)
    return nullptr;
  std::vector<std::string> tags;
  std::vector<std::string> lacked;
  const MemberShape *member = nullptr;
  for (const MemberShape &candidate : shape.members) {
    tags.push_back(candidate.tag);
    if (place != nullptr && isLacked(record, candidate, *place->excused))
      lacked.push_back(candidate.tag);
    if (folded(candidate.tag) == folded(name))
      member = &candidate;
  }
  // What is missing is meant rather than what is there, and at its place whatever the name is.
  if (member == nullptr)
    member = nearMember(shape, name, lacked);
  if (member == nullptr && place != nullptr)
    member = lackedAt(record, *place, isAttribute);
  if (member == nullptr)
    member = nearMember(shape, name, tags);
  if (member != nullptr)
    hint = "; did you mean " +
           std::string(member->isAttribute() == isAttribute ? ""
                       : isAttribute                        ? "the element "
                                                            : "the attribute ") +
           "'" + member->tag + "'?";
  return member;
}

std::vector<Edit> Structure::renamed(Index element, std::string_view name, const std::string &to) const {
  const std::string_view text = m_outline.text();
  const std::size_t begin = m_outline.offset(element) + 1;
  const std::size_t inside = m_outline.textOffset(element);
  std::vector<Edit> edits{{begin, name.size(), to}};
  if (text[inside - 2] == '/')
    return edits;
  // Between its last element and the next one there are only end tags.
  const Index next = m_outline.end(element);
  const std::size_t limit = next < m_outline.size() ? m_outline.offset(next) : text.size();
  const std::size_t close = text.rfind("</" + std::string(name), limit);
  if (close == std::string_view::npos || close < inside || m_outline.name(m_outline.parent(element)) == name)
    return {};
  edits.push_back({close + 2, name.size(), to});
  return edits;
}

void Structure::unknownElement(Index number, Index element, const RecordShape &shape, const Place *place) {
  const Record &record = m_file.record(number);
  const std::string_view name = m_outline.name(element);
  std::string hint;
  const MemberShape *const member = meant(record, shape, name, false, place, hint);
  Hit hit{201, m_outline.offset(element), {}, "unknown element " + inQuotes(name) + " (a save drops it)" + hint, number,
          {}};
  if (member != nullptr && place != nullptr) {
    (*place->excused)[indexOf(shape, member)] = true;
    const bool isFree = m_file.slot(record, *member) == CheckedFile::kNone && !member->isAttribute();
    if (isFree && member->tag != name && folded(member->tag) == folded(name))
      hit.edits = renamed(element, name, member->tag);
  }
  m_hits.add(std::move(hit));
}

void Structure::unknownAttribute(Index number, Index element, const Outline::Attribute &attribute, const Place *place) {
  const Record &record = m_file.record(number);
  std::string hint;
  const MemberShape *const member =
      place != nullptr ? meant(record, *record.shape, attribute.name, true, place, hint) : nullptr;
  Hit hit{202,    m_outline.attributeOffset(element, attribute.name),
          {},     "unknown attribute " + inQuotes(attribute.name) + " (a save drops it)" + hint,
          number, {}};
  if (member != nullptr) {
    (*place->excused)[indexOf(*record.shape, member)] = true;
    const bool isFree = member->isAttribute() && !m_outline.attribute(element, member->tag);
    if (isFree && folded(member->tag) == folded(attribute.name))
      hit.edits.push_back({hit.offset, attribute.name.size(), member->tag});
  }
  m_hits.add(std::move(hit));
}

void Structure::judgeAttributes(Index number, std::vector<bool> &excused) {
  const Record &record = m_file.record(number);
  std::vector<const MemberShape *> standing;
  const std::vector<Outline::Attribute> attributes = m_outline.attributes(record.element);
  std::vector<const MemberShape *> behind(attributes.size() + 1); // the next member from each attribute on
  for (std::size_t i = attributes.size(); i-- > 0;) {
    const MemberShape *const member = record.shape->member(attributes[i].name);
    behind[i] = member != nullptr && member->isAttribute() ? member : behind[i + 1];
  }
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    if (behind[i] != nullptr && behind[i]->tag == attributes[i].name) {
      standing.push_back(behind[i]);
      continue;
    }
    const Place place{standing.empty() ? nullptr : standing.back(), behind[i], &excused};
    unknownAttribute(number, record.element, attributes[i], &place);
  }
  judgeOrder(number, standing, true);
}

void Structure::judgeChildren(Index number, std::vector<bool> &excused) {
  const Record &record = m_file.record(number);
  std::vector<const MemberShape *> standing;
  bool hasInner = false; // whether a record stands before the member
  bool hasItem = false;
  for (Index child = record.element + 1; child < m_outline.end(record.element); child = m_outline.end(child)) {
    const auto place = [&] {
      return Place{standing.empty() ? nullptr : standing.back(), nextMember(record, child), &excused};
    };
    const MemberShape *const member = record.shape->member(m_outline.name(child));
    if (member == nullptr || member->isAttribute()) {
      if (m_file.isRecord(child)) { // an item inside an item is told as that
        hasItem = true;
      } else {
        const Place here = place();
        unknownElement(number, child, *record.shape, &here);
      }
      continue;
    }
    const Index first = m_file.slot(record, *member);
    if (first != child) {
      if (hasItem)
        continue;
      const MemberShape *const lacked = lackedAt(record, place(), false); // a line that was copied for another member
      if (lacked != nullptr)
        excused[indexOf(*record.shape, lacked)] = true;
      excused[indexOf(*record.shape, member)] = true;
      m_hits.add(209, m_outline.offset(child),
                 inQuotes(member->tag) + " stands twice; the first, in " + lineOf(m_outline.offset(first)) +
                     ", counts" + (lacked != nullptr ? "; did you mean '" + lacked->tag + "'?" : ""),
                 number);
      continue;
    }
    standing.push_back(member);
    if (hasInner)
      judgeBorrowed(number, *member, false);
    hasInner = hasInner || !m_outline.isLeaf(child);
    if (judgeInside(number, *member, child))
      excused[indexOf(*record.shape, member)] = true;
  }
  judgeOrder(number, standing, false);
}

bool Structure::judgeInside(Index number, const MemberShape &member, Index element) {
  static const RecordShape nothing;
  if (!member.isValue() && !member.isCollection())
    return false; // a record of its own
  for (const Outline::Attribute &attribute : m_outline.attributes(element))
    unknownAttribute(number, element, attribute, nullptr);
  bool hasUnknown = false;
  for (Index child = element + 1; child < m_outline.end(element); child = m_outline.end(child)) {
    if (m_file.isRecord(child))
      continue;
    hasUnknown = true;
    RecordShape items;
    if (member.isCollection()) // as if the items were members, to tell the nearest name
      items.members.push_back({member.folder->tag, kestrune::MemberKind::Folder, {}, 1, nullptr});
    unknownElement(number, child, items, nullptr);
  }
  return hasUnknown;
}

void Structure::judgeOrder(Index number, const std::vector<const MemberShape *> &standing, bool areAttributes) {
  if (!m_hits.wants(212))
    return;
  const Record &record = m_file.record(number);
  for (std::size_t i = 1; i < standing.size(); ++i) {
    if (standing[i] > standing[i - 1])
      continue;
    m_hits.add(212, m_file.nameOffset(record, *standing[i]),
               inQuotes(standing[i]->tag) + " stands behind " + inQuotes(standing[i - 1]->tag) + "; a save puts " +
                   (areAttributes ? "the attribute" : "it") + " before",
               number);
    return;
  }
}

bool Structure::judgeBorrowed(Index number, const MemberShape &member, bool isMissing) {
  const Record &record = m_file.record(number);
  const Index taken = m_outline.first(record.element, member.tag);
  const Index own = m_file.slot(record, member);
  if (taken == CheckedFile::kNone || taken == own)
    return false;
  Index around = taken; // the child of the record in which it stands
  while (m_outline.parent(around) != record.element)
    around = m_outline.parent(around);
  // An unknown element around it, or an item inside an item, has been told as that.
  const MemberShape *const inside = record.shape->member(m_outline.name(around));
  if (inside == nullptr || inside->isAttribute())
    return true;
  const std::string source =
      inQuotes(m_outline.name(m_outline.parent(taken))) + " in " + lineOf(m_outline.offset(taken));
  m_hits.add(204, isMissing ? m_outline.offset(record.element) : m_outline.offset(own),
             inQuotes(member.tag) + (isMissing ? " is missing and is taken from " : " is taken from ") + source +
                 (isMissing ? "" : ", which stands before it"),
             number);
  return true;
}

void Structure::judgeMissing(Index number, const std::vector<bool> &excused) {
  const Record &record = m_file.record(number);
  const RecordShape &shape = *record.shape;
  const std::size_t offset = m_outline.offset(record.element);
  for (std::size_t i = 0; i < shape.members.size(); ++i) {
    const MemberShape &member = shape.members[i];
    const Index element = m_file.slot(record, member);
    if (element != CheckedFile::kNone) {
      const bool isEmpty = member.isCollection() && m_outline.below(element, member.folder->tag).empty();
      const bool isLeft = m_file.addOnNumber() > 0 && isLeftInAddOn(member.tag);
      if (isEmpty && needsItems(member.tag) && !excused[i] && !isLeft && !m_file.isCut(element))
        m_hits.add(211, m_outline.offset(element), inQuotes(member.tag) + " is empty, and programs need an item",
                   number);
      continue;
    }
    if (excused[i] || m_file.isCut(record.element))
      continue;
    if (record.collection != nullptr && member.tag == shape.keyAttribute) {
      m_hits.add(
          {206, offset, {}, inQuotes(shape.tag) + " has no key '" + member.tag + "'; it is passed over", number, {}});
      continue;
    }
    if (!member.isAttribute() && judgeBorrowed(number, member, true))
      continue;
    if (member.version > m_file.version() || m_nested.count(number) > 0 ||
        m_hits.onlyCounts(member.isCollection() ? 210 : 203))
      continue;
    if (member.isCollection()) {
      if (m_file.addOnNumber() == 0 || !isLeftInAddOn(member.tag))
        m_hits.add(
            {210, offset, {}, "the collection " + inQuotes(member.tag) + " is missing; it stays empty", number, {}});
      continue;
    }
    const std::string holds = !member.isValue()              ? "; the defaults of its members hold"
                              : member.tag == "CreationDate" ? "; the time of each load holds"
                              : member.tag == "xcvr_gp_data"
                                  ? "; loading empties it"
                                  : "; its default " + inQuotes(member.defaultText) + " holds";
    m_hits.add(203, offset, inQuotes(member.tag) + " is missing" + holds, number);
  }
}

} // namespace

void judgeStructure(CheckedFile &file, Hits &hits) { Structure(file, hits).judge(); }
