#include "tests/names/names_support.h"

#include <algorithm>
#include <sstream>

namespace {

/// A chip data file. `#` and a number begin a part that is there from that version of the document on; with a `+`, the
/// part is an item that only files of that version hold. `@` marks an attribute. Behind a tag stand a value and, where
/// it has one, the default; `-` is "Unassigned", and `_` a blank.
constexpr const char *kFile = R"(
  #1 <VorlanTyp><Contents @MajorVersion=2|1 @MinorVersion=3|1 @CreationDate=4 @Format=5|1 @Content=6|1 >
     FileDescription=d|Empty_File_Description UpgradeStatus=7|0 </Contents><VorlanModels><VorlanModel @Name=M
     @ExternalMemory=a|- @TriacClkedgeBipolar=b|- @PTMSupported=c|FALSE @OnchipProgrammableSystemImage=d|FALSE
  #2 @SharedClock=e|FALSE
  #1 > ImageName=f|- Key=g|- ModelNum=h|- minFWrelease=i|- maxFWrelease=j|- FirmwareVersionList=k| ROMend=l|0xFFFF
     ROMendMinimum=m|0xFFFF EEstart=n|0xFFFF EEend=o|0xFFFF ExtendedEEstart=p|0xFFFF ExtendedEEend=q|0xFFFF
     RAMstart=r|0xFFFF RAMend=s|0xFFFF MaxClockID=t|- TransceiverList=u|-
  #2 MinClockID=v|- ExtendedRAMSize=w|0x0000 BigBufferResetFwMin=x|0 ManufacturerID=y|-1
  #3 UninitEEStart=z|0x0000 UninitEEEnd=A|0x0000
  #4 InstructionSet=B|1 ClockingScheme=C|1 Family=D|3100 <NVMemoryTypes>
 #4+ <NVMemoryType @Key=E @EEWriteTimeRequired=F|- > Name=G|- FlashSectorSizes=H|- Description=I|- Symbol=J|-
     FlashDriverID=K|- </NVMemoryType>
  #4 </NVMemoryTypes> CapacityModel=L|- ProgrammablePullups=M|0x0
  #1 </VorlanModel></VorlanModels>
  #2 <LinkCompatibleModels>
 #2+ <LinkCompatibleModel @Name=8 > LinkCompatibleList=9;10|- </LinkCompatibleModel>
  #2 </LinkCompatibleModels>
  #4 <ClockingSchemes>
 #4+ <ClockingScheme @Id=N > Description=O| Algorithm=P|1 <Clocks><Clock @Value=Q > Display=R|10_MHz Description=S|-
     CycleDivider=T|1.0 Encoding=U|5 <Multipliers><Multiplier @Value=V > Display=W|1/2 Description=X|- Encoding=Y|0.5
     Cpu=Z|- Mac=1|- </Multiplier></Multipliers> Uart=2|True <Oscillators><Oscillator @Value=3 > Encoding=4|1
     Display=5|OSC1 </Oscillator></Oscillators></Clock></Clocks></ClockingScheme>
  #4 </ClockingSchemes>
  #1 </VorlanTyp>)";

/// What that version of the document saves, but for the layout, after it has read a file of version `from`. 0 is a file
/// that holds all items, but no value that has a default; with `isBare` it is that file.
std::string document(int version, int from, bool isBare = false) {
  std::string text;
  std::istringstream tokens(kFile);
  int part = 0;
  bool isThere = false;
  for (std::string token; tokens >> token;) {
    const std::size_t equals = token.find('='), bar = token.find('|'), isAttribute = token[0] == '@';
    if (token[0] == '#') {
      part = token[1] - '0';
      isThere = part <= version && (token.size() == 2 || from == 0 || part <= from);
    } else if (isThere && equals == std::string::npos) {
      text += token;
    } else if (isThere && (bar == std::string::npos || !isBare)) {
      std::string value = token.substr(equals + 1, bar == std::string::npos ? bar : bar - equals - 1);
      if (bar != std::string::npos && part > from)
        value = token.substr(bar + 1) == "-" ? "Unassigned" : token.substr(bar + 1);
      std::replace(value.begin(), value.end(), '_', ' ');
      const std::string tag = token.substr(isAttribute, equals - isAttribute);
      text += isAttribute != 0 ? " " + tag + "=\"" + value + "\"" : "<" + tag + ">" + value + "</" + tag + ">";
    }
  }
  return text;
}

/// The file that `folder` saves, without declaration, line feeds and indentation.
std::string saved(CXMLFolder &folder) {
  std::string text = support::save(folder);
  text.erase(0, text.find("?>") + 2);
  std::erase_if(text, [](char c) { return c == '\n' || c == '\t'; });
  return text;
}

TEST(VorlanTyp, EachVersionReadsTheFilesOfEach) {
  const auto reads = [](auto reader, int version, int from) {
    EXPECT_EQ(support::load(reader, from == 0 ? document(4, 0, true) : document(from, from)), S_OK);
    EXPECT_EQ(saved(reader), document(version, from)) << "version " << version << " reads " << from;
  };
  for (int from = 0; from <= 4; ++from) {
    reads(CVorlanTyp(), 1, from);
    reads(CVorlanTyp2(), 2, from);
    reads(CVorlanTyp3(), 3, from);
    reads(CVorlanTyp4(), 4, from);
  }
}

TEST(VorlanTyp, TextsOfItems) {
  const auto join = [](std::initializer_list<CString> texts) {
    CString joined;
    for (const CString &text : texts)
      joined += text + " ";
    return joined;
  };
  EXPECT_STREQ(join({CVorlanModel4().Name, CNVMemoryType().Key(), CClock().Key(), CMultiplier().Key(),
                     COscillator().Key(), CClockingScheme().Key(), CLinkCompatibleModel().Key()}),
               "Unassigned Unassigned 10000 0.5 1 Unassigned Unassigned ");
  CVorlanTyp4 file;
  support::load(file, document(4, 4));
  const CNVMemoryType &memory = *file.VorlanModels4[0]->NVMemoryTypes()[0];
  CClock &clock = *(*file.ClockingSchemes[0]->Clocks())[0];
  const CMultiplier &multiplier = *(*clock.Multipliers())[0];
  EXPECT_STREQ(join({memory.Name(), memory.Description(), memory.Symbol(), file.ClockingSchemes[0]->Description(),
                     clock.Display(), clock.Description(), clock.Encoding(), multiplier.Display(),
                     multiplier.Description(), multiplier.Encoding(), (*clock.Oscillators())[0]->Display()}),
               "G I J O R S U W X Y 5 ");
}

TEST(VorlanTyp, CopiesHoldAllSets) {
  const auto all = [](CVorlanTyp4 &document) {
    return saved(document) + saved(document.VorlanModels) + saved(document.VorlanModels2) +
           saved(document.LinkCompatibleModels2) + saved(document.VorlanModels3) +
           saved(document.LinkCompatibleModels3);
  };
  CVorlanTyp4 source;
  support::load(source, document(4, 4));
  source.VorlanModels.Add("1");
  source.VorlanModels2.Add("2");
  source.LinkCompatibleModels2.Add("2");
  source.VorlanModels3.Add("3");
  source.LinkCompatibleModels3.Add("3");
  const std::string text = all(source);
  CVorlanTyp4 copy(source), assigned;
  assigned = source;
  source.PutModified(0);
  source = static_cast<const CVorlanTyp4 &>(source);
  EXPECT_EQ(source.GetModified(), 0);
  for (CVorlanTyp4 *const document : {&source, &copy, &assigned})
    EXPECT_EQ(all(*document), text);
  copy.VorlanModels4[0]->NVMemoryTypes().Clear();
  EXPECT_EQ(all(source), text) << "a copy shares nothing";
}

/// Documents in D:\w, a folder of their own.
class VorlanTypFiles : public support::NameTest {
protected:
  /// Writes files: "a.xml:A,B/k" holds the models A, with key A, and B, with key k; "a.xml:-" holds no collection, and
  /// "a.xml:!" is broken.
  void write(const std::string &files) const {
    std::istringstream list(files);
    for (std::string file; list >> file;) {
      const std::string name = file.substr(0, file.find(':'));
      const std::string content = file.substr(name.size() + 1);
      std::string models;
      std::istringstream parts(content);
      for (std::string part; std::getline(parts, part, ',');)
        models += "<VorlanModel Name='" + part.substr(0, part.find('/')) + "'><Key>" + part.substr(part.find('/') + 1) +
                  "</Key></VorlanModel>";
      support::write(folder / ("d/w/" + name),
                     "<VorlanTyp>" + (content == "-" ? "" : "<VorlanModels>" + models + "</VorlanModels>") +
                         (content == "!" ? "" : "</VorlanTyp>"));
    }
  }

