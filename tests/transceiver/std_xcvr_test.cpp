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
  const std::string none, broken = "<StdXcvr>";
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
      {"a broken user's file", a, broken, KRX_E_UNEXPECTED_DATA, "A"},
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
  const std::string a = fileOf({{"A", "1"}}), bad = fileOf({{"A", "1"}, {"B", "!"}, {"C", "3"}});
  const struct {
    const char *what;
    std::string standard;
    std::string user;
    const char *named; // in the exception
    const char *items;
  } rows[] = {
      {"of the user's", a, fileOf({{"B", "2"}, {"C", "3x"}, {"D", "4"}}), "'3x'", "A,B"},
      {"of the user's, with a known name", a, fileOf({{"a", "?"}, {"D", "4"}}), "'?'", "A"},
      {"in the list, reached", bad, fileOf({{"D", "1"}, {"E", "3"}}), "'!'", "A,B,C"},
  };
  for (const auto &row : rows) {
    SCOPED_TRACE(row.what);
    putBoth(row.standard, row.user);
    CStdXcvr3 document;
    const std::string message = support::thrownMessage([&] { document.LoadFromFile(kFile); });
    EXPECT_NE(message.find(row.named), std::string::npos) << message;
    EXPECT_EQ(keys(document.Transceivers3), row.items);
  }
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
  macros.AddMacro("$FOLDER$", "D:\\x");
  macros.AddMacro("$FILE$", kFile);
  for (const char *name : {"d/x/StdXcvr.xml", "d/x/userxcvr.xml", "d/w/StdXcvr.xml"})
    put(name, {{"A", "1"}});
  for (const char *name : {"d/x/UserXcvr.xml", "d/x/UserXcvr", "d/x/UserXcvr.old.xml"})
    put(name, {{"X", "2"}});
  put("d/w/UserXcvr.xml", {{"W", "3"}});
  const struct {
    std::string name;
    const char *items;
  } rows[] = {
      {R"(..\x\StdXcvr.xml)", "A,X"},
      // A relative name with `/` is made absolute first.
      {"./../x/StdXcvr.xml", "A,X"},
      {"StdXcvr.xml", "A,W"},
      {folder / "d/x/StdXcvr.xml", "A,X"},
      {R"(D:\x\userxcvr.xml)", "A,X"},
      // A name that is a macro has no folder of its own.
      {"$FILE$", "A,W"},
      {"$FOLDER$/StdXcvr.xml", "A"},
      // The user's own file merges nothing.
      {R"(..\x\UserXcvr)", "X"},
      {R"(D:\x\UserXcvr.old.xml)", "X"},
      {"", "W"},
  };
  for (const auto &row : rows) {
    Document document;
    EXPECT_EQ(document.LoadFromFile(row.name.c_str()), S_OK) << row.name;
    EXPECT_EQ(document.m_fileName, row.name.c_str());
    EXPECT_EQ(keys(document.Transceivers3), row.items) << row.name;
  }
  std::filesystem::remove(folder / "d/w/UserXcvr.xml");
  EXPECT_EQ(CStdXcvr3().LoadFromFile(""), KRX_E_LOAD_NOT_NAMED);
}

TEST_F(StdXcvr3, ReplacementFile) {
  put("e/types/stdxcvr.xml", {{"R", "1"}});
  put("e/types/UserXcvr.xml", {{"U", "2"}});
  put("d/x/StdXcvr.xml", {{"A", "1"}});
  put("d/x/UserXcvr.xml", {{"X", "2"}});
  const std::string host = folder / "e/types";
  const auto expectLoaded = [](const char *variable, const char *items, const char *fileName) {
    SCOPED_TRACE(variable != nullptr ? variable : "unset");
    const support::Environment pfdt("PFDT", variable);
    Document document, user;
    EXPECT_EQ(document.LoadFromFile(kFile), S_OK);
    EXPECT_EQ(keys(document.Transceivers3), items);
    EXPECT_STREQ(document.m_fileName, fileName);
    EXPECT_EQ(user.LoadFromFile("D:\\x\\UserXcvr.xml"), S_OK);
    EXPECT_EQ(keys(user.Transceivers3), "X") << "the user's own file is never replaced";
  };
  for (const char *const variable : {"", static_cast<const char *>(nullptr), "E:\\y", "Q:\\types"})
    expectLoaded(variable, "A,X", kFile);
  for (const char *const variable : {"E:\\types", "E:\\types\\", host.c_str()})
    expectLoaded(variable, "R,U", "E:\\types\\stdxcvr.xml");
  macros.AddMacro("$pfdt$", "E:\\types");
  expectLoaded("E:\\y", "R,U", "E:\\types\\stdxcvr.xml");
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

TEST(StdXcvrSample, ComesOutAsItWentInAndMerges) {
  const support::Com com;
  const std::string path = KESTRUNE_SAMPLE_INSTALLATION "/Types/StdXcvr.xml";
  CStdXcvr3 document;
  EXPECT_EQ(document.LoadFromFile(path.c_str(), nullptr), S_OK);
  EXPECT_EQ(support::save(document), read(path));
  EXPECT_EQ(document.Transceivers3.Count(), 70);
  EXPECT_EQ(document.LoadFromFile(path.c_str()), S_OK);
  EXPECT_EQ(document.Transceivers3.Count(), 76) << "of the user's eight, one has a known name and one a known number";
}

} // namespace
