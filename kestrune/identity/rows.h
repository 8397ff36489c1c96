#pragma once

#include "kestrune/xml/xml_collection.h"

#include <memory>

// What rows with a name and a number, and their lists, have in common.

namespace rows {

/// Gives the members of a row other tags than those of its class.
template <class Row>
void setMemberTags(Row &row, const char *nameTag, const char *numberTag) {
  row.Name.PutTag(CString(nameTag));
  row.Number.PutTag(CString(numberTag));
}

template <class Row>
bool equal(const Row &a, const Row &b) {
  return a.Name.View() == b.Name.View() && a.Number.View() == b.Number.View();
}

template <class Row>
bool before(const Row &a, const Row &b) {
  return a.Name.View() < b.Name.View();
}

/// A new row for the collection that calls its items `itemTag`.
template <class Row>
CXMLFolder *make(const CString &itemTag) {
  auto row = std::make_unique<Row>();
  row->PutTag(itemTag);
  return row.release();
}

/// Writes the number into a row that has just been added, if it was.
template <class Row, class Number>
Row *withNumber(Row *row, Number number) {
  if (row != nullptr)
    row->Number = number;
  return row;
}

} // namespace rows
