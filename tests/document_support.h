#pragma once

#include "tests/test_support.h"

// Folders and documents in and out of the bytes of real files.

namespace support {

/// The result of loading `folder`, which may be a list or a document, from a file of these bytes.
template <class Folder>
long load(Folder &folder, std::string_view xml) {
  const Com com;
  const TempFolder place;
  write(place / "a.xml", xml);
  return folder.LoadFromFile((place / "a.xml").c_str(), nullptr);
}

/// The bytes of the file that saving `folder` gives.
template <class Folder>
std::string save(Folder &folder) {
  const Com com;
  const TempFolder place;
  EXPECT_EQ(folder.SaveToFile((place / "b.xml").c_str(), nullptr, true), S_OK);
  return read(place / "b.xml");
}

/// The bytes of a file of the test data.
inline std::string data(const std::string &name) { return read(KESTRUNE_TEST_DATA "/" + name); }

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

/// A copy of a record, list or document, made in each way, saves what it saves.
template <class Record>
void expectCopies(Record &record) {
  SCOPED_TRACE(record.GetTag());
  Record copy(record), assigned;
  assigned = record;
  EXPECT_EQ(save(copy), save(record));
  EXPECT_EQ(save(assigned), save(record));
}

/// `Document` loads the one file of test data and is saved as the other.
template <class Document>
void expectSaves(const std::string &saved, const std::string &loaded) {
  SCOPED_TRACE(loaded + " in, " + saved + " out");
  Document document;
  EXPECT_GE(load(document, data(loaded)), 0);
  EXPECT_EQ(document.GetModified(), 0);
  EXPECT_EQ(save(document), data(saved));
}

/// Init of a loaded document renews the header, the items stay.
template <class Document>
void expectInitRenewsTheHeader(const std::string &loaded) {
  SCOPED_TRACE(loaded);
  Document document, fresh;
  load(document, data(loaded));
  const std::string before = save(document);
  document.Contents.Format = document.Contents.Content = 9;
  document.Init();
  document.Contents.CreationDate = fresh.Contents.CreationDate = 4;
  EXPECT_EQ(save(document.Contents), save(fresh.Contents));
  const std::string after = save(document);
  EXPECT_EQ(after.substr(after.find("</Contents")), before.substr(before.find("</Contents")));
}

} // namespace support
