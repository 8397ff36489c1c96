#include "tests/names/names_support.h"

namespace {

using support::keys, support::read, support::write;

constexpr const char *kFile = "D:\\x\\StdXcvr.xml";

struct Document : CStdXcvr3 {
  using CXMLFolder::m_fileName;
};

struct Item {
  const char *name;
  const char *id; // its std_id, or null for none
};

std::string fileOf(const std::vector<Item> &items) {
  std::string text;
  for (const auto &[name, id] : items)
    text += std::string("<Transceiver Name='") + name + "'>" +
            (id != nullptr ? "<std_id>" + std::string(id) + "</std_id>" : "") + "</Transceiver>";
  return "<StdXcvr><Transceivers>" + text + "</Transceivers></StdXcvr>";
}

/// Files in folders on several drives; the current directory is D:\w.
struct StdXcvr3 : support::NameTest {
  void put(const char *name, const std::vector<Item> &items) const { write(folder / name, fileOf(items)); }
  /// The two files, of which an empty one is not there.
  void putBoth(const std::string &standard, const std::string &user) const {
    std::filesystem::remove_all(folder / "d/x");
    if (!standard.empty())
      write(folder / "d/x/StdXcvr.xml", standard);
    if (!user.empty())
      write(folder / "d/x/UserXcvr.xml", user);
  }
  const support::Com com;
};

TEST_F(StdXcvr3, MergeAddsWhatTheListDoesNotHave) {
  const std::string none;
  const std::string a = fileOf({{"A", "1"}}), ab = fileOf({{"A", "1"}, {"B", "2"}});
  const std::string bad = fileOf({{"A", "1"}, {"B", "!"}, {"C", "3"}});
  const struct {
    const char *what;
    std::string standard; // empty: the file is not there
    std::string user;
    long result;
    const char *items;
    bool isModified = false;
  } rows[] = {
      {"added in their order", ab, fileOf({{"D", "4"}, {"C", "3"}}), S_OK, "A,B,D,C", true},
      {"no user's file", ab, none, S_OK, "A,B"},
      {"a known name", a, fileOf({{"a", "9"}, {"D", "2"}}), S_OK, "A,D", true},
      {"a known number", fileOf({{"A", "16"}}), fileOf({{"B", "0x10"}, {"C", "020"}}), S_OK, "A"},
      {"a number twice", a, fileOf({{"B", "2"}, {"C", "0x2"}, {"D", "3"}}), S_OK, "A,B,D", true},
      {"a name twice", a, fileOf({{"B", "2"}, {"b", "3"}}), KRX_E_DUPLICATE_KEY, "A"},
      {"a bad number in the list, not reached", bad, fileOf({{"D", "1"}, {"b", "5"}}), S_OK, "A,B,C"},
      {"a known name before a number is looked for", fileOf({{"A", "!"}}), a, S_OK, "A"},
      {"an empty user's file", a, fileOf({}), KRX_S_EMPTY_COLLECTION, "A"},
      {"no standard file", none, fileOf({{"B", "2"}, {"C", "3"}}), S_OK, "B,C", true},
      {"a broken user's file", a, "<StdXcvr>", KRX_E_UNEXPECTED_DATA, "A"},
      {"none at all", none, none, KRX_E_FILE_NOT_FOUND, "", true},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.what);
    putBoth(row.standard, row.user);
    CStdXcvr3 document;
    EXPECT_EQ(document.LoadFromFile(kFile), row.result);
    EXPECT_EQ(keys(document.Transceivers3), row.items);
    EXPECT_EQ(document.GetModified() != 0, row.isModified);
  }
}

TEST_F(StdXcvr3, AMergeEndsAtATextThatIsNoNumber) {
  const auto merged = [this](const std::vector<Item> &standard, const std::vector<Item> &user) {
    putBoth(fileOf(standard), fileOf(user));
    CStdXcvr3 document;
    EXPECT_TRUE(support::throws<CKRXException>([&] { document.LoadFromFile(kFile); }));
    return keys(document.Transceivers3);
  };
  EXPECT_EQ(merged({{"A", "1"}}, {{"B", "2"}, {"C", "3x"}, {"D", "4"}}), "A,B");
  EXPECT_EQ(merged({{"A", "1"}}, {{"B", "2"}, {"C", nullptr}, {"D", "4"}}), "A,B");
  EXPECT_EQ(merged({{"A", "1"}}, {{"a", "?"}, {"D", "4"}}), "A") << "though its name is known";
  EXPECT_EQ(merged({{"A", "1"}, {"B", "!"}, {"C", "3"}}, {{"D", "1"}, {"E", "3"}}), "A,B,C") << "in the list";
}

