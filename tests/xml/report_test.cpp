#include "tests/document_support.h"
#include "tests/xml/sample_records.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using kestrune::ReportText;
using sample::Document;

/// A folder that is the drive T.
class Report : public testing::Test {
protected:
  void write(const std::string &name, std::string_view bytes) { support::write(m_folder / name, bytes); }

  support::Com m_com;
  support::TempFolder m_folder;
  support::Environment m_drives{"KESTRUNE_DRIVES", ("T=" + m_folder.path().string()).c_str()};
};

TEST_F(Report, AFailedLoadSaysWhereAndWhy) {
  const struct {
    const char *file;
    std::string bytes;
    const char *report;
  } rows[] = {
      {"T:\\good.xml", "<Root/>", ""},
      {"T:\\tag.xml", "<Root>\n <Items></Root>", "T:\\tag.xml:2:11: mismatched tag (KRX_E_UNEXPECTED_DATA)"},
      {"T:\\root.xml", "<!-- -->\n <Other/>",
       "T:\\root.xml:2:2: the root element is 'Other', not 'Root' (KRX_E_WRONG_ROOT_TAG)"},
      {"T:\\keys.xml", "<Root><Items>\n<Item Name='a'/><Item Name=''/>\n <Item Name='A'>\n</Item></Items></Root>",
       "T:\\keys.xml:2:17: the key of this Item is empty; it is left out (KRX_E_DUPLICATE_KEY)\n"
       "T:\\keys.xml:3:2: the key 'A' is used twice; this Item is left out, the first is in line 2 "
       "(KRX_E_DUPLICATE_KEY)"},
      {"T:\\none\\a.xml", "", "T:\\none\\a.xml: No such file or directory (KRX_E_FILE_NOT_FOUND)"},
      {"T:\\", "", "T:\\: Is a directory (KRX_E_FILE_NOT_FOUND)"},
      {"", "", "the name is empty (KRX_E_LOAD_NOT_NAMED)"},
      {"$NONE$", "", "nothing is left of the name '$NONE$' when its macros are replaced (KRX_E_LOAD_NOT_NAMED)"},
  };
  for (const auto &row : rows) {
    if (!row.bytes.empty())
      write(std::string(row.file).substr(3), row.bytes);
    Document document;
    document.LoadFromFile(row.file, nullptr);
    EXPECT_EQ(ReportText(document), row.report) << row.file;
    const Document copy(document); // NOLINT(performance-unnecessary-copy-initialization): has no report
    EXPECT_EQ(ReportText(copy), "");
    document.LoadFromFile("T:\\good.xml", nullptr);
    EXPECT_EQ(ReportText(document), "") << "of the load before: " << row.file;
  }
}

TEST_F(Report, ATextHasNoFileAndTooManyFindingsAreNotKept) {
  Document document;
  EXPECT_EQ(kestrune::LoadFromText(document, "<Root>\n</Rot>"), KRX_E_UNEXPECTED_DATA);
  EXPECT_EQ(ReportText(document), "2:3: mismatched tag (KRX_E_UNEXPECTED_DATA)");
  std::string xml = "<?xml version='1.0' encoding='Shift_JIS'?><Root><Items>"; // which is read twice
  for (int i = 0; i < 300; ++i)
    xml += "\n<Item Name='a'/>";
  EXPECT_EQ(kestrune::LoadFromText(document, xml + "</Items></Root>"), KRX_E_DUPLICATE_KEY);
  const std::vector<kestrune::Finding> findings = kestrune::ReportOf(document);
  ASSERT_EQ(findings.size(), 100U);
  EXPECT_EQ(findings[99].line, 102);
}

