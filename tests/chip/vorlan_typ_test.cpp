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

/// The header is renewed, the items stay, and in a model what has a default.
template <class Document, class Models>
Document initialised(const std::string &name, Models Document::*models) {
  SCOPED_TRACE(name);
  Document document, fresh;
  support::load(document, chipData(name));
  document.Init();
  document.Contents.CreationDate = fresh.Contents.CreationDate = 4;
  EXPECT_EQ(support::save(document.Contents), support::save(fresh.Contents));
  EXPECT_STREQ(document.Contents.MajorVersion, "1");
  EXPECT_STREQ(document.Contents.MinorVersion, "1");
  EXPECT_STREQ(document.Contents.Format, "1");
  EXPECT_STREQ(document.Contents.Content, "1");
  EXPECT_STREQ((document.*models)[0]->PTMSupported, "c");
  (document.*models)[0]->Init();
  EXPECT_STREQ((document.*models)[0]->PTMSupported, "FALSE");
  EXPECT_STREQ((document.*models)[0]->ImageName, "f") << "without a default the text stays";
  return document;
}

TEST(VorlanTyp, InitOfALoadedDocumentRenewsTheHeaderAlone) {
  initialised("version-1.xml", &CVorlanTyp::VorlanModels);
  CVorlanTyp2 second = initialised("version-2.xml", &CVorlanTyp2::VorlanModels2);
  CVorlanTyp3 third = initialised("version-3.xml", &CVorlanTyp3::VorlanModels3);
  CVorlanTyp4 fourth = initialised("version-4.xml", &CVorlanTyp4::VorlanModels4);
  EXPECT_STREQ(second.VorlanModels2[0]->SharedClock, "FALSE");
  EXPECT_STREQ(third.VorlanModels3[0]->UninitEEEnd, "0x0000");
  EXPECT_EQ(fourth.VorlanModels4[0]->Family(), 3100);
}

TEST(VorlanTyp, AccessorsGiveTheTextOfTheirMember) {
  CVorlanTyp4 file;
  ASSERT_EQ(support::load(file, chipData("version-4.xml")), S_OK);
  const CNVMemoryType &memory = *file.VorlanModels4[0]->NVMemoryTypes()[0];
  CClock &clock = *(*file.ClockingSchemes[0]->Clocks())[0];
  const CMultiplier &multiplier = *(*clock.Multipliers())[0];
  EXPECT_STREQ(file.VorlanModels4[0]->Key(), "g");
  EXPECT_STREQ(memory.Name(), "G");
  EXPECT_STREQ(memory.Description(), "I");
  EXPECT_STREQ(memory.Symbol(), "J");
  EXPECT_STREQ(clock.Display(), "R");
  EXPECT_STREQ(clock.Description(), "S");
  EXPECT_STREQ(clock.Encoding(), "U");
  EXPECT_STREQ(multiplier.Display(), "W");
  EXPECT_STREQ(multiplier.Description(), "X");
  EXPECT_STREQ(multiplier.Encoding(), "Y");
}

