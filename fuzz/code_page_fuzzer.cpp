// Any bytes as a text; the first byte chooses the code page. What can be converted must convert back, steps over
// characters must meet the same places in both directions, and comparing must agree with case folding.

#include "fuzz/fuzz_support.h"
#include "kestrune/platform/code_page.h"

#include <vector>

namespace {

using namespace kestrune::platform;

/// A page may have several forms of one character, so the UTF-8 forms are compared, not the bytes of the page.
void checkText(std::string_view text) {
  const std::wstring wide = TextToWide(text);
  std::string utf8;
  if ((GetCodePage() == kUtf8 && !IsValidUtf8(text)) || !TextToUtf8(text, utf8)) {
    Require(wide.find(L'\xFFFD') != std::wstring::npos, "what is not valid shows in a wide text");
    return;
  }
  Require(IsValidUtf8(utf8), "a conversion gives UTF-8");
  Require(WideToUtf8(wide) == utf8, "a text is the same by way of wide characters");
  const std::string back = Utf8ToText(utf8);
  std::string again;
  Require(WideToText(wide) == back, "a wide text comes back as the others do");
  Require(TextToUtf8(back, again) && again == utf8, "a text comes back");
}

void checkUtf8(std::string_view text) {
  std::string wide, back;
  const bool valid = IsValidUtf8(text);
  Require(ConvertEncoding(text, "UTF-8", "UTF-16LE", wide) == valid, "UTF-8 is what the C library takes for it");
  if (!valid)
    return;
  Require(ConvertEncoding(wide, "UTF-16LE", "UTF-8", back) && back == text, "UTF-16 and back");
  const std::string inPage = Utf8ToText(text);
  Require(TextToUtf8(inPage, back), "what was put into the page is valid there");
  Require(Utf8ToText(back) == inPage, "what the page has stays");
}

void checkSteps(const std::string &text) {
  const char *const start = text.c_str();
  std::vector<const char *> places = {start};
  while (*places.back() != '\0') {
    places.push_back(CharNextA(places.back()));
    Require(places.back() > places.end()[-2] && places.back() <= start + text.size(),
            "a step leads on, not beyond the end");
  }
  for (std::size_t i = places.size() - 1; i > 0; --i)
    Require(CharPrevA(start, places[i]) == places[i - 1], "a step back undoes a step");
}

void checkOrder(std::string_view a, std::string_view b) {
  const int order = CompareNoCase(a, b);
  const int reverse = CompareNoCase(b, a);
  Require((order < 0) == (reverse > 0) && (order > 0) == (reverse < 0), "an order has two directions");
  Require((order == 0) == (FoldCase(a) == FoldCase(b)), "texts are the same where their folded forms are");
  Require(CompareNoCase(a, FoldCase(a)) == 0, "folding changes the case alone");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
  constexpr unsigned kPages[] = {65001, 1252, 932, 936, 949, 950};
  if (size == 0)
    return 0;
  Require(SetCodePage(kPages[data[0] % std::size(kPages)]), "the page is there");
  const std::string text(reinterpret_cast<const char *>(data) + 1, size - 1);
  checkText(text);
  checkUtf8(text);
  checkSteps(text.substr(0, text.find('\0')));
  const std::size_t half = text.size() / 2;
  checkOrder(std::string_view(text).substr(0, half), std::string_view(text).substr(half));
  return 0;
}
