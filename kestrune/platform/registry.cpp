#include "kestrune/platform/registry.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/input_file.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct RegistryKey {};

namespace {

/// The values of an open key, by name in lower case. A value that cannot be read as text is nullopt.
struct OpenKey : RegistryKey {
  std::map<std::string, std::optional<std::string>> values;
};

RegistryKey localMachine;
RegistryKey currentUser;

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && kestrune::platform::IsAsciiSpace(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && kestrune::platform::IsAsciiSpace(text.back()))
    text.remove_suffix(1);
  return text;
}

/// Whether the rest of a line is empty or a comment.
bool isBlankOrComment(std::string_view text) {
  text = trimmed(text);
  return text.empty() || text.front() == ';';
}

std::string upToZero(std::string text) {
  text.resize(std::min(text.find('\0'), text.size()));
  return text;
}

/// UTF-16 to UTF-8. A registry may contain a lone surrogate, which becomes U+FFFD.
std::string fromUtf16(std::string_view bytes, bool bigEndian) {
  const auto unitAt = [&](std::size_t i) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    return static_cast<std::uint32_t>(bigEndian ? first << 8U | second : second << 8U | first);
  };
  std::wstring wide;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    std::uint32_t character = unitAt(i);
    if (character >= 0xD800 && character <= 0xDFFF) {
      const std::uint32_t next = character <= 0xDBFF && i + 3 < bytes.size() ? unitAt(i + 2) : 0;
      const bool isPair = next >= 0xDC00 && next <= 0xDFFF;
      character = isPair ? 0x10000 + ((character - 0xD800) << 10U) + (next - 0xDC00) : 0xFFFD;
      i += isPair ? 2 : 0;
    }
    wide += static_cast<wchar_t>(character);
  }
  return kestrune::platform::WideToUtf8(wide);
}

/// The lines of an export, in UTF-8 whatever the encoding of the file, without their ends. The export of a whole
/// machine is large, so each line is converted only when it is read.
class Lines {
public:
  explicit Lines(std::string bytes) : m_bytes(std::move(bytes)) {
    const std::string_view all = m_bytes;
    m_isBigEndian = all.starts_with("\xFE\xFF");
    m_isUtf16 = m_isBigEndian || all.starts_with("\xFF\xFE");
    m_isMarked = m_isUtf16 || all.starts_with("\xEF\xBB\xBF");
    const std::size_t start = m_isUtf16 ? 2 : m_isMarked ? 3 : 0;
    m_next = start;
    std::string first;
    while (first.empty() && next(first)) {
    }
    m_isVersion4 = first == "REGEDIT4";
    m_next = start;
  }

  /// Whether the file has the older format, with texts in the code page.
  bool isVersion4() const { return m_isVersion4; }

  /// The next line without the blanks around it, or false at the end. A line in an unknown encoding is returned empty.
  bool next(std::string &line) {
    if (m_next >= m_bytes.size())
      return false;
    const std::string_view rest = std::string_view(m_bytes).substr(m_next);
    const std::size_t length = lineLength(rest);
    m_next += length + (m_isUtf16 ? 2 : 1);
    const std::string_view raw = rest.substr(0, length);
    if (m_isUtf16)
      line = trimmed(fromUtf16(raw, m_isBigEndian));
    else
      convert(trimmed(raw), line);
    return true;
  }

private:
  std::size_t lineLength(std::string_view rest) const {
    if (!m_isUtf16)
      return std::min(rest.find('\n'), rest.size());
    const std::size_t low = m_isBigEndian ? 1 : 0;
    std::size_t end = 0;
    while (end + 1 < rest.size() && (rest[end + low] != '\n' || rest[end + 1 - low] != '\0'))
      end += 2;
    return end;
  }

  /// Without a byte order mark, a line is UTF-8 if it is well-formed as such, else in the code page; in the older
  /// format it is always in the code page.
  void convert(std::string_view raw, std::string &line) const {
    line = raw;
    if (!m_isMarked && (m_isVersion4 || !kestrune::platform::IsValidUtf8(raw)) &&
        !kestrune::platform::TextToUtf8(raw, line))
      line.clear();
    if (!kestrune::platform::IsValidUtf8(line))
      line.clear();
  }

