#include "kestrune/platform/code_page.h"

#include "kestrune/platform/ascii.h"
#include "kestrune/platform/lasting.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iconv.h>
#include <memory>
#include <mutex>
#include <new>

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD

unsigned char byteAt(std::string_view text, std::size_t index) { return static_cast<unsigned char>(text[index]); }

bool isAscii(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  for (; text.size() >= sizeof(std::uint64_t); text.remove_prefix(sizeof(std::uint64_t))) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data(), sizeof eight);
    if ((eight & kHighBits) != 0)
      return false;
  }
  return std::none_of(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0x80U) != 0; });
}

/// The number of bytes of the well-formed UTF-8 character at the front, or 0. `text` is not empty.
std::size_t utf8Length(std::string_view text) {
  const unsigned lead = byteAt(text, 0);
  if (lead < 0x80)
    return 1;
  if (lead < 0xC2 || lead > 0xF4)
    return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // The range of the second byte excludes overlong forms, surrogates, and values above U+10FFFF.
  const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (text.size() < length || byteAt(text, 1) < low || byteAt(text, 1) > high)
    return 0;
  for (std::size_t i = 2; i < length; ++i)
    if ((byteAt(text, i) & 0xC0U) != 0x80)
      return 0;
  return length;
}

void appendUtf8(std::string &text, std::uint32_t character) {
  const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0U | (character >> 6U));
    append(0x80U | (character & 0x3FU));
  } else if (character < 0x10000) {
    append(0xE0U | (character >> 12U));
    append(0x80U | ((character >> 6U) & 0x3FU));
    append(0x80U | (character & 0x3FU));
  } else {
    append(0xF0U | (character >> 18U));
    append(0x80U | ((character >> 12U) & 0x3FU));
    append(0x80U | ((character >> 6U) & 0x3FU));
    append(0x80U | (character & 0x3FU));
  }
}

/// An iconv conversion.
class Converter {
public:
  Converter(std::string_view from, std::string_view to)
      : m_from(from), m_to(to), m_handle(::iconv_open(m_to.c_str(), m_from.c_str())) {
    if (!isOpen() && errno == ENOMEM)
      throw std::bad_alloc();
  }
  Converter(const Converter &) = delete;
  Converter &operator=(const Converter &) = delete;
  ~Converter() {
    if (isOpen())
      ::iconv_close(m_handle);
  }

  bool isOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }
  bool joins(std::string_view from, std::string_view to) const { return m_from == from && m_to == to; }

  /// `replacement` is written for each part that cannot be converted: one character of UTF-8 input, else one byte. If
  /// it is empty, the first such part makes the conversion fail.
  bool convert(std::string_view input, std::string &output, std::string_view replacement) {
    ::iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
    std::string result(roomFor(input.size()), '\0');
    char *in = const_cast<char *>(input.data());
    std::size_t inLeft = input.size();
    std::size_t used = 0;
    // A final call without input writes what the conversion has kept back.
    for (bool atEnd = false, flushed = false; !flushed;) {
      char *out = result.data() + used;
      std::size_t outLeft = result.size() - used;
      const std::size_t count = ::iconv(m_handle, atEnd ? nullptr : &in, atEnd ? nullptr : &inLeft, &out, &outLeft);
      const int error = count == static_cast<std::size_t>(-1) ? errno : 0;
      used = result.size() - outLeft;
      if (error == 0) {
        flushed = atEnd;
        atEnd = true;
      } else if (error == E2BIG) {
        result.resize(result.size() * 2);
      } else if (replacement.empty() || inLeft == 0) {
        return false;
      } else {
        const std::size_t skipped = m_from == "UTF-8" ? std::max<std::size_t>(utf8Length({in, inLeft}), 1) : 1;
        in += skipped;
        inLeft -= skipped;
        result.replace(used, std::string::npos, replacement);
        used = result.size();
        result.resize(used + roomFor(inLeft));
      }
    }
    result.resize(used);
    output = std::move(result);
    return true;
  }

private:
  static std::size_t roomFor(std::size_t size) { return size + size / 2 + 16; }

  std::string m_from, m_to;
  iconv_t m_handle;
};

/// Idle converters. Opening one costs much more than converting a short text.
class ConverterPool {
public:
  /// An idle converter of this kind, or null.
  std::unique_ptr<Converter> take(std::string_view from, std::string_view to) {
    const std::lock_guard lock(m_guard);
    const auto found = std::find_if(m_idle.begin(), m_idle.end(),
                                    [&](const auto &each) { return each != nullptr && each->joins(from, to); });
    return found != m_idle.end() ? std::move(*found) : nullptr;
  }

