#include "tools/document.h"

#include "kestrune/xml/report.h"
#include "tools/messages.h"

#include <algorithm>
#include <map>
#include <new>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace {

std::string folded(std::string_view text) {
  CString result(std::string(text).c_str());
  return std::string(result.MakeLower().View());
}

std::string placeName(const std::string &file, Position place) {
  return place.line == 0 ? file : file + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
}

/// How often each text stands in a list.
std::unordered_map<std::string, int> countTexts(const std::vector<std::string> &texts) {
  std::unordered_map<std::string, int> counts;
  for (const std::string &text : texts)
    ++counts[folded(text)];
  return counts;
}

} // namespace

std::string failureText(const std::string &name, const CXMLFolder &folder) {
  std::vector<kestrune::Finding> findings = kestrune::ReportOf(folder);
  if (findings.empty())
    throw std::bad_alloc(); // there was no memory for a report
  findings.front().file = name;
  return findings.front().text() +
         (findings.size() > 1 ? ", and " + std::to_string(findings.size() - 1) + " more" : std::string());
}

Document::Document(Source source, int version) : m_source(std::move(source)), m_outline(m_source.bytes) {
  load(version);
}

Document::~Document() = default;

void Document::load(int version) {
  const Outline::Failure &unread = m_outline.failure();
  if (unread.kind == Outline::Failure::Kind::kNone || m_outline.size() > 0)
    m_kind = kindOfRoot(m_outline.name(0));
  if (unread.kind != Outline::Failure::Kind::kNone) {
    m_kind = nullptr;
    m_result = KRX_E_UNEXPECTED_DATA;
    m_failure = placeName(name(), unread.place) + ": " + unread.reason;
  } else if (m_kind == nullptr) {
    m_result = KRX_E_WRONG_ROOT_TAG;
    m_failure = name() + ": no kind of file has the root element '" + std::string(m_outline.name(0)) + "'";
  } else {
    m_folder = m_kind->make(version == 0 ? m_kind->newest() : version);
    m_result = kestrune::LoadFromText(*m_folder, m_source.bytes);
    if (m_result < 0)
      m_failure = failureText(name(), *m_folder);
    return;
  }
  if (m_result < 0)
    m_failure += " (" + std::string(kestrune::ResultName(m_result)) + ")";
}

Record Document::root() const { return {m_folder.get(), &shapeOf(*m_kind), 0, {}, nullptr}; }

std::vector<Member> Document::members(const Record &record) const {
  std::vector<Member> members;
  const bool stands = record.element != Outline::kNone;
  for (const kestrune::MemberView &view : kestrune::MembersOf(*record.folder)) {
    Member member;
    member.value = view.value;
    // A document of an older version lacks some members of the shape, but has none beside it.
    const std::size_t next = members.size();
    const CString itsTag = view.value->GetTag();
    const std::string_view tag = itsTag.View();
    member.shape = next < record.shape->members.size() && record.shape->members[next].tag == tag
                       ? &record.shape->members[next]
                       : record.shape->member(tag);
    member.folder = view.folder;
    member.collection = view.collection;
    if (stands && member.shape->isAttribute())
      member.element = m_outline.attribute(record.element, tag) ? record.element : Outline::kNone;
    else if (stands)
      member.element = m_outline.first(record.element, tag);
    members.push_back(member);
  }
  return members;
}

Member Document::member(const Record &record, std::string_view tag) const {
  const std::vector<Member> all = members(record);
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Member &member) { return member.shape->tag == tag; });
  return found != all.end() ? *found : Member();
}

Record Document::folderOf(const Record &record, const Member &member) const {
  return {member.folder, member.shape->folder.get(), member.element,
          (record.address.empty() ? "" : record.address + "/") + member.shape->tag, nullptr};
}