  std::string m_bytes;
  std::size_t m_next = 0;
  bool m_isUtf16 = false;
  bool m_isBigEndian = false;
  bool m_isMarked = false;
  bool m_isVersion4 = false;
};

/// Takes a quoted text from the start of `rest`. Only `\\` and `\"` are escapes, so a path that was written with single
/// backslashes is read as intended. Returns false if there is no quoted text or it has no end.
bool takeQuoted(std::string_view &rest, std::string &text) {
  text.clear();
  if (!rest.starts_with('"'))
    return false;
  for (std::size_t i = 1; i < rest.size(); ++i) {
    if (rest[i] == '"') {
      rest.remove_prefix(i + 1);
      return true;
    }
    if (rest[i] == '\\' && i + 1 < rest.size() && (rest[i + 1] == '\\' || rest[i + 1] == '"'))
      ++i;
    text += rest[i];
  }
  return false;
}

/// The bytes of a list such as `44,00,3a`, or nothing if it is malformed.
std::optional<std::string> readBytes(std::string_view list) {
  std::string bytes;
  list = trimmed(list.substr(0, list.find(';')));
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const std::string digits(trimmed(list.substr(0, comma)));
    if (digits.empty() || digits.size() > 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
      return std::nullopt;
    bytes += static_cast<char>(std::strtoul(digits.c_str(), nullptr, 16));
    list = trimmed(list.substr(std::min(comma + 1, list.size())));
  }
  return bytes;
}

/// A key to look for, and what the file contains for it.
struct Candidate {
  std::string path;
  bool exists = false;
  OpenKey key = {};
};

class Export {
public:
  Export(std::string bytes, std::vector<Candidate> &candidates) : m_lines(std::move(bytes)), m_candidates(candidates) {}

  void read() {
    for (std::string line; m_lines.next(line);) {
      if (line.starts_with('['))
        enterKey(line);
      else if (m_current != nullptr && (line.starts_with('"') || line.starts_with('@')))
        readValue(std::move(line));
    }
  }

private:
  void enterKey(std::string_view line) {
    m_current = nullptr;
    // A bracket may be part of the name; the name ends at the first one with nothing but blanks or a comment after it.
    std::size_t end = line.find(']');
    while (end != std::string_view::npos && !isBlankOrComment(line.substr(end + 1)))
      end = line.find(']', end + 1);
    if (end == std::string_view::npos)
      return;
    std::string path = kestrune::platform::AsciiLower(line.substr(1, end - 1));
    const bool removed = path.starts_with('-');
    path.erase(0, removed ? 1 : 0);
    for (Candidate &candidate : m_candidates) {
      const bool isSame = path == candidate.path;
      if (removed && (isSame || candidate.path.starts_with(path + '\\'))) {
        candidate.exists = false;
        candidate.key.values.clear();
      } else if (!removed && (isSame || path.starts_with(candidate.path + '\\'))) {
        // A key implies that its parents exist.
        candidate.exists = true;
        m_current = isSame ? &candidate : m_current;
      }
    }
  }

  /// A damaged line changes nothing.
  void readValue(std::string line) {
    std::string_view rest = line;
    std::string name;
    if (rest.starts_with('@'))
      rest.remove_prefix(1);
    else if (!takeQuoted(rest, name))
      return;
    rest = trimmed(rest);
    if (!rest.starts_with('='))
      return;
    rest = trimmed(rest.substr(1));
    auto &values = m_current->key.values;
    const std::string key = kestrune::platform::AsciiLower(name);
    std::string text;
    if (rest.starts_with('-') && isBlankOrComment(rest.substr(1))) {
      values.erase(key);
    } else if (rest.starts_with('"')) {
      if (takeQuoted(rest, text) && isBlankOrComment(rest))
        values[key] = upToZero(kestrune::platform::Utf8ToText(text));
    } else if (rest = text = kestrune::platform::AsciiLower(rest); rest.starts_with("dword:")) {
      values[key] = std::nullopt;
    } else if (rest.starts_with("hex")) {
      readHexValue(text, values[key]);
    }
  }

