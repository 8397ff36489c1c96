#include "tools/findings.h"

#include <algorithm>

namespace {

using enum Level;

// number, level, what it is, what the library does with it, what comes of it, how to mend it, a wrong and a right
// example
constexpr Finding kFindings[] = {
    {101, kError, "The file is not well-formed XML.",
     "The parser stops there and the load fails with KRX_E_UNEXPECTED_DATA.", "No program can read the file.",
     "Close each element, quote each attribute, write &lt; and &amp; for < and &.", "<Key>KVO-1802",
     "<Key>KVO-1802</Key>"},
    {102, kError, "There are bytes that the encoding does not have, or the encoding is unknown.",
     "The load fails with KRX_E_UNEXPECTED_DATA.", "No program can read the file.",
     "Save the file as UTF-8, or declare the encoding that it is in.", "a file in Windows-1252 without a declaration",
     "<?xml version=\"1.0\" encoding=\"windows-1252\"?>"},
    {103, kError, "The file is empty or is no XML.", "The load fails with KRX_E_UNEXPECTED_DATA.",
     "No program can read the file.", "Put the data back, from a copy or from the version control.", "(no bytes)",
     "<KestruneUI>...</KestruneUI>"},
    {104, kError, "An entity is used that nobody has declared.",
     "The load fails: a text is never dropped in silence. Entities of other files are not opened.",
     "No program can read the file.", "Write the character itself; &lt; &gt; &amp; &quot; &apos; are always there.",
     "<Name>Gr&uuml;n</Name>", "<Name>Grün</Name>"},
    {105, kError, "The root element is that of no kind of data file.",
     "The load fails with KRX_E_WRONG_ROOT_TAG; upper and lower case are the same there.",
     "No program can read the file.", "Name the root VorlanTyp, StdXcvr, SPIDData or KestruneUI.", "<VorlanType>",
     "<VorlanTyp>"},
    {106, kNote, "There is a byte order mark, a CR LF or an encoding other than UTF-8.",
     "It is read without complaint, and a save writes UTF-8 with line feeds and no mark.",
     "The first save changes bytes that nobody meant to change.", "Run kestrune-data format once.", "<?xml ...?> CR LF",
     "<?xml ...?> LF"},
    {107, kNote, "There is a comment, a processing instruction or a document type.",
     "It is passed over, and a save drops it.", "The remark is lost with the first save by a program.",
     "Say it in FileDescription or Description, or keep it outside of the file.", "<!-- checked in May -->",
     "<FileDescription>Checked in May</FileDescription>"},
    {201, kError, "An element stands where no member reads it.",
     "It is passed over, and a save drops it. Names are compared with regard to case.",
     "What it says has no effect, and the member that was meant keeps its default.",
     "Correct the name, or take the element out.", "<RomEnd>0x1FFF</RomEnd>", "<ROMend>0x1FFF</ROMend>"},
    {202, kError, "An attribute stands where no member reads it.", "It is passed over, and a save drops it.",
     "What it says has no effect, and the member that was meant keeps its default.",
     "Correct the name, or take the attribute out.", "<VorlanModel name=\"Vorlan 1802\">",
     "<VorlanModel Name=\"Vorlan 1802\">"},
    {203, kWarning, "A member that every saved file has is missing.",
     "The member keeps its default, and a save writes that.",
     "Programs work with a value that nobody chose; the default Unassigned is no number.",
     "Add the member, with the default if that is meant.", "a VorlanModel without MaxClockID",
     "<MaxClockID>5</MaxClockID>"},
    {204, kError, "A member is read from a record further down.",
     "A member is looked for among all elements inside its record, and the first in the file is taken.",
     "The record shows a text that belongs to another one.",
     "Add the member, or move it in front of the records inside.",
     "<Clock Value=\"10000\"><Multipliers>...<Display>1/2</Display>...</Multipliers></Clock>",
     "<Clock Value=\"10000\"><Display>10 MHz</Display><Multipliers>...</Multipliers></Clock>"},
    {205, kError, "An item stands inside another item.",
     "A collection takes all elements of that name as its items, however deep, and each takes the first member inside "
     "it.",
     "Both are read as items, and the outer one may take its members from the inner one.",
     "Move the inner item behind the outer one.", "<Clock Value=\"1000\">...<Clock Value=\"2000\">...</Clock></Clock>",
     "<Clock Value=\"1000\">...</Clock><Clock Value=\"2000\">...</Clock>"},
    {206, kError, "An item has no key attribute.", "It is passed over without any result code.",
     "Programs never see the item, and a save drops it.", "Give it its key.", "<ClockingScheme>",
     "<ClockingScheme Id=\"5\">"},
    {207, kError, "An item has an empty key.", "It is left out, and the load answers KRX_E_DUPLICATE_KEY.",
     "Programs never see the item; those that look at the result take the file for damaged.", "Give it its key.",
     "<Transceiver Name=\"\">", "<Transceiver Name=\"Cordane 16\">"},
    {208, kError, "An item has a key that is there already.",
     "It is left out, and the load answers KRX_E_DUPLICATE_KEY. Upper and lower case are the same. The Name of a chip "
     "model is compared with the Key of the models before it.",
     "Programs never see the item; those that look at the result take the file for damaged.",
     "Give it a key of its own, or take it out.", "<Clock Value=\"1000\">...<Clock Value=\"1000\">",
     "<Clock Value=\"1000\">...<Clock Value=\"2000\">"},
    {209, kError, "A member stands twice.", "The first in the file counts; a save drops the other.",
     "A change to the second has no effect.", "Take out the one that is wrong.",
     "<ROMend>0x1FFF</ROMend><ROMend>0x2FFF</ROMend>", "<ROMend>0x2FFF</ROMend>"},
    {210, kWarning, "A collection is missing.", "It stays empty in a new document and keeps its items in a used one.",
     "Nothing of it can be found.", "Add its element; an empty one says that nothing is meant to be there.",
     "a VorlanTyp without ClockingSchemes", "<ClockingSchemes>...</ClockingSchemes>"},
    {211, kWarning, "A collection is empty where programs need an item.",
     "The load answers the remark KRX_S_EMPTY_COLLECTION.", "Every search in it fails.",
     "Add the items: models, clocking schemes, clocks.", "<Clocks></Clocks>",
     "<Clocks><Clock Value=\"10000\">...</Clock></Clocks>"},
    {212, kNote, "The order is not that of a save.", "The order does not matter on loading, and a save restores it.",
     "The first save moves lines that nobody meant to change.", "Run kestrune-data format once.",
     "<Algorithm>1</Algorithm><Description></Description>", "<Description></Description><Algorithm>1</Algorithm>"},
    {301, kError, "A text is no number.", "Loading does not look at it; whoever asks for the number gets an exception.",
     "The program that asks fails, perhaps long after the load.",
     "Write a number: 32, 0x20 or, with a leading 0, octal 040.", "<Family>22OO</Family>", "<Family>2200</Family>"},
    {302, kError, "A text is no hexadecimal number, or is one without 0x and counts as decimal.",
     "Loading does not look at it; whoever asks for the number gets an exception, or another number.",
     "The program that asks fails, or works with an address that was not meant.", "Write 0x and hexadecimal digits.",
     "<ROMend>1FFF</ROMend>", "<ROMend>0x1FFF</ROMend>"},
    {303, kError, "A text is no truth value.",
     "Loading does not look at it; whoever asks gets an exception. Attributes take TRUE and FALSE alone; Uart also "
     "takes "
     "1, YES, 0 and NO.",
     "The program that asks fails.", "Write TRUE or FALSE.", "<VorlanModel ExternalMemory=\"yes\">",
     "<VorlanModel ExternalMemory=\"TRUE\">"},
    {304, kError, "There is a blank behind a number.",
     "A blank before a number is passed over, one behind it is not: whoever asks gets an exception.",
     "The program that asks fails.", "Take the blank away; check --fix does.", "<Family>2200 </Family>",
     "<Family>2200</Family>"},
    {305, kError, "A number is past its range.", "Numbers have 32 bits; it becomes the limit, 2147483647 for most.",
     "Programs work with the limit.", "Write a number that fits.", "<std_id>4294967296</std_id>",
     "<std_id>4096</std_id>"},
    {306, kNote, "A number has a leading 0 and is octal.", "010 is 8.", "People read another number than programs.",
     "Write it without the 0 if decimal is meant.", "<ModelNum>010</ModelNum>", "<ModelNum>8</ModelNum>"},
    {307, kError, "xcvr_gp_data has no X.", "Loading takes everything up to the first X away, here the whole text.",
     "The data is empty, and a save writes 0x.", "Put 0x before the digits.", "<xcvr_gp_data>0E01</xcvr_gp_data>",
     "<xcvr_gp_data>0x0E01</xcvr_gp_data>"},
    {308, kError, "The number of a device class is not major.minor.",
     "Each part is read up to the first character that is no digit; a part without a digit is 0.",
     "The class is found under another number, or under 0.0.", "Write major.minor in decimal, or major alone.",
     "<DeviceClass Number=\"1-2\">", "<DeviceClass Number=\"1.2\">"},
    {309, kWarning, "\"Unassigned\" stands where a program asks for a number or a truth value.",
     "It is the text of a member that nobody has set; whoever asks gets an exception.", "The program that asks fails.",
     "Write the value.", "<CapacityModel>Unassigned</CapacityModel>", "<CapacityModel>1</CapacityModel>"},
    {401, kError, "ClockingScheme names no scheme.", "The number is stored; a search for the scheme finds nothing.",
     "No clock can be chosen for the model.", "Name a scheme that is there, or add the scheme.",
     "<ClockingScheme>9</ClockingScheme> with schemes 1 to 8", "<ClockingScheme>8</ClockingScheme>"},
    {402, kError, "The link table names a model number that no model has.",
     "The table is searched by number and knows no models.", "The entry has no effect.",
     "Correct the number, or take the entry out.", "<LinkCompatibleList>9;999</LinkCompatibleList>",
     "<LinkCompatibleList>9</LinkCompatibleList>"},
    {403, kError, "An entry of the link table never matches.",
     "Entries are compared as texts with the number in decimal; a blank, 0x or a leading 0 makes a difference.",
     "The models do not count as compatible.", "Write the number in decimal, without blanks.",
     "<LinkCompatibleList>8; 9</LinkCompatibleList>", "<LinkCompatibleList>8;9</LinkCompatibleList>"},
    {404, kWarning, "A link goes in one direction.", "Only the list of the model that is asked about is searched.",
     "The answer depends on which of the two is named first.", "Enter the other direction too.",
     "8 lists 9, and 9 does not list 8", "8 lists 9, and 9 lists 8"},
    {405, kError, "Two models have one number.", "Both are loaded.", "Programs that search by number find the first.",
     "Give each model its own number.", "<ModelNum>8</ModelNum> ... <ModelNum>010</ModelNum>",
     "<ModelNum>8</ModelNum> ... <ModelNum>9</ModelNum>"},
    {406, kWarning, "Two models have one name.", "Both are loaded; FindByName gives the first.",
     "Programs never find the second by its name.", "Give each model its own name.",
     "Name=\"Vorlan 1802\" ... Name=\"VORLAN 1802\"", "Name=\"Vorlan 1802\" ... Name=\"Vorlan 1802-T\""},
    {407, kWarning, "Two models have one key.", "Both are loaded; Find gives the first.",
     "Programs never find the second by its key.", "Give each model its own key.",
     "<Key>KVO-1</Key> ... <Key>KVO-1</Key>", "<Key>KVO-1</Key> ... <Key>KVO-2</Key>"},
    {408, kError, "Two records of one table have one number.",
     "Both are loaded; a search by number gives the first. 16, 0x10 and 020 are one number.",
     "Programs never find the second by its number.", "Give each record its own number.",
     "<std_id>16</std_id> ... <std_id>0x10</std_id>", "<std_id>16</std_id> ... <std_id>17</std_id>"},
    {409, kWarning, "A transceiver of the user's file is dropped.",
     "The user's file is added to the standard one, except the transceivers whose name, in any case, or std_id is "
     "there.",
     "Programs never see the user's transceiver.", "Give it a name and a number of its own.",
     "std_id 0x44 beside a standard transceiver 68", "std_id 0x144"},
    {410, kWarning, "A model of an add-on is there already.",
     "Add-ons are added behind the main file; a model is refused only if its name is the key of one before it.",
     "The model stands twice in the list, or is refused: the trace of a save of merged models.",
     "Take it out of the one file where it does not belong.", "Vorlan 2208-C in Vorlan.xml and in Vorlan-1.xml",
     "Vorlan 2208-C in Vorlan-1.xml alone"},
    {411, kWarning, "An add-on is behind a gap in the numbers.",
     "Add-ons are looked for from 1 on; the first number without a file ends the search.", "Nobody reads the file.",
     "Rename it to the first free number.", "Vorlan-1.xml, Vorlan-3.xml", "Vorlan-1.xml, Vorlan-2.xml"},
    {412, kWarning, "TransceiverList names a transceiver that is in no file.",
     "The text is stored and not looked into.", "The model seems to have a transceiver that cannot be chosen.",
     "Correct the name, or add the transceiver.", "<TransceiverList>Cordane16</TransceiverList>",
     "<TransceiverList>Cordane 16</TransceiverList>"},
    {413, kWarning, "ManufacturerID is in no file.", "The number is stored; -1 stands for none.",
     "Programs have no name for the manufacturer.", "Correct the number, or add the manufacturer.",
     "<ManufacturerID>999</ManufacturerID>", "<ManufacturerID>2</ManufacturerID>"},
    {414, kWarning, "ChannelTypeNumber is in no file.", "The number is stored.",
     "Programs have no name for the channel type.", "Correct the number, or add the channel type.",
     "<ChannelTypeNumber>99</ChannelTypeNumber>", "<ChannelTypeNumber>3</ChannelTypeNumber>"},
    {415, kWarning, "Another file takes the place of the one that was asked for.",
     "The newest classes look for vorlan.xml and stdxcvr.xml in the folder that PFDT names; without PFDT, vorlan.xml "
     "is "
     "looked for in the current directory.",
     "Programs read the other file, whatever name they give.", "Unset PFDT, or take the other file away.",
     "vorlan.xml in the current directory", "(no such file)"},
    {501, kWarning, "A memory range starts above its end.", "Both texts are stored.",
     "Programs see an empty or a huge memory.", "Correct one of the two.",
     "<EEstart>0xFA00</EEstart><EEend>0xF9FF</EEend>", "<EEstart>0xF800</EEstart><EEend>0xF9FF</EEend>"},
    {502, kWarning, "Two memory ranges overlap.",
     "The texts are stored. The ROM begins at 0; a range from 0x0 to 0x0 is none.", "One address means two memories.",
     "Correct the ranges.", "EEPROM to 0xF1FF, RAM from 0xF000", "EEPROM to 0xEFFF, RAM from 0xF000"},
    {503, kWarning, "ROMend is below its minimum.", "Both texts are stored.",
     "No image fits into the ROM that is described.", "Correct one of the two.",
     "<ROMend>0x0FFF</ROMend><ROMendMinimum>0x1FFF</ROMendMinimum>",
     "<ROMend>0x1FFF</ROMend><ROMendMinimum>0x1FFF</ROMendMinimum>"},
    {504, kWarning, "The uninitialised EEPROM lies outside of the EEPROM.", "The texts are stored.",
     "Programs would leave out memory that is not there.", "Put it inside, or write 0x0 to 0x0 for none.",
     "EEPROM 0xF000 to 0xF1FF, uninitialised to 0xF2FF", "EEPROM 0xF000 to 0xF1FF, uninitialised to 0xF1FF"},
    {505, kWarning, "The lowest firmware release is above the highest.", "Both texts are stored.",
     "No release fits the model.", "Exchange the two.", "<minFWrelease>5</minFWrelease><maxFWrelease>4</maxFWrelease>",
     "<minFWrelease>4</minFWrelease><maxFWrelease>5</maxFWrelease>"},
    {506, kWarning, "A listed firmware version lies outside of the releases.", "The texts are stored.",
     "Programs offer a version that the model does not have.", "Correct the list or the releases.",
     "<FirmwareVersionList>4;9</FirmwareVersionList> for 4 to 5", "<FirmwareVersionList>4;5</FirmwareVersionList>"},
    {507, kWarning, "The lowest clock id is above the highest.", "Both texts are stored.",
     "No clock fits the model or the channel.", "Exchange the two.",
     "<min_clockID>15</min_clockID><max_clockID>1</max_clockID>",
     "<min_clockID>1</min_clockID><max_clockID>15</max_clockID>"},
    {508, kWarning, "A clock has no multipliers.", "The clock is found, a multiplier never.",
     "No search for a clock and a multiplier can succeed.", "Add at least the multiplier 1.",
     "<Multipliers></Multipliers>", "<Multipliers><Multiplier Value=\"1\">...</Multiplier></Multipliers>"},
    {509, kWarning, "Display and Value of a clock are two rates.", "Value counts kilohertz; Display is only shown.",
     "People choose another rate than programs set.", "Correct one of the two.",
     "<Clock Value=\"1000\"><Display>10 MHz</Display>", "<Clock Value=\"10000\"><Display>10 MHz</Display>"},
};

} // namespace

