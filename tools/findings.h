#pragma once

#include <span>
#include <string>
#include <string_view>

// What `check` can find. Numbers never move and are never used again.

enum class Level { kError, kWarning, kNote };

/// "error", "warning" or "note".
const char *levelName(Level level);

/// One kind of finding. The texts of `--list`, `--explain` and docs/findings.md.
struct Finding {
  int number; // KD302 is 302
  Level level;
  const char *title;   // what it is, in one sentence
  const char *library; // what the library does with it
  const char *result;  // what comes of it
  const char *mend;    // how to mend it
  const char *wrong;   // an example
  const char *right;
};

/// All of them, by number.
std::span<const Finding> allFindings();
/// The one with that number; null if there is none.
const Finding *findFinding(int number);

/// "KD302".
std::string findingName(int number);

/// The whole explanation, as `--explain` prints it.
std::string explanation(const Finding &finding);
/// The page docs/findings.md.
std::string findingsPage();
