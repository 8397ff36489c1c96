#include "kestrune/dom/plain_reader.h"

#include "kestrune/dom/builder.h"
#include "kestrune/platform/code_page.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#if defined(__SSE2__) && !defined(KESTRUNE_NO_SIMD)
#include <bit>
#include <emmintrin.h>
#endif

namespace kestrune::dom {

namespace {

constexpr std::size_t kZeros = 64; // behind the window
constexpr std::size_t kLargestWindow = std::size_t{512} << 20;
constexpr std::size_t kMostAttributes = 100;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

enum ByteKind : unsigned char { kNameStart = 1, kName = 2, kSpace = 4, kText = 8, kValue = 16 };

/// What each byte can be. Zero is nothing, so that every scan stops behind the window.
constexpr std::array<unsigned char, 256> kKinds = [] {
  std::array<unsigned char, 256> kinds{};
  for (unsigned c = 0x20; c < 0x80; ++c) {
    const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':';
    const bool isInName = isLetter || (c >= '0' && c <= '9') || c == '-' || c == '.';
    const bool isMarkup = c == '<' || c == '&';
    kinds[c] = static_cast<unsigned char>((isLetter ? kNameStart : 0) | (isInName ? kName : 0) |
                                          (!isMarkup && c != '>' ? kText : 0) | (!isMarkup ? kValue : 0));
  }
  for (const char c : {' ', '\t', '\n', '\r'})
    kinds[static_cast<unsigned char>(c)] |= kSpace;
  return kinds;
}();

constexpr unsigned byteAt(const char *p) { return static_cast<unsigned char>(*p); }
constexpr bool is(ByteKind kind, const char *p) { return (kKinds[byteAt(p)] & kind) != 0; }

const char *skipSpace(const char *p) {
  while (is(kSpace, p))
    ++p;
  return p;
}

#if defined(__SSE2__) && !defined(KESTRUNE_NO_SIMD)

/// The first byte from `p` on that is one of the three, a control, or not ASCII. For the last two one signed compare
/// does.
const char *skip(const char *p, char a, char b, char c) {
  for (;; p += sizeof(__m128i)) {
    const __m128i bytes = _mm_loadu_si128(static_cast<const __m128i *>(static_cast<const void *>(p)));
    const auto equal = [&](char each) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(each)); };
    const __m128i found = _mm_or_si128(_mm_or_si128(_mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')), equal(a)),
                                       _mm_or_si128(equal(b), equal(c)));
    if (const auto bits = static_cast<unsigned>(_mm_movemask_epi8(found)); bits != 0)
      return p + std::countr_zero(bits);
  }
}

const char *skipText(const char *p) { return skip(p, '<', '&', '>'); }
const char *skipValue(const char *p, char end) { return skip(p, '<', '&', end); }

#else

const char *skipText(const char *p) {
  while (is(kText, p))
    ++p;
  return p;
}

const char *skipValue(const char *p, char end) {
  while (is(kValue, p) && *p != end)
    ++p;
  return p;
}

#endif

std::uint64_t wordAt(const char *p) {
  std::uint64_t word = 0;
  std::memcpy(&word, p, sizeof word);
  return word;
}

/// Appends a character in UTF-8.
void appendCharacter(std::string &text, std::uint32_t c) {
  const auto append = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
  if (c < 0x80)
    return append(c);
  if (c < 0x800) {
    append(0xC0 | c >> 6U);
  } else {
    if (c < 0x10000) {
      append(0xE0 | c >> 12U);
    } else {
      append(0xF0 | c >> 18U);
      append(0x80 | (c >> 12U & 0x3FU));
    }
    append(0x80 | (c >> 6U & 0x3FU));
  }
  append(0x80 | (c & 0x3FU));
}

constexpr bool isCharacter(std::uint32_t c) {
  if (c < 0x20)
    return c == '\t' || c == '\n' || c == '\r';
  return c < 0xD800 || (c > 0xDFFF && c < 0xFFFE) || (c > 0xFFFF && c <= 0x10FFFF);
}

constexpr std::array<char, sizeof(std::uint64_t)> kNothing{};

/// A name of the tree with what stood behind it last. Files repeat themselves, so the same mostly stands there again,
/// and need not be looked up.
struct Name {
  const char *text = kNothing.data(); // with eight zero bytes behind it
  std::size_t size = 0;
  std::uint32_t nextElement = 0;
  std::uint32_t firstAttribute = 0;
  std::uint32_t nextAttribute = 0;
  std::uint64_t turn = 0; // that found it as an attribute
};

/// The end of the name at `p` where it is `name`, else null.
const char *pastName(const Name &name, const char *p) {
  static constexpr char kMask[] = "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\0\0\0\0\0\0\0";
  const char *text = name.text;
  std::size_t left = name.size;
  for (; left > sizeof(std::uint64_t); left -= sizeof(std::uint64_t)) {
    if (wordAt(p) != wordAt(text))
      return nullptr;
    p += sizeof(std::uint64_t);
    text += sizeof(std::uint64_t);
  }
  if (((wordAt(p) ^ wordAt(text)) & wordAt(kMask + sizeof(std::uint64_t) - left)) != 0)
    return nullptr;
  p += left;
  return is(kName, p) ? nullptr : p;
}

/// Goes through a file in turns. A turn takes a text with the markup behind it, and changes nothing that counts before
/// it has seen all of it. Its parts give the place behind what they have taken, or stop(): where that is the end of the
/// window, more is read and the turn begins again, else the file is not plain.
class PlainReader {
public:
  PlainReader(Tree &tree, platform::InputFile &file, std::size_t window)
      : m_tree(tree), m_builder(tree), m_file(file), m_size(window),
        m_window(std::make_unique_for_overwrite<char[]>(window + kZeros)), m_at(m_window.get()) {
    setEnd(m_window.get());
  }

