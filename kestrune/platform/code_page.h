#pragma once

#include "kestrune/export.h"

#include <string>
#include <string_view>

// The multi-byte code page in which every narrow text of the library is written, and what counts as a character in it.

namespace kestrune::platform {

constexpr unsigned kUtf8 = 65001;

/// Chooses the code page of the process: 65001 (UTF-8, the default), 1252, 932, 936, 949, 950, or another page that the
/// C library's iconv knows as CPn. To be called before the library is used; the environment variable
/// KESTRUNE_CODE_PAGE does the same from outside. Returns false, and changes nothing, for a page that is not there or
/// in which an ASCII byte is not the ASCII character.
KESTRUNE_API bool SetCodePage(unsigned codePage);

/// The code page in force.
KESTRUNE_API unsigned GetCodePage();

/// Whether the page in force has lead and trail bytes (932, 936, 949, 950).
bool IsDoubleByteCodePage();

/// Converts a text of the code page to UTF-8. Returns false when the bytes are not valid in the page; `utf8` is then
/// unspecified. With the UTF-8 page it only copies and checks nothing.
bool TextToUtf8(std::string_view text, std::string &utf8);

/// Converts valid UTF-8 to the code page; what the page lacks becomes '?'.
std::string Utf8ToText(std::string_view utf8);

/// Wide (UTF-32) to UTF-8; what is no character becomes '?'.
std::string WideToUtf8(std::wstring_view wide);

/// Wide (UTF-32) to the code page; what the page lacks becomes '?'.
std::string WideToText(std::wstring_view wide);

/// The code page to wide; a byte that is not valid becomes U+FFFD.
std::wstring TextToWide(std::string_view text);

/// Whether `text` is well-formed UTF-8 (no surrogates, no overlong forms).
bool IsValidUtf8(std::string_view text);

/// Compares without regard to ASCII case: below 0, 0, above 0. A trail byte is no letter.
int CompareNoCase(std::string_view a, std::string_view b);

/// The text in ASCII lower case, character by character: equal results exactly where CompareNoCase gives 0.
std::string FoldCase(std::string_view text);

/// Converts between two encodings that iconv knows. Returns false when the name is unknown or the input is not valid.
bool ConvertEncoding(std::string_view input, const char *from, const char *to, std::string &output);

} // namespace kestrune::platform

/// The character after the one at `p`; `p` itself at the terminator.
KESTRUNE_API char *CharNextA(const char *p);

/// The character before `p`, never before `start`; `start` when `p` is `start`.
KESTRUNE_API char *CharPrevA(const char *start, const char *p);

/// Whether `byte` can be a lead byte in the code page: never in a single-byte page, nor in UTF-8.
KESTRUNE_API int IsDBCSLeadByte(unsigned char byte);
