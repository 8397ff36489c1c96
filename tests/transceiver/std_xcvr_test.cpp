#include "tests/names/names_support.h"

namespace {

using support::Cells, support::checkRows, support::keys, support::read, support::write;

constexpr const char *kFile = "D:\\x\\StdXcvr.xml";

struct Document : CStdXcvr3 {
  using CXMLFolder::m_fileName;
};

/// A file of items such as "A=1,B=0x10"; an item without `=` has no std_id.
std::string fileOf(const std::string &items) {
  std::istringstream list(items);
  std::string text;
  for (std::string item; std::getline(list, item, ',');) {
    const std::size_t sign = item.find('=');
    const std::string id = sign < item.size() ? "<std_id>" + item.substr(sign + 1) + "</std_id>" : "";
    text += "<Transceiver Name='" + item.substr(0, sign) + "'>" + id + "</Transceiver>";
  }
  return "<StdXcvr><Transceivers>" + text + "</Transceivers></StdXcvr>";
}

/// Files in folders on several drives; the current directory is D:\w.
struct StdXcvr3 : support::NameTest {
  void put(const char *name, const std::string &items) const { write(folder / name, fileOf(items)); }
  const support::Com com;
};

TEST_F(StdXcvr3, Merge) {
  // The first file, the user's file, and what comes of them: the result, or the refused number; the items; and `*` if
  // the document counts as modified. A file of `?` is broken, one of `null` is not there.
  const char *const table = R"(
    A=1,B=2  D=4,C=3  0:A,B,D,C*         A=1,B    null     0:A,B               Abc=1   aBC=9,D=2   0:Abc,D*
    A=16     B=0x10,C=020,D=16  0:A      A=1      B=2,C=0x2,D=3,E=03  0:A,B,D*  A=1    B=2,b=3     80040008:A
    A=1      B=2,C=3x,D=4 '3x':A,B*      A=1      B=2,C,D=4  'Unassigned':A,B*  A=1    a=?,D=4     '?':A
    A=1,B=!,C=3  D=1,E=3  '!':A,B,C      A=1,B=!,C=3  D=1,b=5,E=0x1  0:A,B,C    A=!    A=1         0:A
    A=1,B=2,C=!  D=2,E=1,F=2,G=4  '!':A,B,C    A=1    -      41003:A            null   B=2,C=3     0:B,C*
    ?        B=2      0:B*               A=1      ?        80040005:A           ?      ?           80040005:
    null     null     80040004:*)";
  const auto merge = [&](const Cells &row) {
    std::filesystem::remove_all(folder / "d/x");
    for (const int i : {0, 1})
      if (row[i] != nullptr)
        write(folder / (i == 0 ? "d/x/StdXcvr.xml" : "d/x/UserXcvr.xml"),
              *row[i] == '?' ? "<StdXcvr>" : fileOf(row[i]));
    CStdXcvr3 document;
    CString outcome;
    const std::string message =
        support::thrownMessage([&] { outcome.Format("%X", platform::ResultBits(document.LoadFromFile(kFile))); });
    if (!message.empty())
      outcome = message.substr(message.find('\''), message.rfind('\'') + 1 - message.find('\'')).c_str();
    return outcome + ":" + keys(document.Transceivers3).c_str() + (document.GetModified() != 0 ? "*" : "");
  };
  checkRows(3, table, merge);
}

TEST_F(StdXcvr3, AMergedDocumentIsSavedInOne) {
  put("d/x/StdXcvr.xml", "A=1");
  const std::string user = "<StdXcvr><Transceivers><Transceiver Name='U' TevroskApproved='x'><std_id>2</std_id>"
                           "<ModeSpec><alt_rate_tag>3</alt_rate_tag></ModeSpec></Transceiver></Transceivers></StdXcvr>";
  write(folder / "d/x/UserXcvr.xml", user);
  CStdXcvr3 document;
  CStdXcvr first;
  CStdXcvr2 second;
  EXPECT_EQ(document.LoadFromFile(kFile, nullptr) | first.LoadFromFile(kFile) | second.LoadFromFile(kFile), S_OK);
  EXPECT_EQ(keys(first.Transceivers) + keys(second.Transceivers2) + keys(document.Transceivers3), "AAA") << "no merge";
  for (int time = 0; time < 2; ++time) // the second load begins anew
    EXPECT_EQ(document.LoadFromFile(kFile), S_OK);
  EXPECT_EQ(document.SaveToFile(nullptr, nullptr, true), S_OK);
  EXPECT_EQ(document.GetModified(), 0);
  EXPECT_EQ(read(folder / "d/x/UserXcvr.xml"), user);
  EXPECT_EQ(document.LoadFromFile(kFile, nullptr), S_OK);
  EXPECT_EQ(keys(document.Transceivers3), "A,U");
  CTransceiver3 &added = *document.Transceivers3[1];
  EXPECT_STREQ(added.TevroskApproved + added.ModeSpec.alt_rate_tag + added.ModeSpec2.alt_rate_tag, "x33");
}

