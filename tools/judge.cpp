#include "tools/meanings.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::string_view kUnassigned = "Unassigned";
constexpr std::string_view kBlanks = " \t\n\v\f\r";

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

bool isBlank(std::string_view text) { return text.find_first_not_of(kBlanks) == std::string_view::npos; }

std::string upper(std::string_view text) {
  std::string result(text);
  for (char &letter : result) {
    if (letter >= 'a' && letter <= 'z')
      letter = static_cast<char>(letter - 'a' + 'A');
  }
  return result;
}

int digitOf(char letter) {
  if (letter >= '0' && letter <= '9')
    return letter - '0';
  const char lower = static_cast<char>(letter | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 99;
}

/// What a number gives when it has been read whole, or why it has not.
Judgement judgeNumber(std::string_view text, const Number &number, const char *what, int noNumber) {
  if (number.whole)
    return {number.beyond ? 305 : 0,
            number.beyond ? quoted(text) + " is past the range and counts as " + std::to_string(number.value) : "",
            std::to_string(number.value)};
  if (number.end > 0 && isBlank(text.substr(number.end)))
    return {304, quoted(text) + " has a blank behind the number, which programs refuse", ""};
  return {noNumber, quoted(text) + " is not " + what, ""};
}

Judgement judgeInt(std::string_view text, bool isUnsigned) {
  const Number number = readNumber(text, 0, isUnsigned);
  Judgement judgement = judgeNumber(text, number, "a number", 301);
  if (judgement.finding == 301 && number.octal)
    judgement.words += ": a leading 0 makes it octal";
  if (judgement.finding == 0 && number.octal)
    return {306, quoted(text) + " has a leading 0: it is octal, " + judgement.number, judgement.number};
  return judgement;
}

Judgement judgeHex(std::string_view text, bool isUnsigned) {
  const Number number = readNumber(text, 0, isUnsigned);
  Judgement judgement = judgeNumber(text, number, "a hexadecimal number", 302);
  if (!number.whole || number.prefixed || number.value == readNumber(text, 16, isUnsigned).value)
    return judgement;
  return {302,
          quoted(text) + " is without 0x and counts as " + (number.octal ? "octal, " : "decimal, ") + judgement.number,
          judgement.number};
}

Judgement judgeDouble(std::string_view text) {
  const std::string copy(text);
  char *end = nullptr;
  const double value = std::strtod(copy.c_str(), &end);
  Number number;
  number.end = static_cast<std::size_t>(end - copy.c_str());
  number.whole = number.end == copy.size();
  Judgement judgement = judgeNumber(text, number, "a number", 301);
  if (!number.whole)
    return judgement;
  if (std::isinf(value) && copy.find_first_of("0123456789") != std::string::npos)
    return {305, quoted(text) + " is past the range and counts as infinite", "inf"};
  char shortest[32];
  std::snprintf(shortest, sizeof shortest, "%.15g", value);
  judgement.number = shortest;
  return judgement;
}

Judgement judgeTruth(std::string_view text) {
  const std::string word = upper(text);
  if (word == "TRUE" || word == "FALSE")
    return {};
  return {303, quoted(text) + " is no truth value: programs take TRUE and FALSE", ""};
}

Judgement judgeTruthWord(std::string_view text) {
  std::string word = upper(text);
  word.erase(std::remove_if(word.begin(), word.end(), [](char letter) { return kBlanks.find(letter) != kBlanks.npos; }),
             word.end());
  for (const char *const known : {"1", "TRUE", "YES", "0", "FALSE", "NO"}) {
    if (word == known)
      return {};
  }
  return {303, quoted(text) + " is no truth value: programs take 1, TRUE, YES, 0, FALSE and NO", ""};
}

Judgement judgeHexDigits(std::string_view text) {
  const std::string word = upper(text);
  if (word.empty())
    return {};
  const std::size_t x = word.find('X');
  if (x == std::string::npos)
    return {307, quoted(text) + " has no 0x and is emptied on loading", ""};
  if (word == "0XUNASSIGNED")
    return {309, quoted(text) + " is the trace of a record that was never filled", ""};
  const std::string digits = word.substr(x + 1);
  const std::size_t zero = std::min(word.find_first_not_of(kBlanks), x);
  if (word.substr(zero, x - zero) != "0" || digits.find_first_not_of("0123456789ABCDEF") != std::string::npos)
    return {302, quoted(text) + " is not 0x and hexadecimal digits", ""};
  return {};
}

Judgement judgeDeviceNumber(std::string_view text) {
  const std::size_t dot = text.find('.');
  const Number major = readNumber(text.substr(0, dot), 10, false);
  const Number minor = dot != text.npos ? readNumber(text.substr(dot + 1), 10, false) : Number{.whole = true, .end = 1};
  if (!major.whole || !minor.whole || major.end == 0 || minor.end == 0)
    return {308, quoted(text) + " is not a number of the form major.minor", ""};
  const std::string number = std::to_string(major.value) + "." + std::to_string(minor.value);
  if (major.beyond || minor.beyond)
    return {305, quoted(text) + " is past the range and counts as " + number, number};
  return {0, "", number};
}

/// The one text that a search for a model number compares with.
Judgement judgeModelNumber(std::string_view text) {
  const Number number = readNumber(text, 0, false);
  const Number decimal = readNumber(text, 10, false);
  if (decimal.whole && !decimal.beyond && std::to_string(decimal.value) == text)
    return {0, "", std::string(text)};
  const std::string blank = !text.empty() && kBlanks.find(text.front()) != kBlanks.npos  ? "has a blank before it"
                            : !text.empty() && kBlanks.find(text.back()) != kBlanks.npos ? "has a blank behind it"
                                                                                         : "";
  const std::string reason = !blank.empty()                    ? blank
                             : number.prefixed && number.whole ? "is hexadecimal"
                             : number.octal                    ? "has a leading 0"
                                                               : "is not a decimal number";
  return {403, quoted(text) + " " + reason + ": it never matches", ""};
}

Judgement judgeModelNumbers(std::string_view text) {
  if (text == kUnassigned)
    return {};
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(";,\n"), text.size());
    if (end > 0) {
      if (Judgement judgement = judgeModelNumber(text.substr(0, end)); judgement.finding != 0)
        return judgement;
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return {};
}

bool isNumber(Reading reading) { return reading >= Reading::kInt && reading <= Reading::kHexUnsigned; }

bool isTruth(Reading reading) { return reading == Reading::kTruth || reading == Reading::kTruthWord; }

} // namespace

