#include "kestrune/chip/vorlan_typ.h"

#include "kestrune/names/filename.h"
#include "kestrune/platform/drives.h"
#include "kestrune/xml/member_list.h"

#include <optional>

namespace {

/// The names of the add-on files of the document that is called `name`.
class AddOnNames {
public:
  explicit AddOnNames(const CString &name) {
    CString expanded;
    CMacroString(name).Explode(expanded, 10);
    CFilename file;
    file = platform::ToDrivePath(expanded);
    m_extension = file.GetExt().MakeLower();
    file.GetAbsolute(file, nullptr);
    m_stem = file.AppendExt("");
  }

  CFilename operator()(int number) const { return m_stem + "-" + IntToCString(number) + m_extension; }

private:
  CString m_stem;
  CString m_extension;
};

/// Whether each add-on gets a document of its own, or finds the one that the add-on before it has left.
enum class AddOnDocument { kNew, kReused };

/// Adds the models of all add-on files of the document that is called `name`, and returns the result of the last of
/// them; `result` when there is none.
template <class Document, class Models>
long LoadAddOns(Document &document, Models Document::*models, AddOnDocument use, const CString &name, long result) {
  const AddOnNames addOnNames(name);
  Models &target = document.*models;
  std::optional<Document> addOn;
  for (int number = 1;; ++number) {
    const CFilename addOnName = addOnNames(number);
    if (addOnName.FileExists() == 0)
      return result;
    if (!addOn || use == AddOnDocument::kNew)
      addOn.emplace();
    result = addOn->LoadFromFile(addOnName);
    if (result < 0)
      continue;
    Models &source = (*addOn).*models;
    target.AddMany(source.Count(), [&](int i) {
      if (auto *const model = target.Add(source[i]->Name))
        *model = *source[i];
    });
  }
}

/// Loads a document of the versions 1 to 3. The name is a copy: what the caller has passed may be a text of the
/// document.
template <class Document, class Models>
long LoadWithAddOns(Document &document, Models Document::*models, const CString &name) {
  const long result = document.CXMLFolder::LoadFromFile(name, nullptr);
  return result < 0 ? result : LoadAddOns(document, models, AddOnDocument::kNew, name, result);
}

/// The file that takes the place of whatever a caller asks for, if it exists.
CString ReplacementFor(const char *name) {
  CString folder;
  CMacroString("$PFDT$").Explode(folder, 10);
  CFilename file(folder.IsEmpty() ? CString("vorlan.xml") : folder + "\\vorlan.xml");
  file.GetAbsolute(file, nullptr);
  return file.FileExists() != 0 ? file : CString(name);
}

/// One call more on the way, until the end of its life, however that comes.
class LoadDepth {
public:
  explicit LoadDepth(int &depth) : m_depth(depth) { ++m_depth; }
  LoadDepth(const LoadDepth &) = delete;
  LoadDepth &operator=(const LoadDepth &) = delete;
  ~LoadDepth() { --m_depth; }

private:
  int &m_depth;
};

} // namespace

template <class Visit>
constexpr void CVorlanTyp::forEachMember(Visit visit) {
  visit(&CVorlanTyp::VorlanModels);
}

static_assert(sizeof(CVorlanTyp) == sizeof(CXMLTopLevelFolder) + MemberList::size<CVorlanTyp>());

CVorlanTyp::CVorlanTyp() {
  PutTag(CString("VorlanTyp"));
  CXMLTopLevelFolder::operator=("VorlanTyp");
  CVorlanTyp::Init();
  CVorlanTyp::pushMembers();
}

CVorlanTyp::CVorlanTyp(const CVorlanTyp &rhs) : CVorlanTyp() { *this = rhs; }

CVorlanTyp::~CVorlanTyp() = default;

