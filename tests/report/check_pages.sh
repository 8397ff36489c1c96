#!/usr/bin/env bash
# The page of the sample is sound HTML, and the picture in the README is the one that the program makes.
#   check_pages.sh TOOL SAMPLE_INSTALLATION PICTURE
set -euo pipefail
export KESTRUNE_REGISTRY=/nonexistent/registry.reg
if ! "$1" report "$2/Types/Vorlan.xml" --picture 'Vorlan 4108' | cmp - "$3"; then
  echo "$3 is old: kestrune-data report examples/installation/Types/Vorlan.xml --picture 'Vorlan 4108' -o docs/memory-map.svg"
  exit 1
fi
xmllint --noout "$3"

# What changed is counted as diff counts it.
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
sed '0,/<RAMend>0xF1FF/s//<RAMend>0xF8FF/; s/Vorlan 1802-T/Elsewhere/; s/KVO-1802T/KVO-NEW/' "$2/Types/Vorlan.xml" >"$work/Vorlan.xml"
"$1" report "$work/Vorlan.xml" --against "$2/Types/Vorlan.xml" -o "$work/page.html"
counts=$("$1" diff "$2/Types/Vorlan.xml" "$work/Vorlan.xml" | tail -1) || true
grep -qF ": $counts</p>" "$work/page.html" || { echo "the page does not say: $counts"; exit 1; }

# So are the files of a folder that are gone.
mkdir "$work/now"
cp "$2/Types/Vorlan.xml" "$work/now"
"$1" report "$work/now" --against "$2/Types" -o "$work/page.html"
diff <({ "$1" diff "$2/Types" "$work/now" || true; } | sed -n 's/^- //p') \
  <(sed 's/<p>/\n/g' "$work/page.html" | sed -n 's|^.*/\([^/]*\) is gone: .*|\1|p')