  bool read() {
    static constexpr std::string_view kDeclaration = "<?xml";
    while (rest().size() <= kByteOrderMark.size() + kDeclaration.size() && fill()) {
    }
    if (rest().starts_with(kByteOrderMark))
      m_at += kByteOrderMark.size();
    if (rest().starts_with(kDeclaration) && is(kSpace, m_at + kDeclaration.size())) {
      m_at += kDeclaration.size();
      if (!complete(&PlainReader::declaration))
        return false;
    }
    while (complete(&PlainReader::turn)) {
    }
    m_builder.finish(m_total);
    return m_ended && m_at == m_end && m_tree.root != nullptr && m_builder.open() == nullptr;
  }

private:
  /// A text in the window, or, where it is not in the file as it is meant, in m_changed.
  struct Part {
    const char *text = nullptr;
    std::size_t offset = 0;
    std::size_t size = 0;
    bool isBlank = false;
  };

  std::string_view rest() const { return {m_at, static_cast<std::size_t>(m_end - m_at)}; }

  void setEnd(char *end) {
    m_end = end;
    std::memset(end, 0, kZeros);
  }

  /// Reads on behind what is left, which moves to the front. Where that is more than half of the window, the window
  /// doubles: so however long a turn is, no byte is looked at much more often than twice.
  bool fill() {
    const std::size_t left = rest().size();
    if (left > m_size / 2) {
      if (m_size >= kLargestWindow)
        return false;
      auto larger = std::make_unique_for_overwrite<char[]>(m_size * 2 + kZeros);
      std::memcpy(larger.get(), m_at, left);
      m_window = std::move(larger);
      m_size *= 2;
    } else {
      std::memmove(m_window.get(), m_at, left);
    }
    m_at = m_window.get();
    const long count = m_file.read(m_window.get() + left, m_size - left);
    m_ended = count == 0;
    const std::size_t added = count > 0 ? static_cast<std::size_t>(count) : 0;
    m_total += added;
    setEnd(m_window.get() + left + added);
    return added != 0;
  }

  bool complete(const char *(PlainReader::*step)()) {
    while (true) {
      if (const char *const next = (this->*step)(); next != nullptr) {
        m_at = next;
        return true;
      }
      if (m_stop < m_end || !fill())
        return false;
    }
  }

  const char *stop(const char *p) {
    m_stop = p;
    return nullptr;
  }

  const char *take(const char *p, std::string_view literal) {
    for (const char c : literal) {
      if (*p != c)
        return stop(p);
      ++p;
    }
    return p;
  }