const char *levelName(Level level) { return level == kError ? "error" : level == kWarning ? "warning" : "note"; }

std::span<const Finding> allFindings() { return kFindings; }

const Finding *findFinding(int number) {
  const Finding *const found =
      std::lower_bound(std::begin(kFindings), std::end(kFindings), number,
                       [](const Finding &finding, int wanted) { return finding.number < wanted; });
  return found != std::end(kFindings) && found->number == number ? found : nullptr;
}

std::string findingName(int number) { return "KD" + std::to_string(number); }

std::string explanation(const Finding &finding) {
  return findingName(finding.number) + " (" + levelName(finding.level) + ")  " + finding.title + //
         "\n\nThe library   " + finding.library +                                                //
         "\nThe result    " + finding.result +                                                   //
         "\nTo mend it    " + finding.mend +                                                     //
         "\nWrong         " + finding.wrong +                                                    //
         "\nRight         " + finding.right + "\n";
}

std::string findingsPage() {
  std::string page =
      "# Findings of `kestrune-data check`\n\n"
      "Made with `kestrune-data check --page` from the texts that `--list` and `--explain` print. Numbers "
      "never move and are never\nused again.\n";
  for (const Finding &finding : allFindings()) {
    page += "\n## " + findingName(finding.number) + " (" + levelName(finding.level) + ")\n\n" + finding.title + "\n\n";
    page += std::string("- **The library:** ") + finding.library + "\n- **The result:** " + finding.result +
            "\n- **To mend it:** " + finding.mend + "\n\n";
    page += std::string("```text\nwrong  ") + finding.wrong + "\nright  " + finding.right + "\n```\n";
  }
  return page;
}
