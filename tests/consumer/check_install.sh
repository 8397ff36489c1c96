#!/usr/bin/env bash
# Installs a build into an empty folder, moves it, and uses it from there as the README says: what is typed is taken from it.
#   check_install.sh BUILD_FOLDER
set -euo pipefail
build=$(realpath "$1")
project=$(cd "$(dirname "$0")/../.." && pwd)
identity_file=$project/examples/installation/Types/spidData.xml
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fail() { echo "check_install: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$work/prefix" >/dev/null
mv "$work/prefix" "$work/moved"
prefix=$work/moved

# The first block of each kind in the README.
block() { awk -v start='```'"$1" '$0 == start && !seen++ {on = 1; next} $0 == "```" {on = 0} on' "$project/README.md"; }
mkdir first
block cmake >first/CMakeLists.txt
block cpp >first/first.cpp
cmake -S first -B first/build -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build first/build >/dev/null
[ "$(first/build/first "$identity_file")" = "172 manufacturers" ] || fail "the README's program fails"

pc=$(find "$prefix" -name KestruneXML-4.pc)
export PKG_CONFIG_PATH=${pc%/*}
compile=$(sed -n 's/^    \(c++ .*pkg-config.*\)/\1/p' "$project/README.md")
(cd first && eval "$compile" && [ "$(./first "$identity_file")" = "172 manufacturers" ]) ||
  fail "the README's line for pkg-config gives a program that fails: $compile"

"$prefix/bin/kestrune-data" check "$identity_file" || fail "the installed program does not find its library"
[ -s "$prefix/share/man/man1/kestrune-data.1" ] || fail "no manual page"
[ -s "$prefix/share/bash-completion/completions/kestrune-data" ] || fail "no completion"
[ ! -e "$prefix/share/doc" ] || fail "the documents of the Debian packages are installed"