  const char *declaration() {
    std::string_view value;
    const char *p = setting(m_at, "version", value);
    if (p == nullptr)
      return p;
    if (value != "1.0")
      return stop(m_at);
    if (is(kSpace, p) && *skipSpace(p) == 'e') {
      p = setting(p, "encoding", value);
      if (p == nullptr)
        return p;
      if (platform::CompareNoCase(value, "UTF-8") != 0)
        return stop(m_at);
    }
    if (is(kSpace, p) && *skipSpace(p) == 's') {
      p = setting(p, "standalone", value);
      if (p == nullptr)
        return p;
      if (value != "yes" && value != "no")
        return stop(m_at);
    }
    return take(skipSpace(p), "?>");
  }

  const char *setting(const char *p, std::string_view name, std::string_view &value) {
    p = take(skipSpace(p), name);
    if (p != nullptr)
      p = take(skipSpace(p), "=");
    if (p == nullptr)
      return p;
    p = skipSpace(p);
    if (*p != '"' && *p != '\'')
      return stop(p);
    const char *end = p + 1;
    while (is(kName, end))
      ++end;
    if (*end != *p)
      return stop(end);
    value = {p + 1, static_cast<std::size_t>(end - p - 1)};
    return end + 1;
  }

  const char *turn() {
    m_changed.clear();
    const char *p = m_at;
    Part before;
    if (m_builder.open() != nullptr) {
      p = text(p, before);
      if (p == nullptr)
        return p;
    } else {
      m_at = p = skipSpace(p);
      if (*p != '<')
        return stop(p);
    }
    switch (p[1]) {
    case '/':
      return endTag(p + 2, before);
    case '!':
      return p[2] == '-' ? comment(p, before) : section(p, before);
    case '?':
      return instruction(p + 2, before);
    default:
      return startTag(p + 1, before);
    }
  }

  /// The text up to the next markup.
  const char *text(const char *p, Part &part) {
    const char *from = p;                         // of it, what is not in m_changed
    while (*p == '\n' || *p == '\t' || *p == ' ') // mostly layout
      ++p;
    if (*p == '<') {
      part = {from, 0, static_cast<std::size_t>(p - from), true};
      return p;
    }
    for (; *p != '<'; p = skipText(p)) {
      if (*p == '&') {
        m_changed.append(from, p);
        from = p = reference(p + 1);
      } else if (*p == '\r') {
        from = p = lineEnd(p, from);
      } else if (*p == '>') {
        if (p - m_at >= 2 && p[-1] == ']' && p[-2] == ']')
          return stop(p);
        ++p;
      } else {
        p = pastCharacter(p);
      }
      if (p == nullptr)
        return p;
    }
    part = partOf(0, from, p);
    return p;
  }

  const char *value(const char *p, char quote, Part &part) {
    const std::size_t begin = m_changed.size();
    const char *from = p;
    while (*(p = skipValue(p, quote)) != quote) {
      if (*p == '&') {
        m_changed.append(from, p);
        from = p = reference(p + 1);
      } else if (is(kSpace, p)) {
        if (p + 1 >= m_end)
          return stop(p + 1);
        m_changed.append(from, p).append(1, ' ');
        from = p += *p == '\r' && p[1] == '\n' ? 2 : 1;
      } else {
        p = *p == '<' ? stop(p) : pastCharacter(p);
      }
      if (p == nullptr)
        return p;
    }
    part = partOf(begin, from, p);
    return p + 1;
  }

  /// A text that begins in m_changed at `begin` and goes on in the window.
  Part partOf(std::size_t begin, const char *from, const char *end) {
    if (m_changed.size() == begin)
      return {from, 0, static_cast<std::size_t>(end - from)};
    m_changed.append(from, end);
    return {nullptr, begin, m_changed.size() - begin};
  }

  std::string_view viewOf(const Part &part) const {
    return part.text != nullptr ? std::string_view(part.text, part.size)
                                : std::string_view(m_changed).substr(part.offset, part.size);
  }

  /// Makes the CR at `p`, with or without an LF, one LF.
  const char *lineEnd(const char *p, const char *from) {
    if (p + 1 >= m_end)
      return stop(p + 1);
    m_changed.append(from, p);
    if (p[1] != '\n')
      m_changed += '\n';
    return p + 1;
  }

