#!/usr/bin/env bash
# Looks into an optimised library and program for what the flags of the build promise: an attacker finds no writable table
# of functions, no unguarded stack and no unchecked copy.
#   check_hardening.sh FILE...
set -euo pipefail

status=0
for file in "$@"; do
  missing() { echo "check_hardening: $file: $*" >&2; status=1; }
  grep -qE 'BIND_NOW|FLAGS.*NOW' <<<"$(readelf --wide --dynamic "$file")" || missing "functions are bound late"
  grep -q GNU_RELRO <<<"$(readelf --wide --segments "$file")" || missing "no read-only relocations"
  symbols=$(readelf --wide --dyn-syms "$file")
  grep -q ' __stack_chk_fail@' <<<"$symbols" || missing "no guarded stacks"
  # The program leaves all copying to the libraries.
  [[ $file != *.so* ]] || grep -qE ' __[a-z]+_chk@' <<<"$symbols" || missing "no checked copies"
  if grep -q X86-64 <<<"$(readelf --file-header "$file")"; then
    grep -q 'x86 feature:.*SHSTK' <<<"$(readelf --wide --notes "$file")" || missing "not marked for shadow stacks"
    # Every function that may be called through a pointer begins with the mark of a target.
    objdump --disassemble --no-show-raw-insn "$file" | grep endbr64 >/dev/null || missing "no marks for indirect branches"
  fi
done
exit $status
