#!/usr/bin/env bash
# Makes the three Debian packages of a build, unpacks them into one folder, and uses them there: through CMake, through
# pkg-config, with an example of their own, and the program with its manual page.
#   check_packages.sh BUILD_FOLDER VERSION
set -euo pipefail
build=$(realpath "$1")
version=$2
here=$(cd "$(dirname "$0")" && pwd)
project=$(realpath "$here/../..")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" # there is no vorlan.xml here that would replace the file

fail() { echo "check_packages: $*" >&2; exit 1; }

rm -rf "$build/package"
mkdir called-from # the README calls cpack in the source folder
(cd called-from && umask 027 && cpack --config "$build/CPackConfig.cmake" >/dev/null)
rmdir called-from || fail "cpack leaves something in the folder that it is called in"

lib=usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
doc=usr/share/doc
root=$work/root
for package in libkestrunexml-4 libkestrunexml-4-dev kestrune-data; do
  deb=$(echo "$build/package/${package}_${version}"_*.deb)
  dpkg-deb --extract "$deb" root
  mkdir -p control/$package
  dpkg-deb --control "$deb" control/$package
  dpkg-deb --fsys-tarfile "$deb" | tar --list | sed 's|^\./||; /\/$/d; /^$/d' | sort >control/$package/files
  [[ $(zcat "root/$doc/$package/changelog.gz") == "kestrune-xml ($version) "* ]] || fail "$package: changelog of another version"
  grep -q '^Copyright: 2026 The Kestrune XML developers$' "root/$doc/$package/copyright" || fail "$package: no copyright"
done
[ "$(find "$build/package" -maxdepth 1 -name '*.deb' | wc -l)" = 3 ] || fail "there are more packages than three"

# What is in each; of -dev, what lies beside the headers and documents.
diff - control/libkestrunexml-4/files <<END || fail "wrong files in the library's package"
$lib/libKestruneXML-4.so.4
$lib/libKestruneXML-4.so.$version
$doc/libkestrunexml-4/changelog.gz
$doc/libkestrunexml-4/copyright
usr/share/lintian/overrides/libkestrunexml-4
END
diff - <(grep -vE "^($doc|usr/include/kestrune)/|/KestruneXMLTargets-[a-z]+\.cmake$" control/libkestrunexml-4-dev/files) <<END || fail "wrong files in -dev"
$lib/cmake/KestruneXML/KestruneXMLConfig.cmake
$lib/cmake/KestruneXML/KestruneXMLConfigVersion.cmake
$lib/cmake/KestruneXML/KestruneXMLTargets.cmake
$lib/libKestruneXML-4.so
$lib/pkgconfig/KestruneXML-4.pc
END
diff - control/kestrune-data/files <<END || fail "wrong files in the program's package"
usr/bin/kestrune-data
usr/share/bash-completion/completions/kestrune-data
$doc/kestrune-data/changelog.gz
$doc/kestrune-data/copyright
usr/share/man/man1/kestrune-data.1.gz
END
diff -r "$project/examples" "root/$doc/libkestrunexml-4-dev/examples" || fail "other examples"
diff -r --exclude 'CMake*' --exclude 'Doxy*' --exclude '*.sh' --exclude '*.sed' --exclude '*.awk' "$project/docs" "root/$doc/libkestrunexml-4-dev/docs" || fail "other documents"
[ -z "$(find root -mindepth 1 -type d \( -empty -o ! -perm 755 \))" ] || fail "folders that are empty or closed"
[ "$(find root -type f ! -perm 644)" = root/usr/bin/kestrune-data ] || fail "wrong permissions: $(find root -type f ! -perm 644)"

# Control files, and no script.
[ -z "$(find control -name "p*" -o -name "config")" ] || fail "scripts run at installation"
[ "$(cat control/libkestrunexml-4/triggers)" = "activate-noawait ldconfig" ] || fail "no trigger for ldconfig"
[ "$(cat control/libkestrunexml-4/shlibs)" = "libKestruneXML-4 4 libkestrunexml-4 (>= $version)" ] || fail "wrong shlibs"
has() { grep -qE "^$2: $3" "control/$1/control" || fail "$1: $2 is not '$3': $(grep "^$2:" "control/$1/control")"; }
has libkestrunexml-4 Depends '(.*, )?libexpat1 '
has libkestrunexml-4 Multi-Arch 'same$'
has libkestrunexml-4-dev Depends "libkestrunexml-4 \(= $version\)$"
has libkestrunexml-4-dev Multi-Arch 'same$'
has kestrune-data Depends "libkestrunexml-4 \(>= $version\), .*libc6 "

# The library, stripped, and what it needs.
library=root/$lib/libKestruneXML-4.so
readelf -d "$library" | grep -q 'SONAME.*\[libKestruneXML-4\.so\.4\]' || fail "no versioned SONAME"
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -vE '^(libexpat|libstdc\+\+|libm|libgcc_s|libc|ld-linux.*)\.so' || true)
[ -z "$needed" ] || fail "the library needs $needed"
for file in "$library" root/usr/bin/kestrune-data; do
  [[ $(readelf --wide --sections --dynamic "$file") != *@(.symtab|.debug_|RUNPATH|RPATH)* ]] || fail "$file: symbols or a search path"
done
grep -rlE '#include *(<expat|<unistd|<sys/|<fcntl|<windows)' root/usr/include && fail "a system header in the interface"

chip_file=$root/$doc/libkestrunexml-4-dev/examples/installation/Types/Vorlan.xml
configure() { cmake -S "$1" -B "$2" -G Ninja -DCMAKE_PREFIX_PATH="$root/usr" "${@:3}"; }
configure "$here" through-cmake -DWANTED_VERSION=4 >/dev/null
cmake --build through-cmake >/dev/null
through-cmake/consumer "$chip_file"
configure "$here" version-5 -DWANTED_VERSION=5 >/dev/null 2>&1 && fail "version 5 was not refused"
configure "root/$doc/libkestrunexml-4-dev/examples" examples >/dev/null
cmake --build examples --target find_manufacturer >/dev/null
(cd examples && ctest -R '^example.find_manufacturer$' --no-tests=error >/dev/null) || fail "an example fails"

export PKG_CONFIG_PATH=$root/$lib/pkgconfig
[ "$(pkg-config --modversion KestruneXML-4)" = "$version" ] || fail "wrong version in the pkg-config file"
flags=$(pkg-config --cflags --libs KestruneXML-4)
[[ $flags != *expat* ]] || fail "a program has to know Expat: $flags"
# shellcheck disable=SC2086
c++ -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Woverloaded-virtual -Werror "$here"/*.cpp $flags -o through-pkg-config
# shellcheck disable=SC2046
clang++ -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Woverloaded-virtual -Werror -fsyntax-only "$here"/*.cpp \
  $(pkg-config --cflags KestruneXML-4)
export LD_LIBRARY_PATH=$root/$lib
./through-pkg-config "$chip_file"

# The program, and its page.
data=$root/usr/bin/kestrune-data
"$data" check "$chip_file"
zcat root/usr/share/man/man1/kestrune-data.1.gz >kestrune-data.1
"$here/../tools/check_manual.sh" "$data" kestrune-data.1 "$project/README.md"