  /// Keeps `converter`, in place of the one kept longest if the pool is full.
  void put(std::unique_ptr<Converter> converter) {
    const std::lock_guard lock(m_guard);
    auto place = std::find(m_idle.begin(), m_idle.end(), nullptr);
    if (place == m_idle.end()) {
      place = m_idle.begin() + static_cast<std::ptrdiff_t>(m_oldest);
      m_oldest = (m_oldest + 1) % m_idle.size();
    }
    place->swap(converter);
  }

  void clear() {
    const std::lock_guard lock(m_guard);
    for (auto &each : m_idle)
      each.reset();
  }

private:
  std::mutex m_guard;
  std::array<std::unique_ptr<Converter>, 16> m_idle;
  std::size_t m_oldest = 0;
};

constinit kestrune::platform::Lasting<ConverterPool> thePool;

[[gnu::destructor]] void closeConverters() { thePool->clear(); }

struct BackToPool {
  void operator()(Converter *converter) const { thePool->put(std::unique_ptr<Converter>(converter)); }
};

/// A converter that only the caller uses until it returns to the pool.
using BorrowedConverter = std::unique_ptr<Converter, BackToPool>;

/// The conversion from one encoding to another, or null if there is none.
BorrowedConverter findConverter(std::string_view from, std::string_view to) {
  std::unique_ptr<Converter> converter = thePool->take(from, to);
  if (converter == nullptr) {
    converter = std::make_unique<Converter>(from, to);
    if (!converter->isOpen())
      return nullptr;
  }
  return BorrowedConverter(converter.release());
}

std::string pageName(unsigned page) { return "CP" + std::to_string(page); }

/// The library takes an ASCII byte for an ASCII character, so a page in which that is not true cannot be used: EBCDIC,
/// or a page with a currency sign instead of the backslash.
bool isUsable(unsigned page) {
  if (page == kestrune::platform::kUtf8)
    return true;
  std::string ascii;
  for (char c = ' '; c <= '~'; ++c)
    ascii += c;
  std::string utf8;
  return kestrune::platform::ConvertEncoding(ascii, pageName(page).c_str(), "UTF-8", utf8) && utf8 == ascii;
}

/// 0 until the first use.
std::atomic<unsigned> thePage = 0;

unsigned pageFromEnvironment() {
  const char *text = std::getenv("KESTRUNE_CODE_PAGE");
  if (text == nullptr)
    return kestrune::platform::kUtf8;
  const char *end = text + std::strlen(text);
  unsigned page = 0;
  const auto [stop, error] = std::from_chars(text, end, page);
  return error == std::errc() && stop == end && isUsable(page) ? page : kestrune::platform::kUtf8;
}

/// The conversion between the current page, which is not UTF-8, and UTF-8.
BorrowedConverter pageConverter(bool toUtf8) {
  const std::string page = pageName(kestrune::platform::GetCodePage());
  return toUtf8 ? findConverter(page, "UTF-8") : findConverter("UTF-8", page);
}

bool isUtf8Page() { return kestrune::platform::GetCodePage() == kestrune::platform::kUtf8; }

} // namespace

