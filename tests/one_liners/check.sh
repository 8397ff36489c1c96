#!/usr/bin/env bash
# Compiles the rows of one_liners.txt with g++ and clang++, in C++20 and C++23, and names each that does not do what it says.
# What compiles is also run, in C++20.
#   check.sh LIBRARY
set -euo pipefail
library=$(realpath "$1")
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# A function for each row with that word in that column, under the row's line number, and a call of it.
program() { # column, word
  awk -v column="$1" -v word="$2" '
    BEGIN { print "#include \"prelude.h\"\nint failed = 0;" }
    /^(compiles|refused) / && $column == word {
      code = $0
      sub(/^[a-z]+ +[a-z]+ +/, "", code)
      at = index(code, " => ")
      printf "#line %d \"row\"\nvoid row%d() { CONTEXT; ", NR, NR
      if (at > 0) {
        expected = substr(code, at + 4)
        gsub(/["\\]/, "\\\\&", expected)
        code = substr(code, 1, at - 1)
        printf "failed += isOther(%d, shown([&] { %s%s }), \"%s\"); }\n", NR, code ~ /return/ ? "" : "return ", code, expected
      } else {
        printf "[&] { %s }(); }\n", code
      }
      calls = calls "row" NR "(); "
    }
    END { print "#line 1 \"main\"\nint main() { " calls "return failed != 0; }" }' "$here/one_liners.txt"
}

status=0
check() { # compiler, column, standard, options
  local compiler=$1 column=$2 standard=$3
  local flags=(-std="$standard" -I"$here/../.." -I"$here" -pedantic-errors -Wall -Wextra -Wno-unused "${@:4}")
  program "$column" compiles >compiles.cpp
  if [ "$standard" = c++20 ]; then
    "$compiler" "${flags[@]}" -Werror compiles.cpp "$library" -Wl,-rpath,"$(dirname "$library")" -o compiles &&
      ./compiles >/dev/null || status=1
  else
    "$compiler" "${flags[@]}" -Werror -fsyntax-only compiles.cpp || status=1
  fi
  # All at once: each has an error that names its line.
  program "$column" refused >refused.cpp
  "$compiler" "${flags[@]}" -w -fsyntax-only refused.cpp 2>errors && true
  for row in $(sed -n 's/^void row\([0-9]*\)().*/\1/p' refused.cpp); do
    if ! grep -q "\brow:$row:" errors; then
      echo "row $row is not refused by $compiler in $standard"
      status=1
    fi
  done
}

for standard in c++20 c++2b; do
  check g++ 1 $standard
  if command -v clang++ >/dev/null; then
    check clang++ 2 $standard -ferror-limit=0 -ftemplate-backtrace-limit=0
  else
    echo "no clang++: its column is not checked in $standard"
  fi
done
exit $status