Number readNumber(std::string_view text, int base, bool isUnsigned) {
  Number number;
  std::size_t at = std::min(text.find_first_not_of(kBlanks), text.size());
  const bool negative = at < text.size() && text[at] == '-';
  if (negative || (at < text.size() && text[at] == '+'))
    ++at;
  const std::string_view rest = text.substr(at);
  if (base != 10 && rest.size() > 2 && rest[0] == '0' && (rest[1] | 0x20) == 'x' && digitOf(rest[2]) < 16) {
    number.prefixed = true;
    base = 16;
    at += 2;
  } else if (base == 0) {
    number.octal = rest.size() > 1 && rest[0] == '0' && digitOf(rest[1]) < 10;
    base = !rest.empty() && rest[0] == '0' ? 8 : 10;
  }
  std::uint64_t sum = 0;
  for (; at < text.size() && digitOf(text[at]) < base; ++at) {
    number.end = at + 1;
    sum = std::min<std::uint64_t>(sum * static_cast<unsigned>(base) + static_cast<unsigned>(digitOf(text[at])),
                                  std::uint64_t{1} << 40);
  }
  number.whole = number.end == text.size();
  constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
  constexpr std::uint64_t mostSigned = std::numeric_limits<std::int32_t>::max();
  const std::uint64_t limit = isUnsigned ? most : negative ? mostSigned + 1 : mostSigned;
  number.beyond = sum > limit;
  sum = std::min(sum, limit);
  if (isUnsigned) // a negative number wraps, its limit does not
    number.value = negative && !number.beyond ? static_cast<std::uint32_t>(0 - sum) : static_cast<long long>(sum);
  else
    number.value = negative ? -static_cast<long long>(sum) : static_cast<long long>(sum);
  return number;
}

Judgement judge(Reading reading, std::string_view text) {
  if (text == kUnassigned && (isNumber(reading) || isTruth(reading) || reading == Reading::kDeviceNumber))
    return {309,
            quoted(text) + (isTruth(reading) ? " is no truth value" : " is no number") + ", and programs ask for one",
            ""};
  switch (reading) {
  case Reading::kInt:
    return judgeInt(text, false);
  case Reading::kUnsigned:
    return judgeInt(text, true);
  case Reading::kDecimal:
    return judgeNumber(text, readNumber(text, 10, true), "a decimal number", 301);
  case Reading::kDouble:
    return judgeDouble(text);
  case Reading::kHex:
    return judgeHex(text, false);
  case Reading::kHexUnsigned:
    return judgeHex(text, true);
  case Reading::kTruth:
    return judgeTruth(text);
  case Reading::kTruthWord:
    return judgeTruthWord(text);
  case Reading::kHexDigits:
    return judgeHexDigits(text);
  case Reading::kDeviceNumber:
    return judgeDeviceNumber(text);
  case Reading::kModelNumber:
    return judgeModelNumber(text);
  case Reading::kModelNumbers:
    return judgeModelNumbers(text);
  default:
    return {};
  }
}

Judgement judge(const Meaning &meaning, std::string_view text) {
  if (meaning.mayBeUnassigned && text == kUnassigned)
    return {};
  return judge(meaning.reading, text);
}
