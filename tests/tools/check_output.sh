#!/usr/bin/env bash
# Holds the page about --json to what the commands print: each key and each heading of --tsv stands in the section of its
# command.
#   check_output.sh TOOL SAMPLE_INSTALLATION PAGE
set -euo pipefail
tool=$(realpath "$1")
types=$(realpath "$2")/Types
page=$(realpath "$3")

status=0
check() { # COMMAND ARGUMENT...
  local section keys key
  section=$(awk -v command="## $1" '/^## / { on = $0 == command } on' "$page")
  keys=$("$tool" "$@" --json | grep -oP '^ *"\K[a-z]+(?=":)' | sort -u)
  [ -n "$keys" ] || { echo "check_output: $* prints no keys" >&2; status=1; }
  case $1 in list | show | clock | linked) keys+=" $("$tool" "$@" --tsv | sed -n 1p)" ;; esac
  for key in $keys; do
    [[ $section == *"\`$key\`"* || $key == Number || $key == Name ]] ||
      { echo "check_output: $1: \`$key\` is not in $page" >&2; status=1; }
  done
}

check list "$types/spidData.xml" --only Contents,ManufacturerIDs --columns Number,Name
check list "$types/Vorlan.xml" --count
check show "$types/Vorlan.xml" 'Vorlan 1802'
check show "$types/StdXcvr.xml" 'Cordane 64' --members std_id,Channel
check get "$types/Vorlan.xml" VorlanModels/KVO-1802-D24/Key
check clock "$types/Vorlan.xml" 5 '10 MHz' 1/2
check clock "$types/Vorlan.xml" 5
check clock "$types/Vorlan.xml" 5 '10 MHz'
check linked 8 9 --file "$types/Vorlan.xml"
check linked 8 --file "$types/Vorlan.xml"
check resolve "$types/Vorlan.xml" --macros
check resolve "$types/Vorlan.xml" --store
exit $status