CVorlanTyp &CVorlanTyp::operator=(const CVorlanTyp &rhs) {
  CXMLTopLevelFolder::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CVorlanTyp::Init() {
  Contents.Init();
  Contents.Content = 1;
  Contents.Format = 1;
  Contents.MajorVersion = 1;
  Contents.MinorVersion = 1;
  MemberList::init(*this);
}

void CVorlanTyp::pushMembers() {
  CXMLTopLevelFolder::pushMembers();
  MemberList::append(*this);
}

long CVorlanTyp::LoadFromFile(const char *fileName) {
  return LoadWithAddOns(*this, &CVorlanTyp::VorlanModels, fileName);
}

template <class Visit>
constexpr void CVorlanTyp2::forEachMember(Visit visit) {
  visit(&CVorlanTyp2::VorlanModels2);
  visit(&CVorlanTyp2::LinkCompatibleModels2);
}

static_assert(sizeof(CVorlanTyp2) == sizeof(CVorlanTyp) + MemberList::size<CVorlanTyp2>());

CVorlanTyp2::CVorlanTyp2() {
  MemberList::init(*this);
  CVorlanTyp2::pushMembers();
}

CVorlanTyp2::CVorlanTyp2(const CVorlanTyp2 &rhs) : CVorlanTyp2() { *this = rhs; }

CVorlanTyp2::~CVorlanTyp2() = default;

CVorlanTyp2 &CVorlanTyp2::operator=(const CVorlanTyp2 &rhs) {
  CVorlanTyp::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CVorlanTyp2::Init() {
  CVorlanTyp::Init();
  MemberList::init(*this);
}

void CVorlanTyp2::pushMembers() {
  CXMLTopLevelFolder::pushMembers();
  MemberList::append(*this);
}

long CVorlanTyp2::LoadFromFile(const char *fileName) {
  return LoadWithAddOns(*this, &CVorlanTyp2::VorlanModels2, fileName);
}

template <class Visit>
constexpr void CVorlanTyp3::forEachMember(Visit visit) {
  visit(&CVorlanTyp3::VorlanModels3);
  visit(&CVorlanTyp3::LinkCompatibleModels3);
}

static_assert(sizeof(CVorlanTyp3) == sizeof(CVorlanTyp2) + MemberList::size<CVorlanTyp3>());

CVorlanTyp3::CVorlanTyp3() {
  MemberList::init(*this);
  CVorlanTyp3::pushMembers();
}

CVorlanTyp3::CVorlanTyp3(const CVorlanTyp3 &rhs) : CVorlanTyp3() { *this = rhs; }

CVorlanTyp3::~CVorlanTyp3() = default;

CVorlanTyp3 &CVorlanTyp3::operator=(const CVorlanTyp3 &rhs) {
  CVorlanTyp2::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CVorlanTyp3::Init() {
  CVorlanTyp2::Init();
  MemberList::init(*this);
}

void CVorlanTyp3::pushMembers() {
  CXMLTopLevelFolder::pushMembers();
  MemberList::append(*this);
}

long CVorlanTyp3::LoadFromFile(const char *fileName) {
  return LoadWithAddOns(*this, &CVorlanTyp3::VorlanModels3, fileName);
}

int CVorlanTyp4::s_loadDepth = 0;

template <class Visit>
constexpr void CVorlanTyp4::forEachMember(Visit visit) {
  visit(&CVorlanTyp4::VorlanModels4);
  visit(&CVorlanTyp4::LinkCompatibleModels4);
  visit(&CVorlanTyp4::ClockingSchemes);
}

static_assert(sizeof(CVorlanTyp4) == sizeof(CVorlanTyp3) + MemberList::size<CVorlanTyp4>());

CVorlanTyp4::CVorlanTyp4() {
  MemberList::init(*this);
  CVorlanTyp4::pushMembers();
}

CVorlanTyp4::CVorlanTyp4(const CVorlanTyp4 &rhs) : CVorlanTyp4() { *this = rhs; }

CVorlanTyp4::~CVorlanTyp4() = default;

CVorlanTyp4 &CVorlanTyp4::operator=(const CVorlanTyp4 &rhs) {
  CVorlanTyp3::operator=(rhs);
  MemberList::copy(*this, rhs);
  return *this;
}

void CVorlanTyp4::Init() {
  CVorlanTyp3::Init();
  MemberList::init(*this);
}

void CVorlanTyp4::pushMembers() {
  CXMLTopLevelFolder::pushMembers();
  MemberList::append(*this);
}

long CVorlanTyp4::LoadFromFile(const char *fileName) {
  const CString name = s_loadDepth == 0 ? ReplacementFor(fileName) : CString(fileName);
  const LoadDepth depth(s_loadDepth);
  const long result = CXMLFolder::LoadFromFile(name, nullptr);
  if (result < 0 || s_loadDepth != 1)
    return result;
  return LoadAddOns(*this, &CVorlanTyp4::VorlanModels4, AddOnDocument::kReused, name, result);
}