std::vector<Record> Document::items(const Record &record, const Member &member, std::vector<Dropped> *dropped) const {
  CXMLCollectionFolder &list = *member.collection;
  const RecordShape &shape = *member.shape->folder;
  std::vector<Record> items;
  std::vector<std::string> keys;
  std::vector<std::string> names;
  for (int i = 0; i < list.Count(); ++i) {
    items.push_back({list[i], &shape, Outline::kNone, {}, &list});
    keys.emplace_back(list[i]->Key().View());
  }

  // The library takes the elements in their order, those with a key that is neither empty nor there already. A key is
  // that of the item as it was loaded, which is not always the text of its key attribute.
  std::vector<std::pair<Outline::Index, std::string>> candidates;
  std::size_t withKey = 0;
  if (member.element != Outline::kNone) {
    for (const Outline::Index element : m_outline.below(member.element, shape.tag)) {
      const auto key = m_outline.attribute(element, shape.keyAttribute);
      if (key && !key->empty())
        ++withKey;
      if (key && !key->empty())
        candidates.emplace_back(element, *key);
      else if (dropped != nullptr)
        dropped->push_back({element, key ? Dropped::Reason::kEmptyKey : Dropped::Reason::kNoKey, Outline::kNone});
    }
  }
  const bool takesAll = withKey == items.size();
  std::unordered_map<std::string, Outline::Index> known;
  std::size_t next = 0;
  for (const auto &[element, key] : candidates) {
    const auto first = takesAll ? known.end() : known.find(folded(key));
    if (first != known.end()) {
      if (dropped != nullptr)
        dropped->push_back({element, Dropped::Reason::kKeyTwice, first->second});
      continue;
    }
    if (next == items.size())
      break;
    items[next].element = element;
    if (!takesAll)
      known.emplace(folded(keys[next]), element);
    ++next;
  }

  // An address names an item by its key, if no other has it, or else by its name, or else by its number.
  const std::string road = (record.address.empty() ? "" : record.address + "/") + member.shape->tag + "/";
  const bool hasName = shape.member("Name") != nullptr;
  names.reserve(items.size());
  for (const Record &item : items)
    names.push_back(hasName ? std::string(this->member(item, "Name").text()) : std::string());
  const auto keyCounts = countTexts(keys);
  const auto nameCounts = countTexts(names);
  for (std::size_t i = 0; i < items.size(); ++i) {
    const bool byKey = !keys[i].empty() && keyCounts.at(folded(keys[i])) == 1;
    const bool byName = !byKey && !names[i].empty() && nameCounts.at(folded(names[i])) == 1;
    items[i].address = road + (byKey    ? addressStep(keys[i])
                               : byName ? addressStep(names[i])
                                        : "[" + std::to_string(i + 1) + "]");
  }
  return items;
}

void Document::forEachRecord(const std::function<void(const Record &)> &visit) const {
  if (m_folder == nullptr)
    return;
  // Records that are still to be visited, the next one last.
  std::vector<Record> open{root()};
  while (!open.empty()) {
    const Record record = std::move(open.back());
    open.pop_back();
    visit(record);
    std::vector<Record> inside;
    for (const Member &member : members(record)) {
      if (member.collection != nullptr) {
        for (Record &item : items(record, member))
          inside.push_back(std::move(item));
      } else if (member.folder != nullptr) {
        inside.push_back(folderOf(record, member));
      }
    }
    open.insert(open.end(), std::make_move_iterator(inside.rbegin()), std::make_move_iterator(inside.rend()));
  }
}

void Document::forEachMember(const std::function<void(const Record &, const Member &)> &visit) const {
  if (m_folder != nullptr)
    forEachMember(root(), visit);
}

void Document::forEachMember(const Record &top,
                             const std::function<void(const Record &, const Member &)> &visit) const {
  struct Open {
    Record record;
    std::vector<Member> members;
    std::size_t next = 0;
  };
  std::vector<Open> open;
  const auto enter = [&](Record record) {
    std::vector<Member> itsMembers = members(record);
    open.push_back({std::move(record), std::move(itsMembers)});
  };
  enter(top);
  // The items of collections that are still to be entered, the next one last; null stands for the end of a collection.
  std::vector<Record> waiting;
  while (!open.empty()) {
    Open &last = open.back();
    if (last.next == last.members.size()) {
      open.pop_back();
      if (!waiting.empty()) {
        Record item = std::move(waiting.back());
        waiting.pop_back();
        if (item.folder != nullptr)
          enter(std::move(item));
      }
      continue;
    }
    const Member member = last.members[last.next++];
    visit(last.record, member);
    if (member.collection != nullptr) {
      std::vector<Record> inside = items(last.record, member);
      if (inside.empty())
        continue;
      waiting.emplace_back();
      waiting.insert(waiting.end(), std::make_move_iterator(inside.rbegin()), std::make_move_iterator(inside.rend()));
      Record first = std::move(waiting.back());
      waiting.pop_back();
      enter(std::move(first));
    } else if (member.folder != nullptr) {
      waiting.emplace_back(); // as of a collection with one item
      enter(folderOf(last.record, member));
    }
  }
}

Position Document::place(const Member &member) const {
  if (member.shape->isAttribute())
    return m_outline.attributeValuePlace(member.element, member.shape->tag);
  return member.folder != nullptr ? m_outline.place(member.element) : m_outline.textPlace(member.element);
}

int Document::versionNeeded() const {
  int version = 1;
  forEachMember([&](const Record & /*record*/, const Member &member) {
    if (member.isInFile())
      version = std::max(version, member.shape->version);
  });
  return version;
}

std::unique_ptr<Document> openDocument(const std::string &file, const std::string &inputName, int version) {
  auto document = std::make_unique<Document>(readSource(file, inputName), version);
  if (!document->failure().empty())
    throw CouldNotWork(document->failure());
  return document;
}

std::string addressStep(std::string_view text) {
  std::string step;
  for (const char character : text) {
    if (character == '/' || character == '\\')
      step += '\\';
    step += character;
  }
  return step;
}

std::string nameOf(const Document &document, const Record &record) {
  const Member name = document.member(record, "Name");
  return std::string(name.shape != nullptr ? name.text() : record.folder->Key().View());
}
