#include "tests/names/names_support.h"

#include <thread>

namespace {

std::string chipData(const std::string &name) { return support::read(KESTRUNE_TEST_DATA "/chip/" + name); }

template <class Document>
void expectSaves(const std::string &saved, const std::string &loaded) {
  SCOPED_TRACE(loaded + " in, " + saved + " out");
  Document document;
  EXPECT_EQ(support::load(document, chipData(loaded)), S_OK);
  EXPECT_EQ(support::save(document), chipData(saved));
}

TEST(VorlanTyp, EachVersionReadsItsMembersAndDropsLaterOnes) {
  expectSaves<CVorlanTyp4>("version-4.xml", "version-4.xml");
  for (const std::string file : {"version-3.xml", "version-4.xml"})
    expectSaves<CVorlanTyp3>("version-3.xml", file);
  for (const std::string file : {"version-2.xml", "version-3.xml", "version-4.xml"})
    expectSaves<CVorlanTyp2>("version-2.xml", file);
  for (const std::string file : {"version-1.xml", "version-2.xml", "version-3.xml", "version-4.xml"})
    expectSaves<CVorlanTyp>("version-1.xml", file);
}

TEST(VorlanTyp, MissingMembersKeepTheirDefaults) {
  expectSaves<CVorlanTyp4>("items-with-defaults.xml", "items-without-members.xml");
  expectSaves<CVorlanTyp4>("version-1-saved-by-4.xml", "version-1.xml");
}

TEST(VorlanTyp, ItemsAreCopiedAndInitialised) {
  CVorlanTyp first;
  CVorlanTyp2 second;
  CVorlanTyp3 third;
  CVorlanTyp4 file;
  support::load(first, chipData("version-1.xml"));
  support::load(second, chipData("version-2.xml"));
  support::load(third, chipData("version-3.xml"));
  support::load(file, chipData("version-4.xml"));
  support::expectCopiesAndInit(*first.VorlanModels[0]);
  support::expectCopiesAndInit(*second.VorlanModels2[0]);
  support::expectCopiesAndInit(*third.VorlanModels3[0]);
  support::expectCopiesAndInit(*file.LinkCompatibleModels4[0]);
  CVorlanModel4 &model = *file.VorlanModels4[0];
  support::expectCopiesAndInit(*model.NVMemoryTypes()[0]);
  model.NVMemoryTypes().Clear();
  support::expectCopiesAndInit(model);
  CClockingScheme &scheme = *file.ClockingSchemes[0];
  CClock &clock = *(*scheme.Clocks())[0];
  support::expectCopiesAndInit(*(*clock.Multipliers())[0]);
  support::expectCopiesAndInit(*(*clock.Oscillators())[0]);
  clock.Multipliers()->Clear();
  clock.Oscillators()->Clear();
  support::expectCopiesAndInit(clock);
  scheme.Clocks()->Clear();
  support::expectCopiesAndInit(scheme);
}

template <class Document>
void expectInitKeepsItems(const std::string &name) {
  SCOPED_TRACE(name);
  Document document, fresh;
  support::load(document, chipData(name));
  document.Init();
  document.Contents.CreationDate = fresh.Contents.CreationDate = 4;
  EXPECT_EQ(support::save(document.Contents), support::save(fresh.Contents));
  const std::string saved = support::save(document), file = chipData(name);
  EXPECT_EQ(saved.substr(saved.find("<VorlanModels>")), file.substr(file.find("<VorlanModels>")));
}

TEST(VorlanTyp, InitOfALoadedDocumentRenewsTheHeaderAlone) {
  expectInitKeepsItems<CVorlanTyp>("version-1.xml");
  expectInitKeepsItems<CVorlanTyp2>("version-2.xml");
  expectInitKeepsItems<CVorlanTyp3>("version-3.xml");
  expectInitKeepsItems<CVorlanTyp4>("version-4.xml");
  const CVorlanTyp4 fresh;
  EXPECT_STREQ(fresh.Contents.MajorVersion, "1");
  EXPECT_STREQ(fresh.Contents.MinorVersion, "1");
  EXPECT_STREQ(fresh.Contents.Format, "1");
  EXPECT_STREQ(fresh.Contents.Content, "1");
}

TEST(VorlanTyp, AccessorsGiveTheTextOfTheirMember) {
  CVorlanTyp4 file;
  ASSERT_EQ(support::load(file, chipData("version-4.xml")), S_OK);
  CVorlanModel4 &model = *file.VorlanModels4[0];
  const CNVMemoryType &memory = *model.NVMemoryTypes()[0];
  CClockingScheme &scheme = *file.ClockingSchemes[0];
  CClock &clock = *(*scheme.Clocks())[0];
  const CMultiplier &multiplier = *(*clock.Multipliers())[0];
  const COscillator &oscillator = *(*clock.Oscillators())[0];
  const struct {
    const char *accessor;
    CString text;
    const char *expected;
  } rows[] = {
      {"model key", model.Key(), "g"},
      {"memory key", memory.Key(), "E"},
      {"memory name", memory.Name(), "G"},
      {"memory description", memory.Description(), "I"},
      {"memory symbol", memory.Symbol(), "J"},
      {"scheme key", scheme.Key(), "N"},
      {"scheme description", scheme.Description(), "O"},
      {"clock key", clock.Key(), "Q"},
      {"clock display", clock.Display(), "R"},
      {"clock description", clock.Description(), "S"},
      {"clock encoding", clock.Encoding(), "U"},
      {"multiplier key", multiplier.Key(), "V"},
      {"multiplier display", multiplier.Display(), "W"},
      {"multiplier description", multiplier.Description(), "X"},
      {"multiplier encoding", multiplier.Encoding(), "Y"},
      {"oscillator key", oscillator.Key(), "3"},
      {"oscillator display", oscillator.Display(), "5"},
      {"link table key", file.LinkCompatibleModels4[0]->Key(), "8"},
  };
  for (const auto &row : rows)
    EXPECT_STREQ(row.text, row.expected) << row.accessor;
}

TEST(VorlanTyp, CopiesHoldTheCollectionsOfAllVersions) {
  CVorlanTyp4 source;
  support::load(source, chipData("version-4.xml"));
  source.VorlanModels.Add("1");
  source.VorlanModels2.Add("2");
  source.LinkCompatibleModels2.Add("2");
  source.VorlanModels3.Add("3");
  source.LinkCompatibleModels3.Add("3");
  CVorlanTyp4 copy(source), assigned;
  assigned = source;
  source.PutModified(0);
  source = static_cast<const CVorlanTyp4 &>(source);
  EXPECT_EQ(source.GetModified(), 0) << "an assignment to itself";
  for (CVorlanTyp4 *const document : {&source, &copy, &assigned}) {
    EXPECT_EQ(support::save(*document), chipData("version-4.xml"));
    EXPECT_STREQ(document->VorlanModels[0]->Name, "1");
    EXPECT_STREQ(document->VorlanModels2[0]->Name, "2");
    EXPECT_STREQ(document->LinkCompatibleModels2[0]->Name, "2");
    EXPECT_STREQ(document->VorlanModels3[0]->Name, "3");
    EXPECT_STREQ(document->LinkCompatibleModels3[0]->Name, "3");
  }
  copy.VorlanModels4[0]->NVMemoryTypes().Clear();
  EXPECT_EQ(source.VorlanModels4[0]->NVMemoryTypes().Count(), 1) << "a copy shares nothing";
}

struct Model {
  const char *name;
  const char *key = name;
};

/// A chip data file with these models.
std::string with(const std::vector<Model> &models) {
  std::string text;
  for (const auto &[name, key] : models)
    text += std::string("<VorlanModel Name='") + name + "'><Key>" + key + "</Key></VorlanModel>";
  return "<VorlanTyp><VorlanModels>" + text + "</VorlanModels></VorlanTyp>";
}

const std::string kNoCollection = "<VorlanTyp/>";
const std::string kBroken = "<VorlanTyp>";

/// What a load gave, written as "A B, modified" or "80040005: A B": the result unless it is 0, the names of the models,
/// and whether the document counts as modified.
template <class Document, class Models>
std::string outcome(Document &document, Models Document::*models, const char *name) {
  document.PutModified(0);
  std::ostringstream text;
  if (const long result = document.LoadFromFile(name); result != S_OK)
    text << std::hex << kestrune::platform::ResultBits(result) << ": ";
  for (int i = 0; i < (document.*models).Count(); ++i)
    text << (i > 0 ? " " : "") << (document.*models)[i]->Name.View();
  text << (document.GetModified() != 0 ? ", modified" : "");
  return text.str();
}
std::string loadOf(CVorlanTyp &&document, const char *name) {
  return outcome(document, &CVorlanTyp::VorlanModels, name);
}
std::string loadOf(CVorlanTyp2 &&document, const char *name) {
  return outcome(document, &CVorlanTyp2::VorlanModels2, name);
}
std::string loadOf(CVorlanTyp3 &&document, const char *name) {
  return outcome(document, &CVorlanTyp3::VorlanModels3, name);
}
std::string loadOf(CVorlanTyp4 &&document, const char *name) {
  return outcome(document, &CVorlanTyp4::VorlanModels4, name);
}

/// Documents in D:\w, a folder of their own.
class VorlanTypFiles : public support::NameTest {
protected:
  void write(const std::string &name, const std::string &bytes) const {
    support::write(folder / ("d/w/" + name), bytes);
  }

