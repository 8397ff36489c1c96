#pragma once

#include "tests/test_support.h"

#include <algorithm>
#include <sstream>

// Folders and documents in and out of the bytes of real files.

namespace support {

/// The result of loading `folder`, which may be a list or a document, from a file of these bytes in `place`.
template <class Folder>
long load(Folder &folder, std::string_view xml, const TempFolder &place = {}) {
  const Com com;
  write(place / "a.xml", xml);
  return folder.LoadFromFile((place / "a.xml").c_str(), nullptr);
}

/// The bytes of the file that saving `folder` gives.
template <class Folder>
std::string save(Folder &folder, const TempFolder &place = {}) {
  const Com com;
  EXPECT_EQ(folder.SaveToFile((place / "b.xml").c_str(), nullptr, true), S_OK);
  return read(place / "b.xml");
}

/// What the library writes for a document with this root, these header values and, behind the header, this body.
inline std::string document(const std::string &root, char number, const std::string &text, const std::string &body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<" + root +
         ">\n\t<Contents MajorVersion=\"0\" MinorVersion=\"0\" CreationDate=\"7\" Format=\"" + number +
         "\" Content=\"" + number + "\">\n\t\t<FileDescription>" + text +
         "</FileDescription>\n\t\t<UpgradeStatus>0</UpgradeStatus>\n\t</Contents>\n" + body + "</" + root + ">\n";
}

/// The keys of the items, separated by commas.
template <class List>
std::string keys(List &list) {
  std::string joined;
  for (int i = 0; i < list.Count(); ++i)
    joined += (i > 0 ? "," : "") + std::string(list[i]->Key());
  return joined;
}

/// The key of an item that a search found; "none" for null.
template <class Item>
CString keyOf(Item *item) {
  return item != nullptr ? item->Key() : CString("none");
}

/// A copy of a record, list or document, made in each way, saves what it saves; assigned to itself it stays as it is.
template <class Record>
void expectCopies(Record &record) {
  SCOPED_TRACE(record.GetTag());
  Record copy(record), assigned;
  assigned = record;
  EXPECT_EQ(save(copy), save(record));
  EXPECT_EQ(save(assigned), save(record));
  assigned = static_cast<const Record &>(assigned);
  EXPECT_EQ(assigned.GetModified(), 0);
  EXPECT_EQ(save(assigned), save(record));
}

/// Holds what `result` makes of each row's cells against the last of them. Cells stand between blanks and line ends;
/// `-` is the empty text, `null` none at all, and `~` a blank.
using Cells = std::vector<const char *>;
template <class Result>
void checkRows(std::size_t columns, const std::string &table, Result result) {
  std::istringstream in(table);
  Cells row;
  for (std::vector<std::string> words(columns); in >> words[row.size()];) {
    std::string &word = words[row.size()];
    std::replace(word.begin(), word.end(), '~', ' ');
    row.push_back(word == "null" ? nullptr : word == "-" ? "" : word.c_str());
    if (row.size() == columns) {
      EXPECT_STREQ(CString(result(row)), row.back()) << row[0] << " " << row[1];
      row.clear();
    }
  }
  EXPECT_TRUE(row.empty()) << "a row lacks cells";
}

} // namespace support
