#!/usr/bin/env bash
# Takes the files that a document shows in ```xml blocks, and lets the program check each and find in it all that it holds.
#   check_samples.sh TOOL DOCUMENT
set -euo pipefail
tool=$(realpath "$1")
document=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fail() { echo "check_samples: $*" >&2; exit 1; }

awk '/^```xml$/ { file = "sample-" ++number ".xml"; next } /^```$/ { file = "" } file { print > file }' "$document"
for root in VorlanTyp StdXcvr SPIDData KestruneUI; do
  grep -lq "^<$root>" sample-*.xml || fail "there is no sample of a $root file"
done
# They are short: members are left out, and models that the link table names.
"$tool" check --fail-on error --level error --ignore KD402 sample-*.xml
for file in sample-*.xml; do
  "$tool" list "$file" >seen
  while IFS= read -r name; do
    "$tool" show "$file" "$name" >>seen
  done < <(grep -oP '^\t\t<.* (Name|Id)="\K[^"]*' "$file")
  # A misspelt member would be passed over, and its text be missing.
  grep -oP '(?<!")\b\w+="[^"]*"|<\w+>[^<]+(?=</)' <(sed '/<Contents/,/<\/Contents>/d; /^<?xml/d' "$file") | tr -d '<"' |
    while IFS='=>' read -r tag text; do
      grep -qE "(^| )$tag +$text(  = .*)?$" seen || fail "$file: $tag is not read as '$text'"
    done
done