  support::Environment pfdt{"PFDT", nullptr};
  support::Com com;
};

TEST_F(VorlanTypFiles, AddOnsBringModels) {
  const std::string m = with({{"M"}}), a = with({{"A"}}), b = with({{"B"}}), c = with({{"C"}});
  const std::string a1 = with({{"A", "1"}}), m1 = with({{"M", "1"}}), mk = with({{"M", "K"}});
  const std::string kb = with({{"k"}, {"B"}}), mn = with({{"M", "2"}, {"N", "1"}}), twice = with({{"M"}, {"m"}, {"N"}});
  const struct {
    const char *what;
    std::vector<std::pair<const char *, std::string>> files; // without their .xml
    const char *expected;
    const char *ofVersion4 = expected;
  } rows[] = {
      {"none", {{"x", m}}, "M"},
      {"in the order of their numbers", {{"x", m}, {"x-1", a}, {"x-2", b}}, "M A B, modified"},
      {"from 1 to the first gap", {{"x", m}, {"x-0", c}, {"x-1", a}, {"x-3", c}}, "M A, modified"},
      {"a broken one before a sound one", {{"x", m}, {"x-1", kBroken}, {"x-2", b}}, "M B, modified"},
      {"a broken one at the end", {{"x", m}, {"x-1", a}, {"x-2", kBroken}}, "80040005: M A, modified"},
      {"of add-ons", {{"x", m}, {"x-1", a}, {"x-1-1", b}, {"x-2", c}}, "M A B C, modified", "M A C, modified"},
      {"a broken one of one", {{"x", m}, {"x-1", a}, {"x-1-1", kBroken}}, "80040005: M", "M A, modified"},
      {"one without models, after one",
       {{"x", m}, {"x-1", a1}, {"x-2", kNoCollection}},
       "M A, modified",
       "M A A, modified"}, // version 4 has one document for all add-ons
      {"a name that is a key, in another case", {{"x", mk}, {"x-1", kb}}, "M B, modified"},
      {"a name that is a name, a key that is a key", {{"x", m1}, {"x-1", mn}}, "M M N, modified"},
      {"nothing to add", {{"x", m}, {"x-1", with({{"m"}})}}, "M"},
      {"an empty collection", {{"x", m}, {"x-1", with({})}}, "41003: M"},
      {"a key twice in the file itself", {{"x", twice}, {"x-1", a}}, "80040008: M N"},
      {"the file itself broken", {{"x", kBroken}, {"x-1", a}}, "80040005: "},
      {"the file itself missing", {{"x-1", a}}, "80040004: "},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.what);
    for (const auto &[name, bytes] : row.files)
      write(std::string(name) + ".xml", bytes);
    EXPECT_EQ(loadOf(CVorlanTyp(), "x.xml"), row.expected);
    EXPECT_EQ(loadOf(CVorlanTyp2(), "x.xml"), row.expected);
    EXPECT_EQ(loadOf(CVorlanTyp3(), "x.xml"), row.expected);
    EXPECT_EQ(loadOf(CVorlanTyp4(), "x.xml"), row.ofVersion4);
    for (const auto &entry : std::filesystem::directory_iterator("."))
      std::filesystem::remove_all(entry.path());
  }
}

