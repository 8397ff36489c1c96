#include "kestrune/xml/report.h"

#include "kestrune/dom/reader.h"
#include "kestrune/errors/result_text.h"
#include "kestrune/platform/drives.h"
#include "kestrune/platform/input_file.h"
#include "kestrune/platform/lasting.h"
#include "kestrune/platform/system_text.h"
#include "kestrune/xml/reporting.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace kestrune {

namespace {

/// The reports of all objects that have one.
struct Reports {
  std::mutex mutex;
  std::unique_ptr<std::map<const CXMLFolder *, std::vector<Finding>>> all; // once there is one
};

constinit platform::Lasting<Reports> theReports;

[[gnu::destructor]] void releaseReports() { theReports->all.reset(); }

constinit thread_local Reporting *innermost = nullptr;

/// Reports are made when something has failed already, and may fail themselves.
template <class Action>
void tried(Action action) noexcept {
  try {
    action();
  } catch (const std::exception &) { // no memory for it
  } catch (const _com_error &) {     // the tree is unreadable
  }
}

std::string quoted(const CString &text) {
  constexpr std::size_t kLongest = 200;
  const std::string_view view = text.View();
  return view.size() <= kLongest ? "'" + std::string(view) + "'" : "of " + std::to_string(view.size()) + " bytes";
}

/// The system's words for not reading a file.
std::string readFailure(const char *file) {
  std::string path;
  if (!platform::ToHostPath(file, path))
    return platform::SystemText(ENOENT);
  platform::InputFile input(path);
  char byte = 0;
  return input.read(&byte, 1) < 0 ? platform::SystemText(input.error()) : std::string();
}

} // namespace

std::string Finding::text() const {
  std::string text = file;
  if (line > 0)
    text += (text.empty() ? "" : ":") + std::to_string(line) + ":" + std::to_string(column);
  return text + (text.empty() ? "" : ": ") + reason + " (" + ResultName(result) + ")";
}

std::vector<Finding> ReportOf(const CXMLFolder &folder) { return Reporting::of(folder); }

std::string ReportText(const CXMLFolder &folder) {
  std::string text;
  for (const Finding &finding : Reporting::of(folder))
    text += (text.empty() ? "" : "\n") + finding.text();
  return text;
}

Reporting::Reporting(CXMLFolder &folder, const char *file) noexcept
    : m_folder(folder), m_file(file), m_outer(std::exchange(innermost, this)) {
  if (folder.m_hasReport)
    forget(folder);
}

Reporting::~Reporting() {
  innermost = m_outer;
  if (m_findings.empty())
    return;
  const bool isPart = m_outer != nullptr && &m_outer->m_folder == &m_folder;
  if (!isPart) {
    tried([&] {
      const std::scoped_lock lock(theReports->mutex);
      if (!theReports->all)
        theReports->all = std::make_unique<std::map<const CXMLFolder *, std::vector<Finding>>>();
      theReports->all->insert_or_assign(&m_folder, m_findings);
      m_folder.m_hasReport = true;
    });
  }
  if (m_outer != nullptr)
    tried([&] { m_outer->m_findings.insert(m_outer->m_findings.end(), m_findings.begin(), m_findings.end()); });
}

std::vector<Finding> Reporting::of(const CXMLFolder &folder) {
  if (!folder.m_hasReport)
    return {};
  const std::scoped_lock lock(theReports->mutex);
  return theReports->all->at(&folder);
}

void Reporting::forget(CXMLFolder &folder) noexcept {
  folder.m_hasReport = false;
  const std::scoped_lock lock(theReports->mutex);
  theReports->all->erase(&folder);
  if (theReports->all->empty())
    theReports->all.reset();
}

long Reporting::add(long result, const char *reason, long line, long column) noexcept {
  tried([&] {
    m_findings.push_back({result, m_file != nullptr ? m_file : "", line, column,
                          *reason != '\0' ? std::string(reason) : ResultText(result)});
  });
  return result;
}

long Reporting::addUnreadable(long result, const char *file) noexcept {
  const char *const own = std::exchange(m_file, file);
  tried([&] { add(result, readFailure(file).c_str()); });
  m_file = own;
  return result;
}

long Reporting::addWrongRoot(const CString &found, const CString &expected) noexcept {
  tried([&] {
    add(KRX_E_WRONG_ROOT_TAG, ("the root element is " + quoted(found) + ", not " + quoted(expected)).c_str());
    m_places.push_back({m_findings.size() - 1, 1, 0});
  });
  return KRX_E_WRONG_ROOT_TAG;
}

