#!/usr/bin/env bash
# Installs a build into an empty folder and uses it from there: through CMake, through pkg-config, and as a Debian package.
# What the README says to type is taken from the README.
#   check_package.sh BUILD_FOLDER CHIP_FILE
set -euo pipefail
build=$(realpath "$1")
chip_file=$(realpath "$2")
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" # there is no vorlan.xml here that would replace the file

fail() { echo "check_package: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$work/prefix" >/dev/null
mv "$work/prefix" "$work/moved" # an installed tree can be moved
prefix=$work/moved

configure() { cmake -S "$here" -B "$1" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DWANTED_VERSION="$2"; }
configure through-cmake 4 >/dev/null
cmake --build through-cmake >/dev/null
through-cmake/consumer "$chip_file"
configure version-5 5 >/dev/null 2>&1 && fail "version 5 was not refused"

# The first block of each kind in the README.
project=$here/../..
block() { awk -v start='```'"$1" '$0 == start && !seen++ {on = 1; next} $0 == "```" {on = 0} on' "$project/README.md"; }
mkdir first
block cmake >first/CMakeLists.txt
block cpp >first/first.cpp
cmake -S first -B first/build -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build first/build >/dev/null
[ "$(first/build/first "$(dirname "$chip_file")/spidData.xml")" = "172 manufacturers" ] || fail "the README's program fails"

pc=$(find "$prefix" -name KestruneXML-4.pc)
export PKG_CONFIG_PATH=${pc%/*}
compile=$(sed -n 's/^    \(c++ .*pkg-config.*\)/\1/p' "$project/README.md")
(cd first && eval "$compile" && [ "$(./first "$(dirname "$chip_file")/spidData.xml")" = "172 manufacturers" ]) ||
  fail "the README's line for pkg-config gives a program that fails: $compile"
[ "$(pkg-config --modversion KestruneXML-4)" = 4.0.0 ] || fail "wrong version in the pkg-config file"
flags=$(pkg-config --cflags --libs KestruneXML-4)
[[ $flags != *expat* ]] || fail "a program has to know Expat: $flags"
# shellcheck disable=SC2086
c++ -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Woverloaded-virtual -Werror "$here"/*.cpp $flags -o through-pkg-config
# shellcheck disable=SC2046
clang++ -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Woverloaded-virtual -Werror -fsyntax-only "$here"/*.cpp \
  $(pkg-config --cflags KestruneXML-4)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir KestruneXML-4) ./through-pkg-config "$chip_file"

library=$(find "$prefix" -name libKestruneXML-4.so)
readelf -d "$library" | grep -q 'SONAME.*\[libKestruneXML-4\.so\.4\]' || fail "no versioned SONAME"
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -vE '^(libexpat|libstdc\+\+|libm|libgcc_s|libc|ld-linux.*)\.so' || true)
[ -z "$needed" ] || fail "the library needs $needed"
grep -rlE '#include *(<expat|<unistd|<sys/|<fcntl|<windows)' "$prefix/include" && fail "a system header in the interface"

rm -rf "$build/package"
mkdir called-from # the README calls cpack in the source folder
(cd called-from && cpack --config "$build/CPackConfig.cmake" >/dev/null)
rmdir called-from || fail "cpack leaves something in the folder that it is called in"
deb=$(echo "$build"/package/kestrune-xml_*.deb)
contents=$(dpkg-deb --contents "$deb")
for file in ./usr/lib/libKestruneXML-4.so.4.0.0 ./usr/lib/libKestruneXML-4.so ./usr/include/kestrune/kestrune_xml.h \
            ./usr/lib/cmake/KestruneXML/KestruneXMLConfig.cmake ./usr/lib/pkgconfig/KestruneXML-4.pc ./usr/bin/kestrune-data; do
  grep -qF " $file" <<<"$contents" || fail "the Debian package lacks $file"
done
dpkg-deb --field "$deb" Depends | grep -q libexpat1 || fail "the package does not depend on Expat"
