#include "tests/faults/operations.h"

#include "kestrune/kestrune_xml.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace faults {

std::string Read(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void Write(const std::string &path, const std::string &bytes) { std::ofstream(path, std::ios::binary) << bytes; }

namespace {

std::string modelFile(const std::string &models) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VorlanTyp><Contents CreationDate=\"1\"/><VorlanModels>" +
         models +
         "</VorlanModels><ClockingSchemes><ClockingScheme Id=\"1\"><Clocks><Clock Value=\"5000\"><Display>5 "
         "MHz</Display>"
         "<Multipliers><Multiplier Value=\"0.5\"/></Multipliers></Clock></Clocks></ClockingScheme></ClockingSchemes>"
         "</VorlanTyp>\n";
}

std::string model(const std::string &name, const std::string &key) {
  return "<VorlanModel Name=\"" + name + "\"><Key>" + key +
         "</Key><ImageName>an image of some length</ImageName></VorlanModel>";
}

std::string transceiverFile(const std::string &name, const std::string &id) {
  return "<?xml version=\"1.0\"?>\n<StdXcvr><Contents CreationDate=\"1\"/><Transceivers><Transceiver Name=\"" + name +
         "\"><std_id>" + id +
         "</std_id><ModeSpec><xcvr_gp_data>0x12</xcvr_gp_data></ModeSpec></Transceiver></Transceivers></StdXcvr>\n";
}

std::string identityFile(const std::string &encoding, const std::string &name) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding +
         "\"?>\n<SPIDData><Contents CreationDate=\"1\"/><ManufacturerIDs><ManufacturerID Name=\"" + name +
         "\" Number=\"7\"/></ManufacturerIDs></SPIDData>\n";
}

std::string inUtf16(const std::string &ascii) {
  std::string wide = "\xFF\xFE";
  for (const char c : ascii)
    wide.append({c, '\0'});
  return wide;
}

/// The bytes that a save of `document` writes.
std::string savedText(CXMLFolder &document) {
  document.SaveToFile("outcome.xml", nullptr, TRUE);
  return Read("outcome.xml");
}

/// An operation whose results are result codes of the library.
class OnDocument : public Operation {
public:
  bool documents(long result) const override {
    constexpr long kFailures[] = {KRX_E_COM_CREATE, KRX_E_FILE_NOT_FOUND, KRX_E_UNEXPECTED_DATA, KRX_E_SAVE_FAILED,
                                  KRX_E_LOAD_EXCEPTION, KRX_E_WRITE_PROTECTED,
                                  // Without a current directory a relative name cannot be resolved.
                                  KRX_E_SAVE_NOT_NAMED, KRX_E_LOAD_NOT_NAMED};
    return std::find(std::begin(kFailures), std::end(kFailures), result) != std::end(kFailures);
  }
};

template <class Document>
class Load : public OnDocument {
public:
  explicit Load(const char *name) : m_name(name) {}
  long act() override { return m_document.LoadFromFile(m_name); }
  std::string outcome() override { return savedText(m_document); }

private:
  const char *m_name;
  Document m_document;
};

template <class Document>
class Copy : public OnDocument {
public:
  explicit Copy(const char *name) {
    m_source.LoadFromFile(name);
    m_target.LoadFromFile(name);
  }
  long act() override {
    m_target = m_source;
    m_constructed = std::make_unique<Document>(m_source);
    return S_OK;
  }
  std::string outcome() override { return savedText(m_target) + savedText(*m_constructed); }

private:
  Document m_source;
  Document m_target;
  std::unique_ptr<Document> m_constructed;
};

const std::string kOldLonger(5000, 'o');

long saveInPlace(CXMLFolder &document, const char *path) { return document.SaveToFile(path, nullptr, TRUE); }
long saveReplacing(CXMLFolder &document, const char *path) {
  return kestrune::SaveReplacing(document, path, nullptr, TRUE);
}

