#pragma once

#include "fuzz/fuzz_support.h"
#include "kestrune/kestrune_xml.h"

#include <vector>

// Shared by the fuzzers of data files.

using Texts = std::vector<std::string>;

/// Calls `check` with a new object of each document class.
template <class Check>
void ForEachDocument(Check check) {
  const auto callWith = [&]<class... Documents>() { (check(*std::make_unique<Documents>()), ...); };
  callWith.template operator()<CVorlanTyp, CVorlanTyp2, CVorlanTyp3, CVorlanTyp4, CStdXcvr, CStdXcvr2, CStdXcvr3,
                               CSpidData, CSpidData2, CKestruneUI>();
}

/// Keeps the registry and the replacement files of the machine out of the run.
inline void PrepareForDocuments(const Scratch &scratch) {
  ::setenv("KESTRUNE_REGISTRY", scratch.path("none.reg").c_str(), 1);
  ::setenv("PFDT", scratch.path("none").c_str(), 1);
  CoInitialize(nullptr);
}

inline void CollectTexts(CXMLFolder &folder, Texts &texts) {
  texts.emplace_back(folder.GetTag().View());
  for (const kestrune::MemberView &member : kestrune::MembersOf(folder)) {
    if (member.folder != nullptr) {
      CollectTexts(*member.folder, texts);
      continue;
    }
    const std::string tag(member.value->GetTag().View());
    // It is saved with a prefix and read in upper case, so a value that was not read from a file would come back
    // changed.
    if (tag == "xcvr_gp_data")
      member.value->MakeUpper();
    texts.push_back(tag + '=' + std::string(member.value->View()));
  }
  if (auto *const list = dynamic_cast<CXMLCollectionFolder *>(&folder))
    for (int i = 0; i < list->Count(); ++i)
      CollectTexts(*(*list)[i], texts);
}

/// All texts of a document that are saved, each with its tag.
inline Texts TextsOf(CXMLFolder &document) {
  Texts texts;
  CollectTexts(document, texts);
  return texts;
}

inline void RequireSame(const Texts &expected, const Texts &found, const char *promise) {
  Require(expected.size() == found.size(), promise,
          std::to_string(expected.size()) + " and " + std::to_string(found.size()) + " texts");
  for (std::size_t i = 0; i < expected.size(); ++i)
    Require(expected[i] == found[i], promise, expected[i] + "\n" + found[i]);
}

/// Saves, loads and saves `document`, whatever it holds: the texts and the bytes must stay the same.
template <class Document>
void RequireRoundTrip(Document &document, const Scratch &scratch) {
  const Texts texts = TextsOf(document);
  Require(document.SaveToFile(scratch.path("first.xml").c_str(), nullptr, true) == S_OK, "a document can be saved");
  Document again;
  Require(again.CXMLFolder::LoadFromFile(scratch.path("first.xml").c_str(), nullptr) >= 0,
          "what was saved can be loaded");
  RequireSame(texts, TextsOf(again), "a save and a load give the same texts");
  Require(again.SaveToFile(scratch.path("second.xml").c_str(), nullptr, true) == S_OK, "it can be saved again");
  Require(scratch.read("first.xml") == scratch.read("second.xml"), "the second save writes the same bytes");
}
