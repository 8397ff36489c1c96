#include "kestrune/names/macro_expansion.h"

#include "kestrune/platform/code_page.h"

#include <cstdlib>
#include <utility>
#include <vector>

namespace {

/// The longest text that an expansion may produce, in bytes.
constexpr std::size_t kLongestExpansion = 32767;

/// A left-to-right scan of a text: the finished part, and the rest to read. An inserted value is fully expanded, so it
/// contains at most one `$`; that `$` may start a name that ends in the rest.
class Scan {
public:
  explicit Scan(std::string_view text) : m_rest(text) {}

  /// Takes the next name, with both `$`, out of the text. False when there is none, so the text is complete.
  bool nextName(CString &name) {
    if (m_open.empty()) {
      const std::size_t first = m_rest.find('$');
      if (first != std::string_view::npos) {
        m_done += m_rest.substr(0, first);
        m_open = '$';
        m_rest.remove_prefix(first + 1);
      }
    }
    const std::size_t second = m_open.empty() ? std::string_view::npos : m_rest.find('$');
    if (second == std::string_view::npos) {
      m_done += m_open;
      m_done += m_rest;
      m_open.clear();
      m_rest = {};
      return false;
    }
    m_open += m_rest.substr(0, second + 1);
    name = m_open.c_str();
    m_open.clear();
    m_rest.remove_prefix(second + 1);
    return true;
  }

  /// Inserts the value of the name just taken. False, and nothing changes, if the text would become too long.
  bool insert(std::string_view value) {
    if (m_done.size() + value.size() + m_rest.size() > kLongestExpansion)
      return false;
    const std::size_t dollar = value.find('$');
    m_done += value.substr(0, dollar);
    if (dollar != std::string_view::npos)
      m_open = value.substr(dollar);
    return true;
  }

  /// The whole text, with `replacement` in place of a name just taken.
  std::string finish(std::string_view replacement = {}) && {
    m_done += replacement;
    m_done += m_rest;
    return std::move(m_done);
  }

private:
  std::string m_done;
  std::string m_open;
  std::string_view m_rest;
};

/// The environment variable in the code page; empty if there is none. The host's texts are UTF-8.
std::string Variable(const CString &name) {
  std::string text;
  const char *value = kestrune::platform::TextToUtf8(name.View(), text) ? std::getenv(text.c_str()) : nullptr;
  if (value == nullptr)
    return {};
  return kestrune::platform::IsValidUtf8(value) ? kestrune::platform::Utf8ToText(value) : value;
}

} // namespace

bool MacroExpansion::explode(std::string_view text, CString &out) {
  Scan scan(text);
  CString name;
  bool complete = true;
  std::string replacement;
  while (complete && scan.nextName(name)) {
    const int macro = m_table.FindMacro(name);
    const std::string *value = macro < 0 ? nullptr : valueOf(macro);
    if (value != nullptr && scan.insert(*value))
      continue;
    complete = false;
    replacement = Variable(name.Trim(" $"));
  }
  const std::string result = std::move(scan).finish(replacement);
  out = CString(result);
  return complete;
}

const std::string *MacroExpansion::valueOf(int macro) {
  if (const auto known = m_values.find(macro); known != m_values.end())
    return known->second ? &*known->second : nullptr;

  struct Frame {
    int macro;
    Scan scan;
  };
  std::vector<Frame> frames;
  const auto enter = [&](int entry) {
    m_values[entry].reset();
    frames.push_back({entry, Scan(CMacroString::oMacros[entry].value.View())});
  };
  enter(macro);
  CString name;
  for (;;) {
    Scan &scan = frames.back().scan;
    if (scan.nextName(name)) {
      const int next = m_table.FindMacro(name);
      if (next < 0)
        return nullptr;
      const auto known = m_values.find(next);
      if (known == m_values.end())
        enter(next);
      else if (!known->second || !scan.insert(*known->second))
        return nullptr;
      continue;
    }
    std::string text = std::move(scan).finish();
    if (text.size() > kLongestExpansion)
      return nullptr;
    std::optional<std::string> &value = m_values[frames.back().macro];
    value = std::move(text);
    frames.pop_back();
    if (frames.empty())
      return &*value;
    if (!frames.back().scan.insert(*value))
      return nullptr;
  }
}
