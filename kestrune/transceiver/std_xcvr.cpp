#include "kestrune/transceiver/std_xcvr.h"

#include "kestrune/xml/companion_files.h"
#include "kestrune/xml/record_members.h"
#include "kestrune/xml/reporting.h"

#include <unordered_set>

namespace {

/// Whether a file is the user's own, by its name.
bool isUserFile(const CFilename &file) { return file.GetName().Compare("UserXcvr") == 0; }

/// The file that is read in place of the one that a program asks for; empty if there is none.
CFilename replacementFile() { return ReplacementFile("stdxcvr.xml", WithoutFolder::kNowhere); }

/// The user's own file beside `file`; empty if there is none.
CFilename userFileOf(const CFilename &file) { return UserFile(file, "UserXcvr.xml"); }

/// Answers like CTransceivers3::FindByID, but converts each item only once. The list may only grow at its end.
class KnownIds {
public:
  explicit KnownIds(CTransceivers3 &items) : m_items(items) {}

  /// Whether an item has that number. Throws like the search: only if no item before the bad one has it.
  bool contain(int id) {
    if (m_ids.contains(id))
      return true;
    while (m_known < m_items.Count()) {
      const int next = m_items[m_known]->std_id;
      m_ids.insert(next);
      ++m_known;
      if (next == id)
        return true;
    }
    return false;
  }

private:
  CTransceivers3 &m_items;
  std::unordered_set<int> m_ids; // of the first m_known items
  int m_known = 0;
};

/// Adds to `list` the user's items whose name and number are both new to it.
void merge(CTransceivers3 &list, CTransceivers3 &userItems) {
  KnownIds ids(list);
  list.AddMany(userItems.Count(), [&](int index) {
    CTransceiver3 &item = *userItems[index];
    const int id = item.std_id; // read even if the name is known, so that a text that is not a number always throws
    if (list.Find(item.Name) != nullptr || ids.contain(id))
      return;
    if (CTransceiver3 *const added = list.Add(item.Name))
      *added = item;
  });
}

} // namespace

struct CStdXcvr::Members : DocumentMembers<Members, CStdXcvr> {
  static constexpr auto rows = std::tuple{Row{&CStdXcvr::Transceivers}};
};

CStdXcvr::CStdXcvr() { Members::construct(*this, "StdXcvr"); }
CStdXcvr::CStdXcvr(const CStdXcvr &rhs) : CStdXcvr() { *this = rhs; }
CStdXcvr::~CStdXcvr() = default;

CStdXcvr &CStdXcvr::operator=(const CStdXcvr &rhs) { return Members::copy(*this, rhs); }

void CStdXcvr::Init() {
  Contents.Init();
  Contents.FileDescription = "Standard Transceivers file";
  Contents.Format = 1;
  Contents.Content = 1;
  pushMembers();
}

void CStdXcvr::pushMembers() { Members::push(*this); }
long CStdXcvr::LoadFromFile(const char *name) { return CXMLFolder::LoadFromFile(name, nullptr); }

struct CStdXcvr2::Members : DocumentMembers<Members, CStdXcvr2, CStdXcvr> {
  static constexpr auto rows = std::tuple{Row{&CStdXcvr2::Transceivers2}};
};

CStdXcvr2::CStdXcvr2() { Members::construct(*this); }
CStdXcvr2::CStdXcvr2(const CStdXcvr2 &rhs) : CStdXcvr2() { *this = rhs; }
CStdXcvr2::~CStdXcvr2() = default;

CStdXcvr2 &CStdXcvr2::operator=(const CStdXcvr2 &rhs) { return Members::copy(*this, rhs); }
void CStdXcvr2::pushMembers() { Members::push(*this); }

struct CStdXcvr3::Members : DocumentMembers<Members, CStdXcvr3, CStdXcvr2> {
  static constexpr auto rows = std::tuple{Row{&CStdXcvr3::Transceivers3}};
};

CStdXcvr3::CStdXcvr3() { Members::construct(*this); }
CStdXcvr3::CStdXcvr3(const CStdXcvr3 &rhs) : CStdXcvr3() { *this = rhs; }
CStdXcvr3::~CStdXcvr3() = default;

CStdXcvr3 &CStdXcvr3::operator=(const CStdXcvr3 &rhs) { return Members::copy(*this, rhs); }
void CStdXcvr3::Init() { Members::init(*this); }
void CStdXcvr3::pushMembers() { Members::push(*this); }

long CStdXcvr3::LoadFromFile(const char *name) {
  const kestrune::Reporting report(*this);
  CFilename file = CompanionName(name);
  if (isUserFile(file))
    return CXMLFolder::LoadFromFile(name, nullptr);
  if (const CFilename replacement = replacementFile(); !replacement.IsEmpty()) {
    file = replacement;
    name = file;
  }
  long result = CXMLFolder::LoadFromFile(name, nullptr);
  const CFilename userFile = userFileOf(file);
  if (userFile.IsEmpty())
    return result;
  CStdXcvr3 user;
  result = user.LoadFromFile(userFile);
  if (result >= 0)
    merge(Transceivers3, user.Transceivers3);
  else
    kestrune::Reporting::passOver();
  return result;
}

std::vector<CString> kestrune::FilesOfTransceivers(const char *name) {
  CFilename file = CompanionName(name);
  if (isUserFile(file))
    return {FullPath(name)};
  const CFilename replacement = replacementFile();
  if (!replacement.IsEmpty())
    file = replacement;
  std::vector<CString> files{FullPath(replacement.IsEmpty() ? CString(name) : replacement)};
  if (const CFilename user = userFileOf(file); !user.IsEmpty())
    files.push_back(FullPath(user));
  return files;
}
