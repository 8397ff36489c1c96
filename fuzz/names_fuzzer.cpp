// Any texts as file names. The first line of the input is the name, the second the default folder, the third a search
// path, and up to four more are the values of the macros $A$ to $D$. If the first line begins with the byte 0x01, the
// rest is read in code page 932. Nothing may crash or hang; in UTF-8 the fast forms of normalising and expanding must
// give the same as the plain forms here, and a resolved name must resolve to itself.

#include "fuzz/fuzz_support.h"
#include "kestrune/kestrune_xml.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kLongestExpansion = 32767;

std::string lower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
  return result;
}

/// Gives the checks access to protected operations.
struct Name : CFilename {
  using CFilename::CFilename;

  Name Normalize(const char *text) const { return Name(CFilename::Normalize(text)); }

  std::map<std::string, std::string> table() const {
    std::map<std::string, std::string> entries;
    for (int i = 0; i < GetMacroCount(); ++i)
      entries[lower(GetMacroName(i).View())] = GetMacroValue(i);
    return entries;
  }
};

/// Normalises one step at a time over the whole text.
std::string plainNormalize(std::string text) {
  std::replace(text.begin(), text.end(), '/', '\\');
  for (std::size_t p = text.find("..\\"); p != std::string::npos && p != 0; p = text.find("..\\")) {
    std::string before = text.substr(0, p);
    if (before.back() == '\\')
      before.pop_back();
    const std::size_t q = before.rfind('\\');
    if (q == std::string::npos)
      break;
    text = before.substr(0, q) + '\\' + text.substr(p + 3);
  }
  for (std::size_t p = text.find("..\\"); p != std::string::npos; p = text.find("..\\"))
    text.replace(p, 2, "\n\n");
  for (std::size_t p = text.find(".\\", 1); p != std::string::npos; p = text.find(".\\", 1))
    text.erase(p, 2);
  for (std::size_t p = text.find("\n\n\\"); p != std::string::npos; p = text.find("\n\n\\"))
    text.replace(p, 2, "..");
  for (std::size_t p = text.find("\\\\"); p != std::string::npos && p != 0 && text[p - 1] != ':'; p = text.find("\\\\"))
    text.erase(p, 1);
  return text;
}

/// Expands one name after the other from the start of the text. A macro has no value inside its own value.
class PlainExpansion {
public:
  explicit PlainExpansion(std::map<std::string, std::string> table) : m_table(std::move(table)) {}

  bool expand(std::string text, std::string &out) {
    while (true) {
      m_largest = std::max(m_largest, text.size());
      const std::size_t first = text.find('$');
      const std::size_t second = first == std::string::npos ? first : text.find('$', first + 1);
      if (second == std::string::npos || tooLarge()) {
        out = text;
        return true;
      }
      std::string name = text.substr(first, second + 1 - first);
      const auto macro = m_table.find(lower(name));
      std::string value;
      bool known = macro != m_table.end() && !m_open[macro->first];
      if (known) {
        m_open[macro->first] = true;
        known = expand(macro->second, value);
        m_open[macro->first] = false;
      }
      if (!known) {
        name.erase(0, std::min(name.find_first_not_of(" $"), name.size()));
        name.erase(name.find_last_not_of(" $") + 1);
        const char *const variable = std::getenv(name.c_str());
        value = variable != nullptr ? variable : "";
      }
      text.replace(first, second + 1 - first, value);
      if (!known) {
        out = text;
        return false;
      }
    }
  }

  /// An expansion of this size follows other rules.
  bool tooLarge() const { return m_largest > kLongestExpansion; }

private:
  std::map<std::string, std::string> m_table;
  std::map<std::string, bool> m_open;
  std::size_t m_largest = 0;
};

std::string both(std::string_view a, std::string_view b) {
  return "'" + std::string(a) + "'\n'" + std::string(b) + "'";
}

void checkAgainstPlainForms(const Name &name) {
  const std::string expected = plainNormalize(std::string(name.View()));
  const Name normal = name.Normalize(name);
  Require(normal.View() == expected, "normalising gives what its steps give", both(normal.View(), expected));

  PlainExpansion plain(name.table());
  std::string expanded;
  const bool complete = plain.expand(std::string(name.View()), expanded);
  CString out;
  const bool result = name.Explode(out, 10);
  if (!plain.tooLarge())
    Require(result == complete && out.View() == expanded, "expanding gives what its steps give",
            both(out.View(), expanded));
}

