#include "tests/names/names_support.h"

namespace {

using support::keys, support::write;

constexpr const char *kFile = "D:\\x\\StdXcvr.xml";

struct Item {
  const char *name;
  const char *id; // its std_id
};

std::string fileOf(const std::vector<Item> &items) {
  std::string text;
  for (const auto &[name, id] : items)
    text += std::string("<Transceiver Name='") + name + "'><std_id>" + id + "</std_id></Transceiver>";
  return "<StdXcvr><Transceivers>" + text + "</Transceivers></StdXcvr>";
}

/// Files in folders on several drives; the current directory is D:\w.
struct StdXcvr3 : support::NameTest {
  void put(const char *name, const std::vector<Item> &items) const { write(folder / name, fileOf(items)); }
  const support::Com com;
};

TEST_F(StdXcvr3, MergeAddsWhatTheListDoesNotHave) {
  const std::string a = fileOf({{"A", "1"}});
  const struct {
    const char *what;
    std::string standard, user;
    long result;
    const char *items;
    bool isModified;
  } rows[] = {
      {"all but a known name", a, fileOf({{"D", "4"}, {"a", "9"}, {"C", "3"}}), S_OK, "A,D,C", true},
      {"a known number", fileOf({{"A", "16"}}), fileOf({{"B", "0x10"}}), S_OK, "A", false},
      {"a number twice", a, fileOf({{"B", "2"}, {"C", "0x2"}}), S_OK, "A,B", true},
      {"a name twice", a, fileOf({{"B", "2"}, {"b", "3"}}), KRX_E_DUPLICATE_KEY, "A", false},
      {"an empty user's file", a, fileOf({}), KRX_S_EMPTY_COLLECTION, "A", false},
      {"a broken user's file", a, "<StdXcvr>", KRX_E_UNEXPECTED_DATA, "A", false},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.what);
    write(folder / "d/x/StdXcvr.xml", row.standard);
    write(folder / "d/x/UserXcvr.xml", row.user);
    CStdXcvr3 document;
    EXPECT_EQ(document.LoadFromFile(kFile), row.result);
    EXPECT_EQ(keys(document.Transceivers3), row.items);
    EXPECT_EQ(document.GetModified() != 0, row.isModified);
  }
}

TEST_F(StdXcvr3, AMergeEndsAtATextThatIsNoNumber) {
  put("d/x/StdXcvr.xml", {{"A", "1"}});
  put("d/x/UserXcvr.xml", {{"B", "2"}, {"C", "3x"}, {"D", "4"}});
  CStdXcvr3 document;
  EXPECT_TRUE(support::throws<CKRXException>([&] { document.LoadFromFile(kFile); }));
  EXPECT_EQ(keys(document.Transceivers3), "A,B");
}

TEST_F(StdXcvr3, AMergedDocumentIsSavedInOne) {
  put("d/x/StdXcvr.xml", {{"A", "1"}});
  put("d/x/UserXcvr.xml", {{"U", "2"}});
  CStdXcvr3 document;
  EXPECT_EQ(document.LoadFromFile(kFile, nullptr), S_OK);
  EXPECT_EQ(keys(document.Transceivers3), "A") << "the form with two arguments merges nothing";
  for (int time = 0; time < 2; ++time) // the second load begins anew
    EXPECT_EQ(document.LoadFromFile(kFile), S_OK);
  EXPECT_EQ(document.SaveToFile(nullptr, nullptr, true), S_OK);
  EXPECT_EQ(document.LoadFromFile(kFile, nullptr), S_OK);
  EXPECT_EQ(keys(document.Transceivers3), "A,U");
}

TEST_F(StdXcvr3, WhereTheFilesAreLookedFor) {
  EXPECT_EQ(CStdXcvr3().LoadFromFile(nullptr), KRX_E_LOAD_NOT_NAMED);
  put("d/x/StdXcvr.xml", {{"A", "1"}});
  put("d/x/UserXcvr.xml", {{"X", "2"}});
  put("d/w/StdXcvr.xml", {{"B", "1"}});
  put("d/w/UserXcvr.xml", {{"W", "2"}});
  put("c/Kestrune/Types/StdXcvr.xml", {{"T", "1"}});
  put("c/Kestrune/Types/UserXcvr.xml", {{"V", "2"}});
  put("e/types/stdxcvr.xml", {{"R", "1"}});
  put("e/types/UserXcvr.xml", {{"U", "2"}});
  const std::string hostPath = folder / "d/x/StdXcvr.xml";
  const struct {
    const char *replacements, *name, *items;
    const char *remembered = name;
  } rows[] = {
      {nullptr, R"(..\x\StdXcvr.xml)", "A,X"},
      {nullptr, "./StdXcvr.xml", "B,W"},
      {nullptr, R"(..\x/StdXcvr.xml)", "A"}, // the name is cut at its last `\`
      {nullptr, "$StdTypes$/StdXcvr.xml", "T"},
      {nullptr, hostPath.c_str(), "A,X"},
      {nullptr, "StdXcvr.xml", "B,W"},
      {R"(E:\none)", kFile, "A,X"},
      {R"(E:\types\)", kFile, "R,U", R"(E:\types\stdxcvr.xml)"},
      {R"(E:\types\)", R"(D:\x\UserXcvr.xml)", "X"}, // the user's own file is the whole document
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.name);
    const support::Environment pfdt("PFDT", row.replacements);
    struct : CStdXcvr3 {
      using CXMLFolder::m_fileName;
    } document;
    EXPECT_EQ(document.LoadFromFile(row.name), S_OK);
    EXPECT_EQ(keys(document.Transceivers3), row.items);
    EXPECT_STREQ(document.m_fileName, row.remembered);
  }
}

TEST_F(StdXcvr3, CopiesHoldAllLists) {
  CStdXcvr3 source;
  source.Transceivers.Add("a");
  source.Transceivers2.Add("b");
  CStdXcvr3 copy(source);
  EXPECT_EQ(keys(copy.Transceivers), "a");
  EXPECT_EQ(keys(copy.Transceivers2), "b");
}

} // namespace