  void readHexValue(std::string data, std::optional<std::string> &value) {
    for (std::string more; data.ends_with('\\') && m_lines.next(more);) {
      data.pop_back();
      data += more;
    }
    const std::size_t colon = data.find(':');
    if (colon == std::string::npos)
      return;
    const std::string type = data.substr(3, colon - 3);
    const std::optional<std::string> bytes = readBytes(std::string_view(data).substr(colon + 1));
    if (!bytes)
      return;
    const bool isText = type == "(1)" || type == "(2)" || type == "(7)";
    if (isText && !m_lines.isVersion4())
      value = kestrune::platform::Utf8ToText(upToZero(fromUtf16(*bytes, false)));
    else if (isText || type.empty() || type == "(0)" || type == "(3)")
      value = upToZero(*bytes);
    else
      value = std::nullopt;
  }

  Lines m_lines;
  std::vector<Candidate> &m_candidates;
  Candidate *m_current = nullptr;
};

/// The file of a root key, or empty.
std::filesystem::path fileOf(HKEY root) {
  const auto variable = [](const char *name) {
    const char *value = std::getenv(name);
    return std::filesystem::path(value != nullptr ? value : "");
  };
  if (auto replacement = variable("KESTRUNE_REGISTRY"); !replacement.empty())
    return replacement;
  if (root == HKEY_LOCAL_MACHINE)
    return "/etc/kestrune/registry.reg";
  auto folder = variable("XDG_CONFIG_HOME");
  if (!folder.is_absolute()) {
    folder = variable("HOME");
    if (folder.empty())
      return folder;
    folder /= ".config";
  }
  return folder / "kestrune" / "registry.reg";
}

/// The bytes of a file; none if it cannot be read. Only regular files are read, as others might never end.
std::string readFile(const std::filesystem::path &path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error))
    return {};
  std::string bytes;
  if (!kestrune::platform::InputFile(path.string()).readAll(bytes))
    bytes.clear();
  return bytes;
}

std::unique_ptr<OpenKey> openKey(HKEY root, const char *subKey) {
  std::string path;
  if (!kestrune::platform::TextToUtf8(subKey, path))
    return nullptr;
  path = kestrune::platform::AsciiLower(path);
  const std::string rootName = root == HKEY_LOCAL_MACHINE ? "hkey_local_machine\\" : "hkey_current_user\\";
  std::vector<Candidate> candidates = {{rootName + path}};
  constexpr std::string_view kSoftware = "software\\";
  if (path.starts_with(kSoftware))
    candidates.push_back({rootName + "software\\wow6432node\\" + path.substr(kSoftware.size())});
  Export(readFile(fileOf(root)), candidates).read();
  for (Candidate &candidate : candidates)
    if (candidate.exists)
      return std::make_unique<OpenKey>(std::move(candidate.key));
  return nullptr;
}

bool isRoot(HKEY key) { return key == HKEY_LOCAL_MACHINE || key == HKEY_CURRENT_USER; }

} // namespace

const HKEY HKEY_LOCAL_MACHINE = &localMachine;
const HKEY HKEY_CURRENT_USER = &currentUser;

long RegOpenKeyExA(HKEY root, const char *subKey, DWORD /*options*/, DWORD /*access*/, HKEY *result) {
  if (!isRoot(root))
    return ERROR_INVALID_HANDLE;
  *result = openKey(root, subKey).release();
  return *result != nullptr ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

long RegQueryValueExA(HKEY key, const char *name, DWORD * /*reserved*/, DWORD * /*type*/, unsigned char *buffer,
                      DWORD *size) {
  if (key == nullptr)
    return ERROR_INVALID_HANDLE;
  std::string wanted;
  if (isRoot(key) || (name != nullptr && !kestrune::platform::TextToUtf8(name, wanted)))
    return ERROR_FILE_NOT_FOUND;
  const auto &values = static_cast<const OpenKey *>(key)->values;
  const auto found = values.find(kestrune::platform::AsciiLower(wanted));
  if (found == values.end() || !found->second)
    return ERROR_FILE_NOT_FOUND;
  const std::string &text = *found->second;
  const DWORD room = *size;
  *size = static_cast<DWORD>(text.size() + 1);
  if (*size > room)
    return ERROR_MORE_DATA;
  std::memcpy(buffer, text.c_str(), *size);
  return ERROR_SUCCESS;
}

long RegCloseKey(HKEY key) {
  if (key == nullptr)
    return ERROR_INVALID_HANDLE;
  if (!isRoot(key))
    delete static_cast<OpenKey *>(key);
  return ERROR_SUCCESS;
}