/// Saves a document of a little more than `size` bytes over a file that holds `old`, or creates the file if `old` is
/// null.
class Save : public OnDocument {
public:
  Save(decltype(saveInPlace) *save, const char *path, const char *old, std::size_t size = 300)
      : m_save(save), m_path(path), m_old(old != nullptr ? old : "") {
    fs::remove_all("new");
    if (old != nullptr)
      Write(path, old);
    m_document.Contents.CreationDate = "1";
    m_document.UIInfo.ClockSpeeds = std::string(size, 's').c_str();
    m_document.SaveToFile("expected.xml", nullptr, TRUE);
    m_new = Read("expected.xml");
    m_document.PutModified(1);
  }
  long act() override { return m_save(m_document, m_path); }
  std::string outcome() override { return Read(m_path); }
  std::string damage() override {
    const std::string now = Read(m_path);
    if (now != m_old && now != m_new)
      return "the file is neither old nor new";
    if (m_old.empty() && now.empty() && fs::exists("new"))
      return "a new file or folder stays";
    if (now != m_new && m_document.GetModified() == 0)
      return "the document is no longer modified";
    return {};
  }

private:
  decltype(saveInPlace) *m_save;
  const char *m_path;
  std::string m_old;
  std::string m_new;
  CKestruneUI m_document;
};

/// Gives access to the whole table of macros.
class Names : public CFilename {
public:
  using CFilename::CFilename;
  std::string table() const {
    std::string all;
    for (int i = 0; i < GetMacroCount(); ++i)
      all += std::string(GetMacroName(i)) + '=' + std::string(GetMacroValue(i)) + '\n';
    return all;
  }
};

class Resolve : public Operation {
public:
  // Without a current directory, for example, a name has no full path and no file is found.
  bool documents(long result) const override { return result >= 0; }
  long act() override {
    CString exploded;
    const bool known = CMacroString("$StdTypes$\\$NONE$\\x").Explode(exploded, 10);
    const bool absolute = CFilename("$StdVorlanTyp$").GetAbsolute(m_absolute, nullptr);
    const bool relative = m_absolute.GetRelative(m_relative, "C:\\somewhere\\else");
    const int found = CFilename("Vorlan.xml").FindFile(m_found, "C:\\none;" + m_absolute.GetPath());
    m_exploded = exploded;
    return (known ? 8 : 0) + (absolute ? 4 : 0) + (relative ? 2 : 0) + found;
  }
  std::string outcome() override {
    return std::string(m_exploded) + ' ' + std::string(m_absolute) + ' ' + std::string(m_relative) + ' ' +
           std::string(m_found) + '\n' + Names().table();
  }

private:
  CString m_exploded;
  CFilename m_absolute;
  CFilename m_relative;
  CFilename m_found;
};

class AddMacro : public Operation {
public:
  AddMacro() {
    for (int i = 0; i < 80; ++i)
      Names().AddMacro(("$M" + std::to_string(i) + "$").c_str(), "a value that is longer than what lies in place");
    m_before = Names().table();
  }
  bool documents(long) const override { return false; }
  long act() override { return Names().AddMacro("$M40$", "another value of some length, not in place either"); }
  std::string outcome() override { return Names().table(); }
  std::string damage() override { return Names().table() == m_before ? "" : "the table of macros has changed"; }

private:
  std::string m_before;
};

class CopyFile : public Operation {
public:
  CopyFile() { Write("copy.xml", "old"); }
  bool documents(long result) const override { return result >= 1 && result <= 5; }
  long act() override {
    const CFilename source("Types/Vorlan.xml");
    return source.CopyFileA("copy.xml");
  }
  std::string outcome() override { return Read("copy.xml"); }
  std::string damage() override {
    const std::string now = Read("copy.xml");
    return now == "old" || now == Read("Types/Vorlan.xml") || !fs::exists("copy.xml") ? "" : "a copy is torn";
  }
};

template <class Type, class... Arguments>
std::function<std::unique_ptr<Operation>()> make(Arguments... arguments) {
  return [=] { return std::make_unique<Type>(arguments...); };
}

} // namespace

