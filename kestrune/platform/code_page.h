#pragma once

#include "kestrune/export.h"

#include <string>
#include <string_view>

/// \file
/// The multi-byte code page of all narrow texts in the library, and the bounds of characters in it.

namespace kestrune::platform {

/// The number of the UTF-8 code page, the default.
constexpr unsigned kUtf8 = 65001;

/// Sets the code page of the process: 65001 (UTF-8, the default), 1252, 932, 936, 949, 950, or another page that the C
/// library's iconv knows as CPn. Call it before using the library; the environment variable KESTRUNE_CODE_PAGE has the
/// same effect. Returns false, and changes nothing, if the page is unknown or an ASCII byte is not the ASCII character
/// in it.
KESTRUNE_API bool SetCodePage(unsigned codePage);

/// The number of the code page of the process.
KESTRUNE_API unsigned GetCodePage();

/// Whether the current page has lead and trail bytes (932, 936, 949, 950).
bool IsDoubleByteCodePage();

/// Converts a text of the code page to UTF-8. Returns false if the bytes are not valid in the page; `utf8` is then
/// unspecified. With the UTF-8 page it copies without checking.
bool TextToUtf8(std::string_view text, std::string &utf8);

/// Converts valid UTF-8 to the code page; a character that the page lacks becomes '?'.
std::string Utf8ToText(std::string_view utf8);

/// Wide text (UTF-32) to UTF-8; an invalid character becomes '?'.
std::string WideToUtf8(std::wstring_view wide);

/// Wide text (UTF-32) to the code page; a character that the page lacks becomes '?'.
std::string WideToText(std::wstring_view wide);

/// A text of the code page to wide text; an invalid byte becomes U+FFFD.
std::wstring TextToWide(std::string_view text);

/// Whether `text` is well-formed UTF-8 (no surrogates, no overlong forms).
bool IsValidUtf8(std::string_view text);

/// Compares ignoring ASCII case: returns a value below 0, 0, or above 0. A trail byte is not a letter.
int CompareNoCase(std::string_view a, std::string_view b);

/// The text in ASCII lower case, character by character. Two results are equal exactly when CompareNoCase returns 0.
std::string FoldCase(std::string_view text);

/// Converts between two encodings known to iconv. Returns false if a name is unknown or the input is not valid.
bool ConvertEncoding(std::string_view input, const char *from, const char *to, std::string &output);

} // namespace kestrune::platform

/// The character after the one at `p`; `p` itself at the terminator.
KESTRUNE_API char *CharNextA(const char *p);

/// The character before `p`, or `start` if `p` is `start`.
KESTRUNE_API char *CharPrevA(const char *start, const char *p);

/// Whether `byte` can be a lead byte in the code page. Always 0 in a single-byte page and in UTF-8.
KESTRUNE_API int IsDBCSLeadByte(unsigned char byte);