long Reporting::addUnsaved(const _com_error &error) noexcept {
  tried([&] {
    std::string reason(error.Description());
    const auto *const refused = dynamic_cast<const dom::SaveRefused *>(&error);
    if (refused != nullptr && !refused->place.IsEmpty())
      reason += ", in " + std::string(refused->place);
    add(KRX_E_SAVE_FAILED, reason.c_str());
  });
  return KRX_E_SAVE_FAILED;
}

void Reporting::explain(const std::string &reason) noexcept {
  if (!m_findings.empty())
    tried([&] { m_findings.back().reason = reason; });
}

void Reporting::passOver() noexcept {
  if (innermost != nullptr && !innermost->m_findings.empty())
    tried([] { innermost->m_findings.back().reason += "; nothing of this file is used"; });
}

long Reporting::complete(long result) noexcept {
  if (result < 0 && m_findings.empty())
    add(result);
  return result;
}

void Reporting::leaveOut(const CString &keyName, const MSXML::IXMLDOMNodeList &elements, long index, const CString &key,
                         bool isTaken) noexcept {
  if (innermost != nullptr && innermost->m_places.size() < kMostPlaces)
    tried([&] { innermost->addLeftOut(keyName, elements, index, key, isTaken); });
}

void Reporting::addLeftOut(const CString &keyName, MSXML::IXMLDOMNodeList elements, long index, const CString &key,
                           bool isTaken) {
  const auto numberOf = [](const IXMLDOMElementPtr &element) {
    return dom::Element::of(element.GetInterfacePtr())->order();
  };
  std::uint32_t earlier = 0;
  for (long i = 0; !key.IsEmpty() && earlier == 0 && i < index; ++i) {
    const IXMLDOMElementPtr element = elements.Getitem(i);
    if (element->getAttribute(keyName.View()).text().CompareNoCase(key) == 0)
      earlier = numberOf(element);
  }
  const IXMLDOMElementPtr element = elements.Getitem(index);
  const std::string item(element->GettagName());
  std::string reason = "no " + item + " can be made for the key " + quoted(key);
  if (key.IsEmpty())
    reason = "the key of this " + item + " is empty; it is left out";
  else if (earlier != 0)
    reason = "the key " + quoted(key) + " is used twice; this " + item + " is left out";
  else if (isTaken)
    reason = quoted(key) + " is the key of an earlier " + item + "; this one is left out";
  add(KRX_E_DUPLICATE_KEY, reason.c_str());
  m_places.push_back({m_findings.size() - 1, numberOf(element), earlier});
}

void Reporting::findPlacesInFile() noexcept {
  if (m_places.empty())
    return;
  tried([&] {
    std::string path;
    if (!platform::ToHostPath(m_file, path))
      return;
    platform::InputFile file(path);
    if (file.isSeekable())
      findPlacesIn(file);
  });
}

void Reporting::findPlacesInText(std::string_view text) noexcept {
  if (m_places.empty())
    return;
  tried([&] {
    auto file = platform::InputFile::OfText(text);
    findPlacesIn(file);
  });
}

void Reporting::findPlacesIn(platform::InputFile &file) {
  std::vector<dom::ElementPlace> found;
  for (const Place &place : m_places) {
    found.push_back({place.element});
    found.push_back({place.earlier});
  }
  const auto isBefore = [](const dom::ElementPlace &a, const dom::ElementPlace &b) { return a.element < b.element; };
  std::ranges::sort(found, isBefore);
  found.erase(found.begin(), std::ranges::find_if(found, [](const auto &place) { return place.element != 0; }));
  MSXML::ParseError failure;
  if (!dom::ReadByExpat(nullptr, file, failure, found))
    return; // it is another file by now
  const auto placeOf = [&](std::uint32_t element) {
    const auto place = std::ranges::lower_bound(found, dom::ElementPlace{element}, isBefore);
    return place != found.end() && place->element == element ? *place : dom::ElementPlace();
  };
  for (const Place &place : m_places) {
    Finding &finding = m_findings[place.finding];
    const dom::ElementPlace at = placeOf(place.element);
    finding.line = at.line;
    finding.column = at.column;
    if (const dom::ElementPlace first = placeOf(place.earlier); first.line > 0)
      finding.reason += ", the first is in line " + std::to_string(first.line);
  }
}

} // namespace kestrune
