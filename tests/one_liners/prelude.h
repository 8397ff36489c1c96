#pragma once

#include "kestrune/kestrune_xml.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <numeric>
#include <optional>
#include <ranges>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// What the one-liners are written on: a document of three models, of which the first is filled in.

inline std::size_t takesView(std::string_view text) { return text.size(); }
inline std::size_t takesString(const std::string &text) { return text.size(); }
inline std::size_t takesCopy(std::string text) { return text.size(); }
inline const char *takesEither(const char * /*text*/) { return "pointer"; }
inline const char *takesEither(const std::string & /*text*/) { return "string"; }
inline const char *takesCopyOrPointer(const char * /*text*/) { return "pointer"; }
inline const char *takesCopyOrPointer(std::string /*text*/) { return "string"; }
inline const char *takesPointerOrView(const char * /*text*/) { return "pointer"; }
inline const char *takesPointerOrView(std::string_view /*text*/) { return "view"; }

struct Document : CVorlanTyp4 {
  Document() {
    for (const char *name : {"A 10", "B 20", "C 30"})
      VorlanModels4.Add(name)->KeyText = name;
    CVorlanModel4 &model = *VorlanModels4[0];
    model.ROMend = 0x7FFF;
    model.RAMstart = 0x1000;
    model.ModelNum = 12;
    model.ExternalMemory = true;
    model.NVMemoryTypes().Add("1", "Flash");
  }
};

/// A list as a program writes it.
struct OwnList : CXMLCollectionFolder {
  OwnList() { setTags("List", "Item", "Name"); }
  CXMLFileName *operator[](int index) { return static_cast<CXMLFileName *>(CXMLCollectionFolder::operator[](index)); }
  CXMLFolder *NewFolder() override { return new CXMLFileName; }
  int walk() const {
    int count = 0;
    for (const CXMLFolder *item : m_items)
      count += item->Key() == "Unassigned";
    return count;
  }
};

/// What an expression prints, or "throws" and the number of the text.
template <class Code>
std::string shown(Code code) {
  std::ostringstream out;
  try {
    out << std::boolalpha << code();
  } catch (CKRXException *exception) {
    char message[256];
    exception->GetErrorMessage(message, sizeof message);
    exception->Delete();
    const std::string text(message);
    out << "throws " << text.substr(text.find('#') + 1, 3);
  } catch (const std::exception &exception) {
    out << "throws " << exception.what();
  }
  return out.str();
}

inline int isOther(int row, const std::string &is, std::string_view expected) {
  if (is == expected)
    return 0;
  std::cerr << "row " << row << ": " << is << '\n';
  return 1;
}

#define CONTEXT                                                                                                        \
  Document document;                                                                                                   \
  const Document &fixed = document;                                                                                    \
  CVorlanModels4 &models = document.VorlanModels4;                                                                     \
  const CVorlanModels4 &fixedModels = models;                                                                          \
  CVorlanModel4 &model = *models[0];                                                                                   \
  const CVorlanModel4 &fixedModel = model;                                                                             \
  OwnList list;                                                                                                        \
  list.Add("x");                                                                                                       \
  const OwnList &fixedList = list;                                                                                     \
  CString text = "text";                                                                                               \
  const CString &fixedText = text;                                                                                     \
  CFilename file("C:\\a\\b.xml");                                                                                      \
  std::string s = "A 10";                                                                                              \
  std::string_view v = s;                                                                                              \
  std::ostringstream out
