#pragma once

#include "kestrune/xml/xml_collection.h"

#include <memory>

// Code shared by the rows that have a name and a number, and by their lists.

namespace rows {

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

/// A new row with the item tag of its collection, which will own it.
template <class Row>
CXMLFolder *make(const CString &itemTag) {
  auto row = std::make_unique<Row>();
  row->PutTag(itemTag);
  return row.release();
}

/// Sets the number of a row that was just added; `row` is null if it was refused.
template <class Row, class Number>
Row *withNumber(Row *row, Number number) {
  if (row != nullptr)
    row->Number = number;
  return row;
}

} // namespace rows