/// Whether this is a full path that resolving would not change. If a doubled separator follows the drive, normalising
/// keeps it and all later ones, but not in the part of the path that is stored, so a path with one is skipped.
bool isSettled(const CFilename &path) {
  const std::string_view text = path.View();
  return path.GetLength() > 3 && text.substr(1, 2) == ":\\" && text[0] != '.' && text[0] != '\\' && text[0] != ':' &&
         text.find_first_of(":/$", 2) == std::string_view::npos && text.find("..") == std::string_view::npos &&
         text.find("\\\\") == std::string_view::npos && text.back() != '\\';
}

void checkResolution(const Name &name, const char *base) {
  CFilename full;
  if (!name.GetAbsolute(full, base))
    return;
  if (full.IsAbsolute() && full.Find('$') < 0) {
    CFilename again;
    Require(full.GetAbsolute(again, base), "a full path needs no current directory");
    Require(again.View() == full.View(), "a full path resolves to itself", both(full.View(), again.View()));
  }
  CFilename folder;
  if (!CFilename(base).GetAbsolute(folder, nullptr) || !isSettled(full) || !isSettled(folder))
    return;
  CFilename stored, back;
  full.GetRelative(stored, folder);
  Require(stored.GetAbsolute(back, folder) && back.CompareNoCase(full) == 0, "what is stored is found again",
          both(full.View(), stored.View()) + "\n" + both(folder.View(), back.View()));
}

void checkParts(const Name &name, const CString &searchPath) {
  const int length = name.GetLength();
  for (const CString &part : {CString(name.GetRoot()), CString(name.GetDir()), CString(name.GetPath()),
                              CString(name.GetName()), CString(name.GetExt())})
    Require(part.GetLength() <= std::max(length + 1, 3), "a part is no longer than its name",
            both(name.View(), part.View()));
  Require(name.View().ends_with(name.GetNameExt().View()), "the last segment ends the name");

  const int count = name.GetSegmentCount();
  Require(count >= 0 && count <= length, "a segment has a character");
  Require(name.GetPathSegment(count).View() == name.View(), "the name has all its segments");
  for (int i = 0; i < std::min(count, 20); ++i)
    (void)name.GetPathSegment(i);

  CFilename other(name);
  --other;
  Require(other.GetLength() <= length, "a name without its last segment is no longer");
  other.AppendName(name);
  other.AppendExt("xml");
  (void)name.IncludesMacro();
  (void)name.GetRelativePathName(searchPath);
  for (int i = 0; !GetSearchPathItem(searchPath, i).IsEmpty(); ++i)
    Require(i <= searchPath.GetLength(), "a search path ends");
  for (const int most : {0, 3, 10, length - 1}) {
    const CString shorter = name.Smoosh(most);
    Require(shorter.GetLength() <= std::max(most, length), "a name for display is no longer",
            both(name.View(), shorter.View()));
  }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  ::setenv("KESTRUNE_REGISTRY", "/nonexistent/registry.reg", 1);
  ::setenv("KESTRUNE_DRIVES", "D=/usr/share;E=/usr", 1);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
  std::string_view rest(reinterpret_cast<const char *>(data), size);
  const bool doubleByte = rest.starts_with('\1');
  rest.remove_prefix(doubleByte ? 1 : 0);
  std::vector<std::string> lines;
  while (lines.size() < 7) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    lines.emplace_back(line.substr(0, line.find('\0')));
  }
  kestrune::platform::SetCodePage(doubleByte ? 932 : 65001);

  Name name(lines[0].c_str());
  constexpr const char *kMacros[] = {"$A$", "$b$", "$C$", "$D$"};
  for (std::size_t i = 0; i < std::size(kMacros); ++i)
    name.AddMacro(kMacros[i], lines[3 + i].c_str());

  const char *const base = lines[1].c_str();
  // Half a double-byte character at the end of a text reads differently once something is appended to it.
  if (!doubleByte) {
    checkAgainstPlainForms(name);
    checkResolution(name, base);
    checkResolution(name.Normalize(name), base);
  }
  checkParts(name, CString(lines[2].c_str()));
  CFilename out;
  name.GetAbsolute(out, base);
  name.GetRelative(out, base);
  return 0;
}
