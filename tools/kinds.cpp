#include "tools/kinds.h"

#include <algorithm>
#include <string>

namespace {

template <class Document>
std::unique_ptr<CXMLTopLevelFolder> make() {
  return std::make_unique<Document>();
}

using Maker = std::unique_ptr<CXMLTopLevelFolder> (*)();

constexpr Maker kChipData[] = {make<CVorlanTyp>, make<CVorlanTyp2>, make<CVorlanTyp3>, make<CVorlanTyp4>};
constexpr Maker kTransceivers[] = {make<CStdXcvr>, make<CStdXcvr2>, make<CStdXcvr3>};
constexpr Maker kIdentity[] = {make<CSpidData>, make<CSpidData2>};
constexpr Maker kUserInterface[] = {make<CKestruneUI>};

const Kind kKinds[] = {
    {"VorlanTyp", "$StdVorlanTyp$", "chip data", kChipData},
    {"StdXcvr", "$StdXcvrTyp$", "transceivers", kTransceivers},
    {"SPIDData", "$StdSpidData$", "identity data", kIdentity},
    {"KestruneUI", "$StdKestruneUI$", "user-interface data", kUserInterface},
};

const Kind *find(std::string_view text, const char *Kind::*column) {
  const CString wanted(std::string(text).c_str());
  const auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                  [&](const Kind &kind) { return wanted.CompareNoCase(kind.*column) == 0; });
  return found != std::end(kKinds) ? &*found : nullptr;
}

} // namespace

std::span<const Kind> allKinds() { return kKinds; }

const Kind *kindOfRoot(std::string_view root) { return find(root, &Kind::root); }

const Kind *kindOfMacro(std::string_view macro) { return find(macro, &Kind::macro); }