TEST_F(VorlanTypFiles, AddOnNames) {
  const struct {
    const char *file;
    const char *addOn;
    const char *name;
    const char *expected = "M A, modified";
  } rows[] = {
      {"X.XML", "X-1.xml", "X.XML"},
      // The extension is in lower case, and begins at the first dot of the last segment.
      {"x.d/x", "x.d/x-1", "x.d\\x"},
      {"x.2.xml", "x-1.2.xml", "x.2.xml"},
      {"y.xml", "y-1.xml", "", "80040007: "},
      {"y.xml", "y-1.xml", nullptr, "80040007: "},
  };
  for (const auto &row : rows) {
    write(row.file, with({{"M"}}));
    write(row.addOn, with({{"A"}}));
    EXPECT_EQ(loadOf(CVorlanTyp(), row.name), row.expected) << row.file;
    EXPECT_EQ(loadOf(CVorlanTyp4(), row.name), row.expected) << row.file;
  }
}

template <class Document>
struct WithFileName : Document {
  using Document::m_fileName;
};

TEST_F(VorlanTypFiles, NamesInAllForms) {
  write("t.d/x.xml", with({{"M"}}));
  write("t.d/x-1.xml", with({{"A"}}));
  macros.AddMacro("$KTEST_W$", (folder / "d/w").c_str());
  const std::string names[] = {
      R"(D:\w\t.d\x.xml)",
      // The companions of a name with `/` are those of the same name with `\`.
      "D:/w/t.d/x.xml",
      R"(d:t.d\x.xml)",
      "./../w/t.d/x.xml",
      R"($KTEST_W$\t.d\x.xml)",
      "$ktest_w$/t.d/x.xml",
      folder / "d/w/t.d/x.xml",
  };
  for (const std::string &name : names) {
    SCOPED_TRACE(name);
    EXPECT_EQ(loadOf(CVorlanTyp(), name.c_str()), "M A, modified");
    EXPECT_EQ(loadOf(CVorlanTyp4(), name.c_str()), "M A, modified");
    WithFileName<CVorlanTyp> document;
    document.LoadFromFile(name.c_str());
    EXPECT_EQ(document.m_fileName, name.c_str()) << "remembered as it was given";
    document.LoadFromFile(nullptr);
    EXPECT_EQ(document.VorlanModels.Count(), 1) << "a remembered name brings no add-ons";
    document.CVorlanTyp::operator=(CVorlanTyp());
    EXPECT_EQ(document.m_fileName, name.c_str()) << "an assignment leaves the name alone";
  }
}