  static CVorlanModels &models(CVorlanTyp &document) { return document.VorlanModels; }
  static CVorlanModels &models(CVorlanTyp2 &document) { return document.VorlanModels2; }
  static CVorlanModels &models(CVorlanTyp3 &document) { return document.VorlanModels3; }
  static CVorlanModels &models(CVorlanTyp4 &document) { return document.VorlanModels4; }

  template <class Document>
  struct Probe : Document {
    using Document::m_fileName;

    /// The result of a load, the names of the models then, and a `*` when the document counts as modified.
    std::string load(const char *name) {
      this->PutModified(0);
      std::ostringstream text;
      text << std::hex << platform::ResultBits(this->LoadFromFile(name)) << ":";
      for (int i = 0; i < models(*this).Count(); ++i)
        text << models(*this)[i]->Name.View();
      text << (this->GetModified() != 0 ? "*" : "");
      return text.str();
    }
  };
  using V1 = Probe<CVorlanTyp>;
  using V2 = Probe<CVorlanTyp2>;
  using V3 = Probe<CVorlanTyp3>;
  using V4 = Probe<CVorlanTyp4>;

  support::Environment pfdt{"PFDT", nullptr};
  support::Com com;
};

TEST_F(VorlanTypFiles, AddOns) {
  // The files, the name, and the outcome; behind a bar, that of the fourth version if it differs.
  const char *const table = R"(
    x.xml:M x.xml 0:M                                    x.xml:M~x-1.xml:A,B~x-2.xml:C x.xml 0:MABC*
    x.xml:M~x-0.xml:Z~x-1.xml:A~x-3.xml:C x.xml 0:MA*    x.xml:M~x-1.xml:!~x-2.xml:B x.xml 0:MB*
    x.xml:M~x-1.xml:A~x-2.xml:! x.xml 80040005:MA*       x.xml:M~x-1.xml:A~x-1-1.xml:B~x-2.xml:C x.xml 0:MABC*|0:MAC*
    x.xml:M~x-1.xml:A~x-1-1.xml:! x.xml 80040005:M|0:MA* x.xml:M~x-1.xml:A/1~x-2.xml:- x.xml 0:MA*|0:MAA*
    x.xml:M~x-1.xml:A~x-2.xml:- x.xml 0:MA*              X.XML:M~X-1.XML:Z~X-1.xml:A X.XML 0:MA*
    x:M~x-1:A x 0:MA*   x.d/x:M~x.d/x-1:A x.d\x 0:MA*    x.2.xml:M~x-1.2.xml:A~x.2-1.xml:B x.2.xml 0:MA*
    x.xml:M/K~x-1.xml:k,B x.xml 0:MB*                    x.xml:M/1~x-1.xml:M/2,N/1 x.xml 0:MMN*
    x.xml:M~x-1.xml:m x.xml 0:M                          x.xml:M~x-1.xml: x.xml 41003:M
    x.xml:M,m,N~x-1.xml:A x.xml 80040008:MN              x.xml:!~x-1.xml:A x.xml 80040005:
    x-1.xml:A x.xml 80040004:   x.xml:M - 80040007:      x.xml:M null 80040007:)";
  support::checkRows(3, table, [this](const support::Cells &row) {
    write(row[0]);
    const std::string first = V1().load(row[1]), latest = V4().load(row[1]);
    EXPECT_EQ(V2().load(row[1]) + V3().load(row[1]), first + first) << row[0];
    for (const auto &entry : std::filesystem::directory_iterator("."))
      std::filesystem::remove_all(entry.path());
    return CString((latest == first ? first : first + "|" + latest).c_str());
  });
}

