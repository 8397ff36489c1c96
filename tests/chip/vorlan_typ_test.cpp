#include "tests/names/names_support.h"

#include <sys/stat.h>

namespace {

using support::data, support::expectSaves, support::expectInitRenewsTheHeader;

TEST(VorlanTyp, EachVersionReadsItsMembersAndDropsLaterOnes) {
  expectSaves<CVorlanTyp4>("chip/version-4.xml", "chip/version-4.xml");
  expectSaves<CVorlanTyp3>("chip/version-3.xml", "chip/version-4.xml");
  expectSaves<CVorlanTyp2>("chip/version-2.xml", "chip/version-4.xml");
  expectSaves<CVorlanTyp>("chip/version-1.xml", "chip/version-4.xml");
}

TEST(VorlanTyp, MissingMembersKeepTheirDefaults) {
  expectSaves<CVorlanTyp4>("chip/items-with-defaults.xml", "chip/items-without-members.xml");
  expectSaves<CVorlanTyp4>("chip/version-1-saved-by-4.xml", "chip/version-1.xml");
}

TEST(VorlanTyp, InitOfALoadedDocumentRenewsTheHeaderAlone) {
  expectInitRenewsTheHeader<CVorlanTyp2>("chip/version-2.xml");
  expectInitRenewsTheHeader<CVorlanTyp3>("chip/version-3.xml");
  expectInitRenewsTheHeader<CVorlanTyp4>("chip/version-4.xml");
}

TEST(VorlanTyp, CopiesHoldTheCollectionsOfAllVersions) {
  CVorlanTyp4 source;
  support::load(source, data("chip/version-4.xml"));
  source.VorlanModels.Add("1");
  source.VorlanModels2.Add("2");
  source.VorlanModels3.Add("3");
  support::expectCopies(source);
  CVorlanTyp4 copy(source);
  EXPECT_EQ(copy.VorlanModels.Count(), 1);
  EXPECT_EQ(copy.VorlanModels2.Count(), 1);
  EXPECT_EQ(copy.VorlanModels3.Count(), 1);
}

/// A chip data file with models of these names.
std::string with(const std::vector<std::string> &names) {
  std::string models;
  for (const std::string &name : names)
    models += "<VorlanModel Name='" + name + "'><Key>" + name + "</Key></VorlanModel>";
  return "<VorlanTyp><VorlanModels>" + models + "</VorlanModels></VorlanTyp>";
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
struct VorlanTypFiles : support::NameTest {
  void write(const std::string &name, const std::string &bytes) const {
    support::write(folder / ("d/w/" + name), bytes);
  }

  support::Environment pfdt{"PFDT", nullptr};
  support::Com com;
};

TEST_F(VorlanTypFiles, AddOnsBringModels) {
  const std::string m = with({"M"}), a = with({"A"}), b = with({"B"}), c = with({"C"});
  const struct {
    const char *what;
    std::vector<std::pair<std::string, std::string>> files; // without their .xml
    const char *expected;
    const char *ofVersion4 = expected; // which has one document for all add-ons
  } rows[] = {
      {"from 1 to the first gap", {{"x", m}, {"x-0", c}, {"x-1", a}, {"x-3", c}}, "M A, modified"},
      {"a broken one before a sound one", {{"x", m}, {"x-1", kBroken}, {"x-2", a}}, "M A, modified"},
      {"a broken one at the end", {{"x", m}, {"x-1", a}, {"x-2", kBroken}}, "80040005: M A, modified"},
      {"of add-ons", {{"x", m}, {"x-1", a}, {"x-1-1", b}, {"x-2", c}}, "M A B C, modified", "M A C, modified"},
      {"a known name", {{"x", m}, {"x-1", with({"m", "B"})}}, "M B, modified"},
      {"an empty collection", {{"x", m}, {"x-1", with({})}}, "41003: M"},
      {"a key twice in the file itself", {{"x", with({"M", "m"})}, {"x-1", a}}, "80040008: M"},
  };
  for (const auto &row : rows) {
    for (const auto &[name, bytes] : row.files)
      write(name + ".xml", bytes);
    EXPECT_EQ(loadOf<CVorlanTyp>("x.xml"), row.expected) << row.what;
    EXPECT_EQ(loadOf<CVorlanTyp2>("x.xml"), row.expected) << row.what;
    EXPECT_EQ(loadOf<CVorlanTyp3>("x.xml"), row.expected) << row.what;
    EXPECT_EQ(loadOf<CVorlanTyp4>("x.xml"), row.ofVersion4) << row.what;
    for (const auto &[name, bytes] : row.files)
      std::filesystem::remove(name + ".xml");
  }
}

TEST_F(VorlanTypFiles, TheNameIsRememberedAsItWasGiven) {
  write("t.d/x.xml", with({"M"}));
  write("t.d/x-1.xml", with({"A"}));
  write("p/vorlan.xml", with({"P"}));
  struct : CVorlanTyp4 {
    using CXMLFolder::m_fileName;
  } document;
  document.LoadFromFile("./../w/t.d/x.xml");
  EXPECT_EQ(document.VorlanModels4.Count(), 2);
  EXPECT_STREQ(document.m_fileName, "./../w/t.d/x.xml");
  document.CXMLFolder::LoadFromFile(nullptr, nullptr);
  EXPECT_EQ(document.VorlanModels4.Count(), 1) << "a remembered name brings no add-ons";
  const support::Environment replacements("PFDT", "p");
  document.LoadFromFile("t.d/x.xml");
  EXPECT_STREQ(document.m_fileName, R"(D:\w\p\vorlan.xml)") << "that of the replacement";
}

TEST_F(VorlanTypFiles, AReplacementTakesThePlaceOfAnyFile) {
  write("x.xml", with({"M"}));
  write("p/vorlan.xml", with({"P"}));
  ASSERT_EQ(::mkfifo((make("d/w/pipe") + "/vorlan.xml").c_str(), 0666), 0);
  const auto loaded = [](const char *pfdt) {
    const support::Environment variable("PFDT", pfdt);
    return loadOf<CVorlanTyp4>("x.xml");
  };
  EXPECT_EQ(loaded(R"(D:\w\none)"), "M") << "there is no such file";
  EXPECT_EQ(loaded("pipe"), "M") << "opening it would wait for a writer";
  EXPECT_EQ(loaded("p"), "P");
  macros.AddMacro("$PFDT$", (folder / "d/w/p").c_str());
  EXPECT_EQ(loaded("none"), "P") << "the table comes first";
}

TEST_F(VorlanTypFiles, WithoutPfdtTheCurrentDirectoryHoldsTheReplacement) {
  write("x.xml", with({"M"}));
  write("vorlan.xml", with({"C"}));
  EXPECT_EQ(loadOf<CVorlanTyp4>("x.xml"), "C");
  EXPECT_EQ(loadOf<CVorlanTyp4>("none.xml"), "C");
  EXPECT_EQ(loadOf<CVorlanTyp>("x.xml"), "M") << "the older versions know no replacement";
}

} // namespace
