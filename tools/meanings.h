#pragma once

#include <string>
#include <string_view>

// What the members mean: how programs read the text of each, and one sentence about it. Which members there are, their
// kinds and defaults, is known to the library's own tables and not repeated here.

/// How programs read a text. White space may come before a number; an empty text counts as 0.
enum class Reading {
  kText,         // as it is
  kInt,          // strtol, base 0: decimal, 0x, or octal with a leading 0
  kUnsigned,     // strtoul, base 0
  kDecimal,      // strtoul, base 10
  kDouble,       // strtod
  kHex,          // strtol, base 0; written with 0x
  kHexUnsigned,  // strtoul, base 0; written with 0x
  kTruth,        // TRUE or FALSE in any case
  kTruthWord,    // 1, TRUE, YES, 0, FALSE, NO in any case; blanks are passed over
  kHexDigits,    // digits behind 0x, of any number; the 0x is taken off on loading
  kDeviceNumber, // major.minor, or major alone, in decimal
  kModelNumber,  // compared as text with a number in decimal
  kModelNumbers, // such numbers, separated by ; , or line feeds
  kVersions,     // numbers, separated by ; or ,
  kNames,        // names, separated by ;
};

/// A member of a record.
struct Meaning {
  const char *record; // tag of the record or document
  const char *member; // tag of the member
  Reading reading;
  bool mayBeUnassigned; // "Unassigned" is an ordinary text of it
  const char *sentence;
};

/// The meaning of a member; null if the table lacks it.
const Meaning *findMeaning(std::string_view record, std::string_view member);
/// All of them, ended by a row without a record.
const Meaning *allMeanings();

/// What is to be said about a text.
struct Judgement {
  int finding = 0;    // number of the finding, such as 301; 0 when there is none
  std::string words;  // "'0x1FFZ' is not a hexadecimal number"
  std::string number; // what programs get, in decimal; empty if they get no number
};

/// Judges a text as programs read it.
Judgement judge(Reading reading, std::string_view text);
/// The same; "Unassigned" is not complained of where it is ordinary.
Judgement judge(const Meaning &meaning, std::string_view text);

/// A number as programs get it.
struct Number {
  bool whole = false;    // nothing but the number stands there
  bool beyond = false;   // it is past the range, and `value` is the limit
  bool octal = false;    // a leading 0 made it octal
  bool prefixed = false; // it has 0x
  std::size_t end = 0;   // where the number ends in the text
  long long value = 0;
};

/// Reads a number of 32 bits as strtol does, or as strtoul when it is unsigned.
Number readNumber(std::string_view text, int base, bool isUnsigned);
