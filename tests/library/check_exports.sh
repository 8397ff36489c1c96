#!/usr/bin/env bash
# Compares what the shared library exports with the list of what it offers, and prints what is missing and what is too much.
#   check_exports.sh LIBRARY LIST
set -euo pipefail
library=$1
list=$2

# One line per symbol: the class or function that it belongs to. Instances of the standard library's templates do not count.
names=$(nm -D -C --defined-only "$library" | sed -E 's/^[0-9a-f]+ [A-Za-z] //' |
  sed -E 's/^(vtable|VTT|typeinfo|typeinfo name) for //; s/^(non-virtual|virtual|covariant return) thunk to //' |
  grep -vE '^(void |bool |[a-z_ ]+\*? )?(std|__gnu_cxx)::' | sed -E 's/\[abi:[^]]*\]//g; s/ const$//; s/\(.*$//')

status=0
functions=0
allowed=$(mktemp)
trap 'rm -f "$allowed"' EXIT
while read -r kind name count; do
  case $kind in
  class) pattern="^${name}(::.*|\\*)?$" ;;
  function | platform) pattern="^${name//+/\\+}$" ;;
  *) continue ;;
  esac
  echo "$pattern" >>"$allowed"
  found=$(grep -cE "$pattern" <<<"$names" || true)
  if [ "$found" -eq 0 ] || { [ "$kind" != class ] && [ "$found" -ne "${count:-1}" ]; }; then
    echo "missing: $name ($found symbols)"
    status=1
  fi
  [ "$kind" = function ] && functions=$((functions + found))
done <"$list"

if extra=$(grep -vEf "$allowed" <<<"$names"); then
  echo "exported, but not on the list:"
  sort -u <<<"$extra"
  status=1
fi
if [ "$functions" -ne 21 ]; then
  echo "$functions free functions of the library's own instead of 21"
  status=1
fi
exit $status
