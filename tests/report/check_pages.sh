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
if ! command -v tidy >/dev/null; then
  echo "skipped: tidy is not installed"
  exit 77
fi
# A warning is 1: its idea of a list of terms is older than the language.
"$1" report --as-installed "$2/Types" --compare-models 66,100 | tidy -quiet -errors --show-warnings no || [ $? -lt 2 ]