TEST(VorlanTyp, CopiesHoldTheCollectionsOfAllVersions) {
  CVorlanTyp4 source;
  support::load(source, chipData("version-4.xml"));
  source.VorlanModels.Add("1");
  source.VorlanModels2.Add("2");
  source.LinkCompatibleModels2.Add("2");
  source.VorlanModels3.Add("3");
  source.LinkCompatibleModels3.Add("3");
  support::expectCopies(source);
  CVorlanTyp4 copy(source);
  EXPECT_STREQ(copy.VorlanModels[0]->Name, "1");
  EXPECT_STREQ(copy.VorlanModels2[0]->Name, "2");
  EXPECT_STREQ(copy.LinkCompatibleModels2[0]->Name, "2");
  EXPECT_STREQ(copy.VorlanModels3[0]->Name, "3");
  EXPECT_STREQ(copy.LinkCompatibleModels3[0]->Name, "3");
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

const std::string kBroken = "<VorlanTyp>";

CVorlanModels &modelsOf(CVorlanTyp &document) { return document.VorlanModels; }
CVorlanModels2 &modelsOf(CVorlanTyp2 &document) { return document.VorlanModels2; }
CVorlanModels3 &modelsOf(CVorlanTyp3 &document) { return document.VorlanModels3; }
CVorlanModels4 &modelsOf(CVorlanTyp4 &document) { return document.VorlanModels4; }

/// What a load gives, written as "A B, modified" or "80040005: A B": the result unless it is 0, the names of the
/// models, and whether the document counts as modified.
template <class Document>
std::string loadOf(const char *name) {
  Document document;
  document.PutModified(0);
  std::ostringstream text;
  if (const long result = document.LoadFromFile(name); result != S_OK)
    text << std::hex << kestrune::platform::ResultBits(result) << ": ";
  auto &models = modelsOf(document);
  for (int i = 0; i < models.Count(); ++i)
    text << (i > 0 ? " " : "") << models[i]->Name.View();
  text << (document.GetModified() != 0 ? ", modified" : "");
  return text.str();
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
  const std::string a1 = with({{"A", "1"}}), mk = with({{"M", "K"}}), none = "<VorlanTyp/>";
  const struct {
    const char *what;
    std::vector<std::pair<const char *, std::string>> files; // without their .xml
    const char *expected;
    const char *ofVersion4 = expected; // which has one document for all add-ons
  } rows[] = {
      {"in the order of their numbers", {{"x", m}, {"x-1", a}, {"x-2", b}}, "M A B, modified"},
      {"from 1 to the first gap", {{"x", m}, {"x-0", c}, {"x-1", a}, {"x-3", c}}, "M A, modified"},
      {"a broken one before a sound one", {{"x", m}, {"x-1", kBroken}, {"x-2", b}}, "M B, modified"},
      {"a broken one at the end", {{"x", m}, {"x-1", a}, {"x-2", kBroken}}, "80040005: M A, modified"},
      {"of add-ons", {{"x", m}, {"x-1", a}, {"x-1-1", b}, {"x-2", c}}, "M A B C, modified", "M A C, modified"},
      {"a broken one of one", {{"x", m}, {"x-1", a}, {"x-1-1", kBroken}}, "80040005: M", "M A, modified"},
      {"one without models", {{"x", m}, {"x-1", a1}, {"x-2", none}}, "M A, modified", "M A A, modified"},
      {"a name that is a key", {{"x", mk}, {"x-1", with({{"k"}, {"B"}})}}, "M B, modified"},
      {"a key that is a key", {{"x", m}, {"x-1", with({{"N", "M"}})}}, "M N, modified"},
      {"an empty collection", {{"x", m}, {"x-1", with({})}}, "41003: M"},
      {"a key twice in the file itself", {{"x", with({{"M"}, {"m"}})}, {"x-1", a}}, "80040008: M"},
      {"the file itself missing", {{"x-1", a}}, "80040004: "},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.what);
    for (const auto &[name, bytes] : row.files)
      write(std::string(name) + ".xml", bytes);
    EXPECT_EQ(loadOf<CVorlanTyp>("x.xml"), row.expected);
    EXPECT_EQ(loadOf<CVorlanTyp2>("x.xml"), row.expected);
    EXPECT_EQ(loadOf<CVorlanTyp3>("x.xml"), row.expected);
    EXPECT_EQ(loadOf<CVorlanTyp4>("x.xml"), row.ofVersion4);
    for (const auto &entry : std::filesystem::directory_iterator("."))
      std::filesystem::remove_all(entry.path());
  }
  EXPECT_EQ(loadOf<CVorlanTyp>(""), "80040007: ");
}

TEST_F(VorlanTypFiles, AddOnNames) {
  const auto expectAddOn = [this](const char *addOn, const char *file) {
    write(file, with({{"M"}}));
    write(addOn, with({{"A"}}));
    EXPECT_EQ(loadOf<CVorlanTyp>(file), "M A, modified") << file;
  };
  expectAddOn("X-1.xml", "X.XML");
  expectAddOn("x.d/x-1", "x.d/x");
  expectAddOn("x-1.2.xml", "x.2.xml");
}

template <class Document>
struct WithFileName : Document {
  using Document::m_fileName;
};