TEST_F(VorlanTypFiles, AReplacementTakesThePlaceOfAnyFile) {
  write("x.xml", with({{"M"}}));
  write("x-1.xml", with({{"N"}}));
  write("p/vorlan.xml", with({{"P"}}));
  write("p/vorlan-1.xml", with({{"Q"}}));
  const std::string host = folder / "d/w/p/";
  const struct {
    const char *variable; // PFDT in the environment
    const char *macro;    // $PFDT$ in the table
    bool isReplaced;
  } rows[] = {
      {nullptr, nullptr, false},
      // A folder that has no such file replaces nothing.
      {"", nullptr, false},
      {"D:\\w\\none", nullptr, false},
      {"D:\\w\\p\\", nullptr, true},
      {"p", nullptr, true},
      {host.c_str(), nullptr, true},
      // The table comes before the environment.
      {nullptr, host.c_str(), true},
      {nullptr, "$StdTypes$", false},
      {"none", "$KTEST_P$", true},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.variable) + ", $PFDT$ " + testing::PrintToString(row.macro));
    SetUp();
    macros.AddMacro("$KTEST_P$", "..\\w\\p");
    const support::Environment variable("PFDT", row.variable);
    if (row.macro != nullptr)
      macros.AddMacro("$PFDT$", row.macro);
    EXPECT_EQ(loadOf(CVorlanTyp4(), "x.xml"), row.isReplaced ? "P Q, modified" : "M N, modified");
    WithFileName<CVorlanTyp4> document;
    document.LoadFromFile("x.xml");
    EXPECT_EQ(document.m_fileName, row.isReplaced ? "D:\\w\\p\\vorlan.xml" : "x.xml");
  }
}