  /// Behind one character that is a tab, LF, or at least a blank.
  const char *pastCharacter(const char *p) {
    const unsigned lead = byteAt(p);
    if (lead < 0x80)
      return lead >= 0x20 || lead == '\t' || lead == '\n' ? p + 1 : stop(p);
    if (lead < 0xC2 || lead > 0xF4)
      return stop(p);
    // The second byte tells overlong forms, surrogates and what is beyond the last character.
    const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byteAt(p + 1) < low || byteAt(p + 1) > high)
      return stop(p + 1);
    const int size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    for (int i = 2; i < size; ++i) {
      if (byteAt(p + i) < 0x80 || byteAt(p + i) > 0xBF)
        return stop(p + i);
    }
    if (lead == 0xEF && byteAt(p + 1) == 0xBF && byteAt(p + 2) >= 0xBE) // U+FFFE, U+FFFF
      return stop(p);
    return p + size;
  }

  /// Appends what the reference behind the `&` stands for.
  const char *reference(const char *p) {
    switch (*p) {
    case '#':
      return characterReference(p + 1);
    case 'l':
      return entity(p, "lt;", '<');
    case 'g':
      return entity(p, "gt;", '>');
    case 'q':
      return entity(p, "quot;", '"');
    case 'a':
      return p[1] == 'm' ? entity(p, "amp;", '&') : entity(p, "apos;", '\'');
    default:
      return stop(p);
    }
  }

  const char *entity(const char *p, std::string_view name, char meant) {
    p = take(p, name);
    if (p != nullptr)
      m_changed += meant;
    return p;
  }

  const char *characterReference(const char *p) {
    const bool isHex = *p == 'x';
    const char *const first = isHex ? p + 1 : p;
    std::uint32_t number = 0;
    for (p = first; *p != ';' || p == first; ++p) {
      const unsigned digit = byteAt(p) - '0';
      const unsigned letter = (byteAt(p) | 0x20U) - 'a';
      if (digit < 10)
        number = number * (isHex ? 16 : 10) + digit;
      else if (isHex && letter < 6)
        number = number * 16 + 10 + letter;
      else
        return stop(p);
      if (number > 0x10FFFF)
        return stop(p);
    }
    if (!isCharacter(number))
      return stop(p);
    appendCharacter(m_changed, number);
    return p + 1;
  }

  /// Takes a name. `number` holds the one that is expected, and then the one that is there.
  const char *name(const char *p, std::uint32_t &number) {
    if (const char *const end = pastName(m_names[number], p); end != nullptr && end != p)
      return end;
    if (!is(kNameStart, p))
      return stop(p);
    const char *end = p + 1;
    while (is(kName, end))
      ++end;
    if (end >= m_end || byteAt(end) >= 0x80)
      return stop(end);
    number = m_tree.intern({p, static_cast<std::size_t>(end - p)});
    if (number >= m_names.size())
      m_names.resize(number + 1);
    const std::string_view kept = m_tree.name(number);
    m_names[number].text = kept.data();
    m_names[number].size = kept.size();
    return end;
  }

  const char *startTag(const char *p, const Part &before) {
    if (m_builder.open() == nullptr && m_tree.root != nullptr)
      return stop(p);
    ++m_turn;
    std::uint32_t element = m_names[m_last].nextElement;
    p = name(p, element);
    if (p == nullptr)
      return p;
    m_names[m_last].nextElement = element;

    std::size_t count = 0;
    std::uint32_t attribute = m_names[element].firstAttribute;
    while (true) {
      const char *const behind = p;
      p = skipSpace(p);
      if (*p == '>' || *p == '/')
        break;
      if (p == behind || count == kMostAttributes)
        return stop(p);
      p = name(p, attribute);
      if (p == nullptr)
        return p;
      if (count == 0)
        m_names[element].firstAttribute = attribute;
      else
        m_names[m_attributes[count - 1].name].nextAttribute = attribute;
      if (m_names[attribute].turn == m_turn)
        return stop(p - 1);
      m_names[attribute].turn = m_turn;
      m_attributes[count].name = attribute;
      if (*p != '=') {
        p = skipSpace(p);
        if (*p != '=')
          return stop(p);
      }
      p = skipSpace(p + 1);
      if (*p != '"' && *p != '\'')
        return stop(p);
      p = value(p + 1, *p, m_attributes[count].value);
      if (p == nullptr)
        return p;
      attribute = m_names[attribute].nextAttribute;
      ++count;
    }
    const bool isEmpty = *p == '/';
    p += isEmpty ? 1 : 0;
    if (*p != '>')
      return stop(p);

    m_builder.start(element, {viewOf(before), before.isBlank});
    for (std::size_t i = 0; i < count; ++i)
      m_builder.attribute(m_attributes[i].name, viewOf(m_attributes[i].value));
    if (isEmpty)
      m_builder.end();
    m_last = element;
    return p + 1;
  }

