#!/usr/bin/env bash
# Fails if a public declaration of the headers has no text, if a class shows an empty table, or if a link leads nowhere.
#   docs/check_reference.sh FOLDER     the folder with html/ and xml/
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cd "$1"

undocumented=$(awk -f "$here/undocumented.awk" xml/*.xml)
empty=$(grep -l '<div class="fragment"></div>' html/*.html || true)
dead=$(cd html && grep -ohE 'href="[^"#:]+["#]' ./*.html | sed 's/^href="//; s/.$//' | sort -u | while read -r page; do
  [ -e "$page" ] || echo "$page"
done)

[ -z "$undocumented" ] || printf 'without a text:\n%s\n' "$undocumented"
[ -z "$empty" ] || printf 'with an empty table:\n%s\n' "$empty"
[ -z "$dead" ] || printf 'links to nothing:\n%s\n' "$dead"
[ -z "$undocumented$empty$dead" ]