WorkFolder::WorkFolder() : m_path((fs::temp_directory_path() / "kestrune-faults-XXXXXX").string()) {
  if (::mkdtemp(m_path.data()) == nullptr)
    throw std::runtime_error("no work folder can be made");
  fs::current_path(m_path);
  ::setenv("KESTRUNE_REGISTRY", (m_path + "/registry.reg").c_str(), 1);
  fs::create_directory("Types");
  Write("registry.reg", "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Kestrune]\n\"Kestrune Path\"=\"" + m_path + "\"\n");
  Write("Types/Vorlan.xml", modelFile(model("One", "K1") + model("Two", "K2")));
  Write("Types/Vorlan-1.xml", modelFile(model("Three", "K3")));
  Write("Types/StdXcvr.xml", transceiverFile("Standard", "1"));
  Write("Types/UserXcvr.xml", transceiverFile("of the user", "2"));
  Write("Types/spidData.xml", identityFile("UTF-8", "Gr\xC3\xBCvendahl Regeltechnik"));
  Write("Types/spidData-utf16.xml", inUtf16(identityFile("UTF-16", "Brindlecote Lighting")));
  Write("Types/spidData-sjis.xml", identityFile("Shift_JIS", "\x83\x5C\x83\x74\x83\x67"));
  Write("Types/KestruneUI.xml",
        "<KestruneUI><Contents CreationDate=\"1\"/><UIInfo><ClockSpeeds>5 MHz</ClockSpeeds></UIInfo></KestruneUI>");
}

WorkFolder::~WorkFolder() {
  std::error_code ignored;
  fs::current_path("/", ignored);
  fs::remove_all(m_path, ignored);
}

std::vector<Scenario> Scenarios() {
  constexpr bool kWarm = true;
  constexpr bool kCold = false;
  return {
      {"load chips with an add-on", kWarm, make<Load<CVorlanTyp4>>("Types/Vorlan.xml"), true},
      {"load chips by macro, first", kCold, make<Load<CVorlanTyp4>>("$StdVorlanTyp$"), true},
      {"load transceivers and the user's", kWarm, make<Load<CStdXcvr3>>("Types/StdXcvr.xml"), true},
      {"load transceivers by macro, first", kCold, make<Load<CStdXcvr3>>("$StdXcvrTyp$"), true},
      {"load identity data", kWarm, make<Load<CSpidData2>>("Types/spidData.xml")},
      {"load identity data in UTF-16", kWarm, make<Load<CSpidData2>>("Types/spidData-utf16.xml")},
      {"load identity data in Shift_JIS, first", kCold, make<Load<CSpidData2>>("Types/spidData-sjis.xml")},
      {"load the user interface", kWarm, make<Load<CKestruneUI>>("Types/KestruneUI.xml")},
      {"load the sample chips", kWarm, make<Load<CVorlanTyp4>>(KESTRUNE_SAMPLE_INSTALLATION "/Types/Vorlan.xml"), false,
       211},
      {"save as a new file in new folders", kWarm, make<Save>(saveInPlace, "new/folder/ui.xml", nullptr)},
      {"save as a new file, first", kCold, make<Save>(saveInPlace, "new/ui.xml", nullptr)},
      {"save over a shorter file", kWarm, make<Save>(saveInPlace, "shorter.xml", "short")},
      {"save over a longer file", kWarm, make<Save>(saveInPlace, "longer.xml", kOldLonger.c_str())},
      {"save in several pieces", kWarm, make<Save>(saveInPlace, "large.xml", kOldLonger.c_str(), 150000)},
      {"save replacing", kWarm, make<Save>(saveReplacing, "replaced.xml", "short")},
      {"copy and assign chips", kWarm, make<Copy<CVorlanTyp4>>("Types/Vorlan.xml")},
      {"copy and assign transceivers", kWarm, make<Copy<CStdXcvr3>>("Types/StdXcvr.xml")},
      {"resolve names", kWarm, make<Resolve>()},
      {"resolve names, first", kCold, make<Resolve>(), true},
      {"replace a macro in a large table", kWarm, make<AddMacro>()},
      {"copy a file", kWarm, make<CopyFile>()},
  };
}

} // namespace faults