# The page has the findings of check and no other, with what .kestrune-check passes over.
mkdir "$work/known"
cp "$2"/Types/*.xml "$work/known"
printf 'KD409  UserXcvr.xml  *\nKD404  Vorlan.xml  *\n' >"$work/known/.kestrune-check"
for folder in "$2/Types" "$2/../faulty" "$work/known"; do
  found=$({ "$1" check --tsv "$folder" || true; } | awk -F'\t' 'NR > 1 && $5 { print $5, $2 ":" $3 }' | sort -u)
  "$1" report "$folder" -o "$work/page.html"
  page=$({ grep -oE '>KD[0-9]+</a> [^<]*<span class="note">[^<]*</span>' "$work/page.html" || true; } |
    sed -E 's/>(KD[0-9]+)<.*:([0-9]+:[0-9]+)( \[.*)?<\/span>/\1 \2/' | sort -u)
  [ "$found" = "$page" ] || { diff <(echo "$found") <(echo "$page"); exit 1; }
done
grep -q 'this line suppresses nothing: KD404' "$work/page.html"
# What programs read with a file is compared too.
cp "$2"/Types/*.xml "$work/now"
sed -i '0,/<RAMend>0xEFFF/s//<RAMend>0xEEFF/' "$work/now/Vorlan-1.xml"
cp -r "$2/Types" "$work/old"
rm "$work/old/Vorlan-2.xml"
"$1" report --as-installed "$work/now/Vorlan.xml" --against "$work/old/Vorlan.xml" -o "$work/page.html"
marks=$(grep -o '<span class="badge change">[a-z]*' "$work/page.html" | sort | uniq -c | tr -s ' \n' ' ')
[ "$marks" = ' 1 <span class="badge change">changed 5 <span class="badge change">new ' ] ||
  { echo "marked in the add-ons: $marks"; exit 1; }
# Without an older file, or with a name that nothing has, there is no page.
mkdir "$work/empty"
for bad in "--against=$work/none.xml" "--against=$2/Types/StdXcvr.xml" "--against=$work/empty" --only=none --compare-models=none; do
  status=0
  "$1" report "$work/Vorlan.xml" "$bad" -o "$work/none.html" 2>"$work/message" || status=$?
  if [ $status != 2 ] || [ ! -s "$work/message" ] || [ -e "$work/none.html" ]; then
    echo "$bad: status $status, expected 2 and no page"
    exit 1
  fi
done
# What the page says of odd data: a change to the sample, options, and a text that it has then. "!" is one that it has not.
while IFS='|' read -r change options text; do
  sed "$change" "$2/Types/Vorlan.xml" >"$work/odd.xml"
  # shellcheck disable=SC2086 # they are several words
  "$1" report "$work/odd.xml" $options -o "$work/page.html"
  has=0
  grep -qF -- "${text#!}" "$work/page.html" || has=1
  [ $has = "$([ "${text:0:1}" != '!' ]; echo $?)" ] || { echo "$change, $options: expected $text"; exit 1; }
done <<'EOF'
0,/<RAMend>0xF1FF/s//<RAMend>0xE000/||RAM cannot be drawn: it begins at 0xF000 and ends at 0xE000
0,/<RAMend>0xF1FF/s//<RAMend>0xE000/|--compare-models 8,9|RAM cannot be drawn
0,/<RAMend>0xF1FF/s//<RAMend>0xE000/|--only 8|not known 0x
0,/<RAMend>0xF1FF/s//<RAMend>x/|--only 8|RAM cannot be drawn: RAMend 'x' is not
0,/<ROMend>[^<]*/s//<ROMend>0xFFFF/|--only 8|ROM is not drawn: ROMend is 0xFFFF, the default
0,/<LinkCompatibleList>9</s//<LinkCompatibleList>0x9</||never matches
0,/<LinkCompatibleList>9</s//<LinkCompatibleList>0x9</||!<th scope="col">0x9</th>
||!cannot be drawn
|--only 8|<strong>Scheme 1</strong>
|--only 8|!<strong>Scheme 2</strong>
|--only 8|2 models</span>
|--only 2|<strong>Scheme 2</strong>
|--only 2|!VorlanModels-t
EOF
# Beside a file that cannot be read the others are shown; a data file is never written over.
cp "$2/Types/StdXcvr.xml" "$work/kept.xml"
for arguments in "$work/none.xml -o $work/page.html" "-o /dev/full" "-o $work/none/page.html" "-o $work/kept.xml"; do
  status=0
  # shellcheck disable=SC2086 # they are several words
  "$1" report "$2/Types/Vorlan.xml" $arguments 2>"$work/message" || status=$?
  if [ $status != 2 ] || [ ! -s "$work/message" ]; then
    echo "$arguments: status $status, expected 2"
    exit 1
  fi
done
grep -q 'could not be read: .*No such file' "$work/page.html"
grep -q 'Vorlan 4108' "$work/page.html"
cmp "$2/Types/StdXcvr.xml" "$work/kept.xml"
if ! command -v tidy >/dev/null; then
  echo "skipped: tidy is not installed"
  exit 77
fi
# A warning is 1: its idea of a list of terms is older than the language.
is_sound() { tidy -quiet -errors --show-warnings no "$@" || [ $? -lt 2 ]; }
"$1" report --as-installed "$2/Types" --compare-models 66,100 | is_sound

# A text of 10 MB, and those that would be a tag, end a style or turn the line round, change nothing in the page.
long=$(head -c 10000000 /dev/zero | tr '\0' 'L')
sed -f - "$2/Types/Vorlan.xml" >"$work/hostile.xml" <<EOF
s|Name="Vorlan 2202"|Name="\&quot;>\&lt;img src=x onerror=alert(1)>"|
s|Name="Vorlan 2204"|Name="\&lt;/style>]]\&gt;\&lt;/script>\&lt;!--"|
s|Name="Vorlan 2208"|Name="\&#x2028;\&#x202E;\&amp;amp;\&#x5D0;"|
s|Name="Vorlan 2401"|Name="$long"|
0,/<Description>/s||&$long|
EOF
"$1" report "$work/hostile.xml" --only 'Vorlan 22*,16,18,21,32' --compare-models 16,18,21,32 -o "$work/page.html"
is_sound "$work/page.html"
if grep -q '<img\|onerror=.*alert(1)>' "$work/page.html" || [ "$(stat -c %s "$work/page.html")" -gt 1000000 ]; then
  echo "the page has a tag out of a file, or whole texts many times"
  exit 1
fi