  const char *endTag(const char *p, const Part &before) {
    if (m_builder.open() == nullptr)
      return stop(p);
    const Name &open = m_names[m_builder.open()->name()];
    const char *end = pastName(open, p);
    if (end == nullptr) {
      end = take(p, {open.text, open.size});
      return end != nullptr ? stop(end) : end;
    }
    end = skipSpace(end);
    if (*end != '>')
      return stop(end);
    m_builder.end({viewOf(before), before.isBlank});
    return end + 1;
  }

  /// The next `end` or `other`, past any characters but these.
  const char *find(const char *p, char end, char other) {
    while (true) {
      p = skipValue(p, end);
      if (*p == end || *p == other)
        return p;
      p = *p == '\r' ? p + 1 : pastCharacter(p);
      if (p == nullptr)
        return p;
    }
  }

  const char *comment(const char *p, const Part &before) {
    p = take(p, "<!--");
    while (p != nullptr && (p = find(p, '-', '-')) != nullptr) {
      if (p[1] != '-') {
        ++p;
        continue;
      }
      if (p[2] != '>')
        return stop(p + 2);
      m_builder.text(viewOf(before));
      return p + 3;
    }
    return p;
  }

  const char *instruction(const char *p, const Part &before) {
    const char *const target = p;
    if (!is(kNameStart, p))
      return stop(p);
    while (is(kName, p))
      ++p;
    if (platform::CompareNoCase({target, static_cast<std::size_t>(p - target)}, "xml") == 0)
      return stop(p);
    if (!is(kSpace, p) && *p != '?')
      return stop(p);
    const bool hasData = *p != '?';
    while ((p = find(p, '?', '?')) != nullptr) {
      if (p[1] == '>') {
        m_builder.text(viewOf(before));
        return p + 2;
      }
      ++p;
      if (!hasData)
        return stop(p);
    }
    return p;
  }

  /// A section of character data.
  const char *section(const char *p, const Part &before) {
    p = take(p, "<![CDATA[");
    if (p != nullptr && m_builder.open() == nullptr)
      return stop(p - 1);
    const std::size_t begin = m_changed.size();
    const char *from = p;
    while (p != nullptr && (p = find(p, ']', '\r')) != nullptr) {
      if (*p == '\r') {
        from = p = lineEnd(p, from);
      } else if (p[1] == ']' && p[2] == '>') {
        const Part content = partOf(begin, from, p);
        m_builder.text(viewOf(before));
        m_builder.text(viewOf(content));
        return p + 3;
      } else {
        ++p;
      }
    }
    return p;
  }

  Tree &m_tree;
  Builder m_builder;
  platform::InputFile &m_file;
  std::size_t m_size; // of the window
  std::unique_ptr<char[]> m_window;
  const char *m_at; // where the turn begins
  const char *m_end = nullptr;
  const char *m_stop = nullptr;
  bool m_ended = false; // the file has
  std::size_t m_total = 0;

  std::string m_changed; // texts of this turn that are not in the file as they are meant
  std::vector<Name> m_names{1};
  std::uint32_t m_last = 0; // element that began
  std::uint64_t m_turn = 0;
  struct {
    std::uint32_t name = 0;
    Part value;
  } m_attributes[kMostAttributes];
};

} // namespace

std::optional<Tree> ReadPlain(MSXML::IXMLDOMDocument *document, platform::InputFile &file, std::size_t window) {
  std::optional<Tree> tree(std::in_place, document);
  try {
    if (!PlainReader(*tree, file, window).read())
      tree.reset();
  } catch (const _com_error &) {
    tree.reset(); // a limit of the tree, which is for Expat to report
  }
  return tree;
}

} // namespace kestrune::dom