TEST_F(Report, EachOfTheFilesThatALoadReadsHasItsFindings) {
  const std::string model = "<VorlanTyp><VorlanModels>\n<VorlanModel Key='a' Name='a'/></VorlanModels></VorlanTyp>";
  write("Vorlan.xml", model);
  write("Vorlan-1.xml", "<VorlanTyp>");
  write("Vorlan-2.xml", model);
  CVorlanTyp4 chips;
  EXPECT_GE(chips.LoadFromFile("T:\\Vorlan.xml"), 0) << "the result of the last";
  EXPECT_EQ(ReportText(chips),
            "T:\\Vorlan-1.xml:1:12: the file ends before '<VorlanTyp>' is closed; nothing of this file is used "
            "(KRX_E_UNEXPECTED_DATA)");
  write("StdXcvr.xml", "<StdXcvr/>");
  write("UserXcvr.xml",
        "<StdXcvr><Transceivers><Transceiver Name='a'/><Transceiver Name='a'/></Transceivers></StdXcvr>");
  CStdXcvr3 transceivers;
  EXPECT_EQ(transceivers.LoadFromFile("T:\\StdXcvr.xml"), KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(ReportText(transceivers),
            "T:\\UserXcvr.xml:1:47: the key 'a' is used twice; this Transceiver is left out, the first is in line 1; "
            "nothing of this file is used (KRX_E_DUPLICATE_KEY)");
}

TEST_F(Report, ANameThatIsTheKeyOfAnotherModelIsTaken) {
  CVorlanTyp4 chips;
  EXPECT_EQ(kestrune::LoadFromText(chips,
                                   "<VorlanTyp><VorlanModels>\n<VorlanModel Name='a'><Key>B</Key></VorlanModel>\n"
                                   "<VorlanModel Name='b'/></VorlanModels></VorlanTyp>"),
            KRX_E_DUPLICATE_KEY);
  EXPECT_EQ(ReportText(chips),
            "3:1: 'b' is the key of an earlier VorlanModel; this one is left out (KRX_E_DUPLICATE_KEY)");
}

TEST_F(Report, ALockIsCalledOne) {
  write("a.xml", "<Root/>");
  const int handle = ::open((m_folder / "a.xml").c_str(), O_RDWR);
  ASSERT_EQ(::flock(handle, LOCK_EX), 0);
  Document document;
  EXPECT_EQ(document.SaveToFile("T:\\a.xml", nullptr, true), KRX_E_SAVE_FAILED);
  EXPECT_EQ(ReportText(document), "T:\\a.xml: another program has locked it (KRX_E_SAVE_FAILED)");
  ::close(handle);
}

TEST_F(Report, AFailedSaveSaysWhatCannotBeSaved) {
  write("file", "");
  const struct {
    const char *text;
    const char *file;
    const char *report;
  } rows[] = {
      {"sound", "T:\\a.xml", ""},
      {"bad \x01", "T:\\a.xml",
       "T:\\a.xml: a text holds a control character that XML cannot carry, in /Root/Items/Item[Name='k']/Text "
       "(KRX_E_SAVE_FAILED)"},
      {"sound", "T:\\file\\a.xml", "T:\\file\\a.xml: Not a directory (KRX_E_SAVE_FAILED)"},
      {"sound", "T:\\", "T:\\: Is a directory (KRX_E_SAVE_FAILED)"},
      {"sound", "T:\\file\\new\\a.xml",
       "T:\\file\\new\\a.xml: its folder cannot be made: Not a directory (KRX_E_SAVE_FAILED)"},
      {"sound", "$NONE$", "nothing is left of the name '$NONE$' when its macros are replaced (KRX_E_SAVE_FAILED)"},
      {"sound", nullptr, "there is no name to save under (KRX_E_SAVE_NOT_NAMED)"},
  };
  for (const auto &row : rows) {
    Document document;
    document.List.Add("k")->Text = row.text;
    document.SaveToFile(row.file, nullptr, true);
    EXPECT_EQ(ReportText(document), row.report);
  }
  Document document;
  document.List.Add("\x02");
  std::string text;
  kestrune::SaveToText(document, text);
  EXPECT_EQ(ReportText(document),
            "a text holds a control character that XML cannot carry, in /Root/Items/Item[1]/@Name "
            "(KRX_E_SAVE_FAILED)");
}

} // namespace