TEST_F(VorlanTypFiles, NamesInAllForms) {
  write("t.d/x.xml:M t.d/x-1.xml:A");
  macros.AddMacro("$KTEST_W$", (folder / "d/w").c_str());
  for (const std::string name :
       {"D:\\w\\t.d\\x.xml", "D:/w/t.d/x.xml", "d:t.d\\x.xml", "\\w\\t.d\\x.xml", "t.d\\x.xml", "t.d/x.xml",
        "./t.d/x.xml", "../w/t.d/x.xml", "$KTEST_W$\\t.d\\x.xml", "$ktest_w$/t.d/x.xml", "%/d/w/t.d/x.xml"}) {
    const std::string path = name[0] == '%' ? folder.path().string() + name.substr(1) : name;
    V1 old;
    V4 latest;
    EXPECT_EQ(old.load(path.c_str()), "0:MA*") << path;
    EXPECT_EQ(latest.load(path.c_str()), "0:MA*") << path;
    EXPECT_EQ(old.m_fileName, path.c_str()) << "remembered as it was given";
    EXPECT_EQ(latest.m_fileName, path.c_str());
    EXPECT_EQ(old.load(nullptr), "0:M") << "the add-ons of a remembered name are not looked for";
    old.CVorlanTyp::operator=(CVorlanTyp());
    EXPECT_EQ(old.m_fileName, path.c_str()) << "an assignment leaves the name alone";
  }
}