TEST_F(VorlanTypFiles, TheNameIsRememberedAsItWasGiven) {
  write("t.d/x.xml", with({{"M"}}));
  write("t.d/x-1.xml", with({{"A"}}));
  macros.AddMacro("$KTEST_W$", (folder / "d/w").c_str());
  for (const char *const name : {"./../w/t.d/x.xml", R"($KTEST_W$\t.d\x.xml)"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(loadOf<CVorlanTyp4>(name), "M A, modified");
    WithFileName<CVorlanTyp> document;
    document.LoadFromFile(name);
    EXPECT_EQ(document.VorlanModels.Count(), 2);
    EXPECT_STREQ(document.m_fileName, name);
    document.LoadFromFile(nullptr);
    EXPECT_EQ(document.VorlanModels.Count(), 1) << "a remembered name brings no add-ons";
    document.CVorlanTyp::operator=(CVorlanTyp());
    EXPECT_STREQ(document.m_fileName, name) << "an assignment leaves the name alone";
  }
}

TEST_F(VorlanTypFiles, AReplacementTakesThePlaceOfAnyFile) {
  write("x.xml", with({{"M"}}));
  write("x-1.xml", with({{"N"}}));
  write("p/vorlan.xml", with({{"P"}}));
  write("p/vorlan-1.xml", with({{"Q"}}));
  const std::string host = folder / "d/w/p/";
  const auto isReplaced = [this](const char *variable, const char *macro = nullptr) {
    SetUp();
    const support::Environment pfdtVariable("PFDT", variable);
    if (macro != nullptr)
      macros.AddMacro("$PFDT$", macro);
    WithFileName<CVorlanTyp4> document;
    document.LoadFromFile("x.xml");
    EXPECT_STREQ(document.VorlanModels4[1]->Name, document.m_fileName == "x.xml" ? "N" : "Q");
    return document.m_fileName == "D:\\w\\p\\vorlan.xml";
  };
  EXPECT_FALSE(isReplaced(nullptr));
  EXPECT_FALSE(isReplaced(R"(D:\w\none)")) << "there is no such file";
  EXPECT_TRUE(isReplaced(R"(D:\w\p\)"));
  EXPECT_TRUE(isReplaced("p"));
  EXPECT_TRUE(isReplaced("none", host.c_str())) << "the table comes first";
}

TEST_F(VorlanTypFiles, WithoutPfdtTheCurrentDirectoryHoldsTheReplacement) {
  write("x.xml", with({{"M"}}));
  write("vorlan.xml", with({{"C"}}));
  write("vorlan-1.xml", with({{"D"}}));
  for (const char *const name : {"x.xml", "none.xml", ""})
    EXPECT_EQ(loadOf<CVorlanTyp4>(name), "C D, modified") << name;
  EXPECT_EQ(loadOf<CVorlanTyp3>("x.xml"), "M") << "the older versions know no replacement";
}

TEST_F(VorlanTypFiles, AReplacementIsLookedForAfterAFailedLoad) {
  struct Throwing : CVorlanTyp4 {
    long Load(MSXML::IXMLDOMElement *) override { throw std::runtime_error("Load"); }
  };
  write("x.xml", with({{"M"}}));
  write("x-1.xml", kBroken);
  write("p/vorlan.xml", with({{"P"}}));
  EXPECT_EQ(loadOf<CVorlanTyp4>("x.xml"), "80040005: M");
  EXPECT_THROW(Throwing().LoadFromFile("x.xml"), std::runtime_error);
  const support::Environment variable("PFDT", "p");
  EXPECT_EQ(loadOf<CVorlanTyp4>("x.xml"), "P");
}

TEST_F(VorlanTypFiles, ThreadsThatLoadAtATimeGetTheirAddOns) {
  write("x.xml", with({{"M"}}));
  write("x-1.xml", with({{"A"}}));
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([] {
      const support::Com com;
      for (int load = 0; load < 50; ++load)
        EXPECT_EQ(loadOf<CVorlanTyp4>("x.xml"), "M A, modified");
    });
  for (std::thread &thread : threads)
    thread.join();
}

} // namespace