namespace kestrune::platform {

bool SetCodePage(unsigned codePage) {
  if (!isUsable(codePage))
    return false;
  thePage.store(codePage, std::memory_order_relaxed);
  return true;
}

unsigned GetCodePage() {
  unsigned page = thePage.load(std::memory_order_relaxed);
  if (page == 0) {
    const unsigned chosen = pageFromEnvironment();
    // Keep a page that the program has set in the meantime.
    if (thePage.compare_exchange_strong(page, chosen))
      page = chosen;
  }
  return page;
}

bool IsDoubleByteCodePage() {
  const unsigned page = GetCodePage();
  return page == 932 || page == 936 || page == 949 || page == 950;
}

KESTRUNE_API bool TextToUtf8(std::string_view text, std::string &utf8) {
  if (isUtf8Page() || isAscii(text)) {
    utf8.assign(text);
    return true;
  }
  const BorrowedConverter converter = pageConverter(true);
  return converter != nullptr && converter->convert(text, utf8, {});
}

std::string Utf8ToText(std::string_view utf8) {
  std::string text;
  if (isUtf8Page() || isAscii(utf8))
    text.assign(utf8);
  else if (const BorrowedConverter converter = pageConverter(false))
    converter->convert(utf8, text, "?");
  return text;
}

std::string WideToUtf8(std::wstring_view wide) {
  std::string utf8;
  utf8.reserve(wide.size());
  for (const char32_t character : std::u32string(wide.begin(), wide.end())) {
    const bool valid = character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
    appendUtf8(utf8, valid ? character : '?');
  }
  return utf8;
}

std::string WideToText(std::wstring_view wide) { return Utf8ToText(WideToUtf8(wide)); }

std::wstring TextToWide(std::string_view text) {
  std::string converted;
  if (!isUtf8Page() && !isAscii(text)) {
    if (const BorrowedConverter converter = pageConverter(true))
      converter->convert(text, converted, kReplacement);
    text = converted;
  }
  std::wstring wide;
  wide.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    std::uint32_t character = length == 0   ? 0xFFFDU
                              : length == 1 ? byteAt(text, 0)
                                            : byteAt(text, 0) & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i)
      character = (character << 6U) | (byteAt(text, i) & 0x3FU);
    wide += static_cast<wchar_t>(character);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return wide;
}

bool IsValidUtf8(std::string_view text) {
  if (isAscii(text))
    return true;
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    if (length == 0)
      return false;
    text.remove_prefix(length);
  }
  return true;
}

int CompareNoCase(std::string_view a, std::string_view b) {
  const bool doubleByte = IsDoubleByteCodePage();
  const std::size_t shorter = std::min(a.size(), b.size());
  // While the texts are equal, so are the bounds of their characters.
  bool trail = false;
  for (std::size_t i = 0; i < shorter; ++i) {
    const int left = static_cast<unsigned char>(trail ? a[i] : AsciiLower(a[i]));
    const int right = static_cast<unsigned char>(trail ? b[i] : AsciiLower(b[i]));
    if (left != right)
      return left - right;
    trail = doubleByte && !trail && IsDBCSLeadByte(byteAt(a, i)) != 0;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

std::string FoldCase(std::string_view text) {
  if (!IsDoubleByteCodePage())
    return AsciiLower(text);
  std::string folded(text);
  bool trail = false;
  for (char &c : folded) {
    if (!trail)
      c = AsciiLower(c);
    trail = !trail && IsDBCSLeadByte(static_cast<unsigned char>(c)) != 0;
  }
  return folded;
}

bool ConvertEncoding(std::string_view input, const char *from, const char *to, std::string &output) {
  // An empty name would mean the encoding of the locale.
  if (*from == '\0' || *to == '\0')
    return false;
  const BorrowedConverter converter = findConverter(from, to);
  return converter != nullptr && converter->convert(input, output, {});
}

} // namespace kestrune::platform

char *CharNextA(const char *p) {
  std::size_t length = 0;
  if (*p != '\0') {
    length = 1;
    if (isUtf8Page())
      length = std::max<std::size_t>(utf8Length({p, ::strnlen(p, 4)}), 1);
    else if (IsDBCSLeadByte(static_cast<unsigned char>(*p)) != 0 && p[1] != '\0')
      length = 2;
  }
  return const_cast<char *>(p + length);
}

char *CharPrevA(const char *start, const char *p) {
  if (p <= start)
    return const_cast<char *>(start);
  const char *previous = p - 1;
  if (isUtf8Page()) {
    const char *lead = previous;
    while (lead > start && p - lead < 4 && (static_cast<unsigned char>(*lead) & 0xC0U) == 0x80)
      --lead;
    // Is there a whole character from there to `p`? If not, the byte before `p` is on its own.
    if (CharNextA(lead) >= p)
      previous = lead;
  } else {
    // A byte that cannot be a lead byte ends a character. So the bytes after the last one of that kind are whole pairs
    // and, if their number is odd, one more lead byte.
    std::ptrdiff_t leads = 0;
    while (previous - leads > start && IsDBCSLeadByte(static_cast<unsigned char>(previous[-leads - 1])) != 0)
      ++leads;
    previous -= leads % 2;
  }
  return const_cast<char *>(previous);
}

int IsDBCSLeadByte(unsigned char byte) {
  switch (kestrune::platform::GetCodePage()) {
  case 932:
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC) ? 1 : 0;
  case 936:
  case 949:
  case 950:
    return byte >= 0x81 && byte <= 0xFE ? 1 : 0;
  default:
    return 0;
  }
}
