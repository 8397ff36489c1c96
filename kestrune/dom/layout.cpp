#include "kestrune/dom/layout.h"

#include <array>

namespace kestrune::dom {

namespace {

constexpr std::size_t kMostTabs = 63;
constexpr auto kLayout = [] {
  std::array<char, kMostTabs + 2> text{};
  text.fill('\t');
  text[0] = '\n';
  text[kMostTabs + 1] = '\0';
  return text;
}();

} // namespace

std::string_view LayoutText(std::size_t count, std::string &buffer) {
  if (count <= kMostTabs)
    return {kLayout.data(), count + 1};
  buffer.assign(count + 1, '\t');
  buffer[0] = '\n';
  return buffer;
}

std::string_view SharedLayout(std::string_view text) {
  const std::string_view layout = std::string_view(kLayout.data(), kMostTabs + 1).substr(0, text.size());
  return text == layout ? layout : std::string_view();
}

} // namespace kestrune::dom