TEST_F(VorlanTypFiles, WithoutPfdtTheCurrentDirectoryHoldsTheReplacement) {
  write("x.xml", with({{"M"}}));
  write("vorlan.xml", with({{"C"}}));
  write("vorlan-1.xml", with({{"D"}}));
  for (const char *const name : {"x.xml", "none.xml", ""})
    EXPECT_EQ(loadOf(CVorlanTyp4(), name), "C D, modified") << name;
  EXPECT_EQ(loadOf(CVorlanTyp3(), "x.xml"), "M") << "the older versions know no replacement";
}

TEST_F(VorlanTypFiles, AReplacementIsLookedForAfterEveryWayOutOfALoad) {
  struct Throwing : CVorlanTyp4 {
    long Load(MSXML::IXMLDOMElement *) override { throw std::runtime_error("Load"); }
  };
  write("x.xml", with({{"M"}}));
  write("bad.xml", kBroken);
  write("y.xml", with({{"M"}}));
  write("y-1.xml", kBroken);
  write("p/vorlan.xml", with({{"P"}}));
  const auto expectReplacement = [](const char *after) {
    const support::Environment variable("PFDT", "p");
    EXPECT_EQ(loadOf(CVorlanTyp4(), "x.xml"), "P") << "after " << after;
  };
  for (const char *const name : {"x.xml", "none.xml", "bad.xml", "y.xml"}) {
    CVorlanTyp4().LoadFromFile(name);
    expectReplacement(name);
  }
  EXPECT_THROW(Throwing().LoadFromFile("x.xml"), std::runtime_error);
  expectReplacement("an exception");
}

TEST_F(VorlanTypFiles, EachThreadGetsItsAddOns) {
  write("x.xml", with({{"M"}}));
  write("x-1.xml", with({{"A"}}));
  std::vector<std::thread> threads;
  std::vector<std::string> outcomes(4);
  for (std::string &outcome : outcomes)
    threads.emplace_back([&outcome] {
      const support::Com com;
      for (int i = 0; i < 50 && (i == 0 || outcome == "M A, modified"); ++i)
        outcome = loadOf(CVorlanTyp4(), "x.xml");
    });
  for (std::thread &thread : threads)
    thread.join();
  for (const std::string &outcome : outcomes)
    EXPECT_EQ(outcome, "M A, modified");
}

TEST_F(VorlanTypFiles, SampleInstallation) {
  const std::string path = KESTRUNE_SAMPLE_INSTALLATION "/Types/Vorlan.xml";
  CVorlanTyp4 document;
  ASSERT_EQ(document.LoadFromFile(path.c_str(), nullptr), S_OK);
  EXPECT_EQ(support::save(document), support::read(path));
  const int models = document.VorlanModels4.Count();
  const int links = document.LinkCompatibleModels4.Count();
  ASSERT_GE(document.LoadFromFile(path.c_str()), S_OK);
  EXPECT_GT(document.VorlanModels4.Count(), models);
  EXPECT_EQ(document.LinkCompatibleModels4.Count(), links) << "an add-on brings models alone";
}

} // namespace