TEST_F(StdXcvr3, WhereTheUserFileIsLookedFor) {
  macros.AddMacro("$FOLDER$", "D:\\x");
  macros.AddMacro("$FILE$", kFile);
  for (const char *name : {"d/x/StdXcvr.xml", "d/x/userxcvr.xml", "d/w/StdXcvr.xml", "d/x/old.UserXcvr.xml"})
    put(name, "A=1");
  for (const char *name : {"d/x/UserXcvr.xml", "d/x/UserXcvr", "d/x/UserXcvr.old.xml"})
    put(name, "X=2");
  put("d/w/UserXcvr.xml", "W=3");
  const auto load = [](const Cells &row) {
    Document document;
    EXPECT_EQ(document.LoadFromFile(row[0]), S_OK);
    EXPECT_STREQ(document.m_fileName, row[0]);
    return CString(keys(document.Transceivers3).c_str());
  };
  checkRows(2,
            R"(D:\x\StdXcvr.xml A,X  ..\x\StdXcvr.xml A,X  ../x/StdXcvr.xml A,X  ./StdXcvr.xml A,W  StdXcvr.xml A,W
              D:\x\userxcvr.xml A,X  D:\x\old.UserXcvr.xml A,X  $FILE$ A,W  $FOLDER$\StdXcvr.xml A
              D:\x\UserXcvr.xml X  ..\x\UserXcvr X  D:\x\UserXcvr.old.xml X  ../x/UserXcvr.xml X  - W )" +
                (folder / "d/x/StdXcvr.xml A,X ") + (folder / "d/x/UserXcvr.old.xml X"),
            load);
  std::filesystem::remove(folder / "d/w/UserXcvr.xml");
  EXPECT_EQ(CStdXcvr3().LoadFromFile(""), KRX_E_LOAD_NOT_NAMED);
}

TEST_F(StdXcvr3, ReplacementFile) {
  put("e/types/stdxcvr.xml", "R=1");
  put("e/types/UserXcvr.xml", "U=2");
  put("d/x/StdXcvr.xml", "A=1");
  put("d/x/UserXcvr.xml", "X=2");
  const auto load = [](const Cells &row) {
    const support::Environment variable("PFDT", row[0]);
    Document document, user;
    EXPECT_EQ(document.LoadFromFile(kFile), S_OK);
    EXPECT_EQ(user.LoadFromFile("D:\\x\\UserXcvr.xml"), S_OK);
    EXPECT_EQ(keys(user.Transceivers3), "X") << "the user's own file is never replaced";
    return keys(document.Transceivers3).c_str() + (":" + document.m_fileName);
  };
  const std::string given = R"( A,X:D:\x\StdXcvr.xml )", replaced = R"( R,U:E:\types\stdxcvr.xml )";
  checkRows(2,
            "-" + given + "null" + given + R"(E:\y)" + given + R"(Q:\types)" + given + R"(E:\types)" + replaced +
                R"(E:\types\)" + replaced + (folder / "e/types") + replaced,
            load);
  macros.AddMacro("$pfdt$", "E:\\types");
  checkRows(2, "E:\\y" + replaced, load);
}

TEST_F(StdXcvr3, CopiesHoldAllLists) {
  CStdXcvr3 source;
  source.Transceivers.Add("a");
  source.Transceivers2.Add("Dummy");
  source.Transceivers2.Add("b");
  source.Transceivers3.Add("c")->SchedulerMode = "4";
  CStdXcvr3 copy(source);
  const CStdXcvr3 &self = copy;
  copy = self;
  EXPECT_EQ(keys(copy.Transceivers) + keys(copy.Transceivers2) + keys(copy.Transceivers3), "aDummy,bc");
  EXPECT_EQ(support::save(copy), support::save(source));
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