TEST_F(StdXcvr3, AMergedDocumentIsSavedInOne) {
  put("d/x/StdXcvr.xml", {{"A", "1"}});
  const std::string user = "<StdXcvr><Transceivers><Transceiver Name='U' TevroskApproved='x'><std_id>2</std_id>"
                           "<ModeSpec><alt_rate_tag>3</alt_rate_tag></ModeSpec></Transceiver></Transceivers></StdXcvr>";
  write(folder / "d/x/UserXcvr.xml", user);
  CStdXcvr3 document;
  CStdXcvr first;
  EXPECT_EQ(document.LoadFromFile(kFile, nullptr), S_OK);
  EXPECT_EQ(first.LoadFromFile(kFile), S_OK);
  EXPECT_EQ(keys(document.Transceivers3), "A") << "the form with two arguments merges nothing";
  EXPECT_EQ(keys(first.Transceivers), "A") << "nor do the older versions";
  for (int time = 0; time < 2; ++time) // the second load begins anew
    EXPECT_EQ(document.LoadFromFile(kFile), S_OK);
  EXPECT_EQ(document.SaveToFile(nullptr, nullptr, true), S_OK);
  EXPECT_EQ(document.GetModified(), 0);
  EXPECT_EQ(read(folder / "d/x/UserXcvr.xml"), user);
  EXPECT_EQ(document.LoadFromFile(kFile, nullptr), S_OK);
  EXPECT_EQ(keys(document.Transceivers3), "A,U");
  CTransceiver3 &added = *document.Transceivers3[1];
  EXPECT_STREQ(added.TevroskApproved, "x");
  EXPECT_STREQ(added.ModeSpec.alt_rate_tag, "3");
  EXPECT_STREQ(added.ModeSpec2.alt_rate_tag, "3");
}

TEST_F(StdXcvr3, WhereTheUserFileIsLookedFor) {
  macros.AddMacro("$FILE$", kFile);
  macros.AddMacro("$FOLDER$", "D:\\x");
  for (const char *name : {"d/x/StdXcvr.xml", "d/x/userxcvr.xml", "d/w/StdXcvr.xml"})
    put(name, {{"A", "1"}});
  for (const char *name : {"d/x/UserXcvr.xml", "d/x/UserXcvr", "d/x/UserXcvr.old.xml"})
    put(name, {{"X", "2"}});
  put("d/w/UserXcvr.xml", {{"W", "3"}});
  const auto loaded = [](const std::string &name) {
    Document document;
    EXPECT_EQ(document.LoadFromFile(name.c_str()), S_OK) << name;
    EXPECT_EQ(document.m_fileName, name.c_str());
    return keys(document.Transceivers3);
  };
  EXPECT_EQ(loaded(R"(..\x\StdXcvr.xml)"), "A,X");
  EXPECT_EQ(loaded("./../x/StdXcvr.xml"), "A,X");
  EXPECT_EQ(loaded("StdXcvr.xml"), "A,W");
  EXPECT_EQ(loaded(folder / "d/x/StdXcvr.xml"), "A,X");
  EXPECT_EQ(loaded("$FILE$"), "A,W") << "a name that is a macro has no folder of its own";
  EXPECT_EQ(loaded("$FOLDER$/StdXcvr.xml"), "A");
  // The user's own file merges nothing.
  EXPECT_EQ(loaded(R"(D:\x\userxcvr.xml)"), "A,X");
  EXPECT_EQ(loaded(R"(..\x\UserXcvr)"), "X");
  EXPECT_EQ(loaded(R"(D:\x\UserXcvr.old.xml)"), "X");
  EXPECT_EQ(loaded(""), "W");
}

TEST_F(StdXcvr3, AReplacementTakesThePlaceOfTheStandardFileAlone) {
  put("e/types/stdxcvr.xml", {{"R", "1"}});
  put("e/types/UserXcvr.xml", {{"U", "2"}});
  put("d/x/StdXcvr.xml", {{"A", "1"}});
  put("d/x/UserXcvr.xml", {{"X", "2"}});
  for (const char *const nowhere : {"", "E:\\y"}) {
    const support::Environment pfdt("PFDT", nowhere);
    Document document;
    EXPECT_EQ(document.LoadFromFile(kFile), S_OK);
    EXPECT_EQ(keys(document.Transceivers3), "A,X") << nowhere;
    EXPECT_STREQ(document.m_fileName, kFile);
  }
  for (const std::string &place : std::initializer_list<std::string>{"E:\\types\\", folder / "e/types"}) {
    const support::Environment pfdt("PFDT", place.c_str());
    Document document;
    EXPECT_EQ(document.LoadFromFile(kFile), S_OK);
    EXPECT_EQ(keys(document.Transceivers3), "R,U") << place;
    EXPECT_STREQ(document.m_fileName, "E:\\types\\stdxcvr.xml");
    EXPECT_EQ(document.LoadFromFile("D:\\x\\UserXcvr.xml"), S_OK);
    EXPECT_EQ(keys(document.Transceivers3), "X");
  }
}

template <class Document>
void expectInitRenewsTheHeader() {
  Document document;
  support::load(document, read(KESTRUNE_TEST_DATA "/transceiver/version-3.xml"));
  const std::string saved = support::save(document);
  document.Contents.FileDescription = "other";
  document.Contents.Format = 9;
  document.Contents.Content = 9;
  document.Init();
  document.Contents.CreationDate = 7;
  EXPECT_EQ(support::save(document), saved);
}

TEST_F(StdXcvr3, InitOfALoadedDocumentRenewsTheHeaderAlone) {
  expectInitRenewsTheHeader<CStdXcvr>();
  expectInitRenewsTheHeader<CStdXcvr2>();
  expectInitRenewsTheHeader<CStdXcvr3>();
  EXPECT_STREQ(CStdXcvr3().Contents.FileDescription, "Standard Transceivers file");
}

TEST_F(StdXcvr3, CopiesHoldAllLists) {
  CStdXcvr3 source;
  source.Transceivers.Add("a");
  source.Transceivers2.Add("Dummy");
  source.Transceivers3.Add("c")->SchedulerMode = "4";
  support::expectCopies(source);
  CStdXcvr3 copy(source);
  EXPECT_EQ(keys(copy.Transceivers), "a");
  EXPECT_EQ(keys(copy.Transceivers2), "Dummy");
}

} // namespace
