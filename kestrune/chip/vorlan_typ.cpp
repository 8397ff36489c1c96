#include "kestrune/chip/vorlan_typ.h"

#include "kestrune/xml/companion_files.h"
#include "kestrune/xml/record_members.h"
#include "kestrune/xml/reporting.h"

#include <optional>

namespace {

/// Whether each add-on is loaded into a new document, or into the one that the previous add-on has filled.
enum class AddOnDocument { kNew, kReused };

/// Adds the models of all add-on files of the document `name`. Returns the result of the last one, or `result` if there
/// is none.
template <class Document, class Models>
long LoadAddOns(Document &document, Models Document::*models, AddOnDocument use, const CString &name, long result) {
  AddOnFiles files(name);
  Models &target = document.*models;
  std::optional<Document> addOn;
  for (CFilename file = files.next(); !file.IsEmpty(); file = files.next()) {
    if (!addOn || use == AddOnDocument::kNew)
      addOn.emplace();
    result = addOn->LoadFromFile(file);
    if (result < 0) {
      kestrune::Reporting::passOver();
      continue;
    }
    Models &source = (*addOn).*models;
    target.AddMany(source.Count(), [&](int i) {
      if (auto *const model = target.Add(source[i]->Name))
        *model = *source[i];
    });
  }
  return result;
}

/// Loads a document of version 1, 2 or 3. The name is a copy because the caller's argument may be a text of the
/// document.
template <class Document, class Models>
long LoadWithAddOns(Document &document, Models Document::*models, const CString &name) {
  const kestrune::Reporting report(document);
  const long result = document.CXMLFolder::LoadFromFile(name, nullptr);
  return result < 0 ? result : LoadAddOns(document, models, AddOnDocument::kNew, name, result);
}

/// The file that CVorlanTyp4 loads when a program asks for `name`.
CString chosenFile(const char *name) {
  const CString replacement = ReplacementFile("vorlan.xml", WithoutFolder::kCurrentDirectory);
  return replacement.IsEmpty() ? CString(name) : replacement;
}

/// How many calls of CVorlanTyp4::LoadFromFile are in progress in this thread, for any document.
constinit thread_local int loadDepth = 0;

/// Counts a call as in progress until the object is destroyed, so that an exception ends it too.
class LoadDepth {
public:
  LoadDepth() { ++loadDepth; }
  LoadDepth(const LoadDepth &) = delete;
  LoadDepth &operator=(const LoadDepth &) = delete;
  ~LoadDepth() { --loadDepth; }
};

} // namespace

struct CVorlanTyp::Members : DocumentMembers<Members, CVorlanTyp> {
  static constexpr auto rows = std::tuple{Row{&CVorlanTyp::VorlanModels}};
};

CVorlanTyp::CVorlanTyp() { Members::construct(*this, "VorlanTyp"); }
CVorlanTyp::CVorlanTyp(const CVorlanTyp &rhs) : CVorlanTyp() { *this = rhs; }
CVorlanTyp::~CVorlanTyp() = default;

CVorlanTyp &CVorlanTyp::operator=(const CVorlanTyp &rhs) { return Members::copy(*this, rhs); }

void CVorlanTyp::Init() {
  Contents.Init();
  Contents.Content = 1;
  Contents.Format = 1;
  Contents.MajorVersion = 1;
  Contents.MinorVersion = 1;
  Members::init(*this);
}

void CVorlanTyp::pushMembers() { Members::push(*this); }

long CVorlanTyp::LoadFromFile(const char *fileName) {
  return LoadWithAddOns(*this, &CVorlanTyp::VorlanModels, fileName);
}

struct CVorlanTyp2::Members : DocumentMembers<Members, CVorlanTyp2, CVorlanTyp> {
  static constexpr auto rows = std::tuple{
      Row{&CVorlanTyp2::VorlanModels2},
      Row{&CVorlanTyp2::LinkCompatibleModels2},
  };
};

CVorlanTyp2::CVorlanTyp2() { Members::construct(*this); }
CVorlanTyp2::CVorlanTyp2(const CVorlanTyp2 &rhs) : CVorlanTyp2() { *this = rhs; }
CVorlanTyp2::~CVorlanTyp2() = default;

CVorlanTyp2 &CVorlanTyp2::operator=(const CVorlanTyp2 &rhs) { return Members::copy(*this, rhs); }
void CVorlanTyp2::Init() { Members::init(*this); }
void CVorlanTyp2::pushMembers() { Members::push(*this); }

long CVorlanTyp2::LoadFromFile(const char *fileName) {
  return LoadWithAddOns(*this, &CVorlanTyp2::VorlanModels2, fileName);
}

struct CVorlanTyp3::Members : DocumentMembers<Members, CVorlanTyp3, CVorlanTyp2> {
  static constexpr auto rows = std::tuple{
      Row{&CVorlanTyp3::VorlanModels3},
      Row{&CVorlanTyp3::LinkCompatibleModels3},
  };
};

CVorlanTyp3::CVorlanTyp3() { Members::construct(*this); }
CVorlanTyp3::CVorlanTyp3(const CVorlanTyp3 &rhs) : CVorlanTyp3() { *this = rhs; }
CVorlanTyp3::~CVorlanTyp3() = default;

CVorlanTyp3 &CVorlanTyp3::operator=(const CVorlanTyp3 &rhs) { return Members::copy(*this, rhs); }
void CVorlanTyp3::Init() { Members::init(*this); }
void CVorlanTyp3::pushMembers() { Members::push(*this); }

long CVorlanTyp3::LoadFromFile(const char *fileName) {
  return LoadWithAddOns(*this, &CVorlanTyp3::VorlanModels3, fileName);
}

struct CVorlanTyp4::Members : DocumentMembers<Members, CVorlanTyp4, CVorlanTyp3> {
  static constexpr auto rows = std::tuple{
      Row{&CVorlanTyp4::VorlanModels4},
      Row{&CVorlanTyp4::LinkCompatibleModels4},
      Row{&CVorlanTyp4::ClockingSchemes},
  };
};

CVorlanTyp4::CVorlanTyp4() { Members::construct(*this); }
CVorlanTyp4::CVorlanTyp4(const CVorlanTyp4 &rhs) : CVorlanTyp4() { *this = rhs; }
CVorlanTyp4::~CVorlanTyp4() = default;

CVorlanTyp4 &CVorlanTyp4::operator=(const CVorlanTyp4 &rhs) { return Members::copy(*this, rhs); }
void CVorlanTyp4::Init() { Members::init(*this); }
void CVorlanTyp4::pushMembers() { Members::push(*this); }

long CVorlanTyp4::LoadFromFile(const char *fileName) {
  const kestrune::Reporting report(*this);
  const CString name = loadDepth == 0 ? chosenFile(fileName) : CString(fileName);
  const LoadDepth onTheWay;
  const long result = CXMLFolder::LoadFromFile(name, nullptr);
  if (result < 0 || loadDepth != 1)
    return result;
  return LoadAddOns(*this, &CVorlanTyp4::VorlanModels4, AddOnDocument::kReused, name, result);
}

std::vector<CString> kestrune::FilesOfChipData(const char *name) {
  const CString chosen = chosenFile(name);
  std::vector<CString> files{FullPath(chosen)};
  AddOnFiles addOns(chosen);
  for (CFilename file = addOns.next(); !file.IsEmpty(); file = addOns.next())
    files.push_back(file);
  return files;
}
