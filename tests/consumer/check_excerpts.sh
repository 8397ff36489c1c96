#!/usr/bin/env bash
# Checks that all C++ that a page shows stands in the program from which it says it comes, word for word.
#   check_excerpts.sh PAGE PROGRAM
set -euo pipefail
awk -v page="$1" -v program="$2" '
  FILENAME == program { text = text $0 "\n"; next }
  $0 == "```cpp" { excerpt = ""; on = 1; next }
  $0 == "```" && on {
    on = 0
    excerpts++
    if (!index("\n" text, "\n" excerpt)) {
      printf "%s shows what is not in %s:\n%s", page, program, excerpt
      failed = 1
    }
    next
  }
  on { excerpt = excerpt $0 "\n" }
  END {
    if (!excerpts) { print page " shows no program"; failed = 1 }
    exit failed
  }' "$2" "$1"