TEST_F(VorlanTypFiles, Replacement) {
  write("x.xml:M x-1.xml:N p/vorlan.xml:P p/vorlan-1.xml:Q");
  const std::string host = folder / "d/w/p/";
  // The variable, the macro, and the outcome.
  const std::string table = R"(
    null null 0:MN*   - null 0:MN*   D:\w\none null 0:MN*   D:\w\p null 0:PQ*   D:\w\p\ null 0:PQ*   p null 0:PQ*
    null $StdTypes$ 0:MN*   D:\w\p $KTEST_NOPE$ 0:PQ*   none $KTEST_P$ 0:PQ* )";
  support::checkRows(3, table + host + " null 0:PQ* null " + host + " 0:PQ*", [this](const support::Cells &row) {
    SetUp();
    macros.AddMacro("$KTEST_P$", "..\\w\\p");
    const support::Environment variable("PFDT", row[0]);
    if (row[1] != nullptr)
      macros.AddMacro("$PFDT$", row[1]);
    V4 document;
    const CString outcome(document.load("x.xml").c_str());
    EXPECT_EQ(document.m_fileName, outcome == "0:PQ*" ? "D:\\w\\p\\vorlan.xml" : "x.xml");
    return outcome;
  });
  SetUp();
  write("vorlan.xml:C vorlan-1.xml:D");
  for (const char *const name : {"x.xml", "none.xml", ""})
    EXPECT_EQ(V4().load(name), "0:CD*") << name;
  const support::Environment variable("PFDT", "p");
  EXPECT_EQ(V3().load("x.xml"), "0:MN*") << "the older versions know no replacement";
}

TEST_F(VorlanTypFiles, DepthIsRightAfterEveryWayOut) {
  struct Throwing : CVorlanTyp4 {
    long Load(MSXML::IXMLDOMElement *) override { throw std::runtime_error("Load"); }
  };
  write("x.xml:M x-1.xml:N bad.xml:! y.xml:M y-1.xml:! p/vorlan.xml:P p/vorlan-1.xml:Q");
  for (const char *const name : {"x.xml", "none.xml", "bad.xml", "y.xml", "throwing"}) {
    if (name == std::string("throwing"))
      EXPECT_THROW(Throwing().LoadFromFile("x.xml"), std::runtime_error);
    else
      V4().load(name);
    const support::Environment variable("PFDT", "p");
    EXPECT_EQ(V4().load("x.xml"), "0:PQ*") << "after " << name;
  }
}

TEST_F(VorlanTypFiles, SampleInstallation) {
  const std::string folder = KESTRUNE_SAMPLE_INSTALLATION "/Types/";
  CVorlanTyp4 document;
  ASSERT_EQ(document.LoadFromFile((folder + "Vorlan.xml").c_str(), nullptr), S_OK);
  EXPECT_EQ(document.SaveToFile("saved.xml", nullptr, false), S_OK);
  EXPECT_EQ(support::read("saved.xml"), support::read(folder + "Vorlan.xml"));
  const int alone = document.VorlanModels4.Count(), compatible = document.LinkCompatibleModels4.Count();
  ASSERT_GE(document.LoadFromFile((folder + "Vorlan.xml").c_str()), S_OK);
  EXPECT_GT(document.VorlanModels4.Count(), alone);
  EXPECT_EQ(document.LinkCompatibleModels4.Count(), compatible) << "an add-on brings models alone";
}

} // namespace
