#!/usr/bin/env bash
# Completes command lines as bash does, and compares what is offered.
#   check_completion.sh TOOL SAMPLE_INSTALLATION COMPLETION
set -u
PATH=$(dirname "$(realpath "$1")"):$PATH
completion=$(realpath "$3")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$2"/Types/*.xml "$work" && cd "$work" || exit 2
cp Vorlan.xml 'two words.xml'
mkfifo pipe
export HOME=$work
failed=0

compopt() { [ "$1" = -o ] && options+="${options:+ }$2"; } # bash's own works in a completion alone
# shellcheck source=/dev/null
source "$completion"
complete -p kestrune-data | grep -q -- '-F _kestrune_data ' || { echo "check_completion: nothing is registered" >&2; exit 1; }

# Sets `options` and COMPREPLY for a line with the cursor at its end.
at_end_of() {
  options='' COMPREPLY=() COMP_LINE=$1 COMP_POINT=${#1}
  _kestrune_data kestrune-data
}

at_end_of 'kestrune-data '
diff <(printf '%s\n' "${COMPREPLY[@]}") \
  <(kestrune-data --help | awk '/^[^ ].*:$/ { on = $0 == "Subcommands:"; next } on && /^  [^ ]/ { print $1 }' | sort) || failed=1

# The line, the options of its completion, and what is offered.
while IFS='|' read -r line wanted offers; do
  at_end_of "$line"
  seen=$(IFS=';'; echo "$options|${COMPREPLY[*]}")
  [ "$seen" = "$wanted|$offers" ] || { echo "check_completion: '$line' offers $seen and not $wanted|$offers" >&2; failed=1; }
done <<'END'
kestrune-data sch|filenames|schema
kestrune-data nothing |filenames|
kestrune-data help sche|filenames|schema
kestrune-data schema v|filenames|VorlanTyp
kestrune-data check --le|filenames|--level
kestrune-data check --level |filenames|error;note;warning
kestrune-data check --color=a|filenames|always;auto
kestrune-data check --only KD304,KD102|filenames|KD304,KD102
kestrune-data get Vor|default|
kestrune-data get '$StdV|filenames|$StdVorlanTyp$
kestrune-data get nowhere.xml V||
kestrune-data get pipe V||
kestrune-data get Vorlan.xml V|filenames nospace|VorlanModels/
kestrune-data get --as-installed --name a ~/two\ words.xml V|filenames nospace|VorlanModels/
kestrune-data get Vorlan.xml VorlanModels/kvo-1802-|filenames nospace|VorlanModels/KVO-1802-D24/
kestrune-data get Vorlan.xml VorlanModels/KVO-1802-D24/ROM|filenames|VorlanModels/KVO-1802-D24/ROMend;VorlanModels/KVO-1802-D24/ROMendMinimum
kestrune-data get Vorlan.xml Contents/Format "VorlanModels/Vorlan 2208-X|filenames nospace|VorlanModels/Vorlan 2208-XT/
kestrune-data get Vorlan.xml VorlanModels/Vorlan\ 2208-XT/RAMe|filenames|VorlanModels/Vorlan 2208-XT/RAMend
kestrune-data set Vorlan.xml VorlanModels/KVO-1802-D24/ROMend|filenames nospace|VorlanModels/KVO-1802-D24/ROMend;VorlanModels/KVO-1802-D24/ROMendMinimum
kestrune-data set Vorlan.xml VorlanModels/KVO-1802-D24/ROMend=|filenames nospace|0x1FFF
kestrune-data add Vorlan.xml VorlanModels NEW --like KVO-1802T|filenames|KVO-1802T-D24
kestrune-data remove Vorlan.xml ClockingSchemes/5/Clocks/1|filenames|ClockingSchemes/5/Clocks/10000/;ClockingSchemes/5/Clocks/16000/
kestrune-data diff Vorlan.xml Vor|default|
kestrune-data show spidData.xml temperature\ s|filenames|Temperature sensor
kestrune-data list Vorlan.xml --columns Name,ROM|filenames|Name,ROMend;Name,ROMendMinimum
kestrune-data clock Vorlan.xml 5 '10|filenames|10 MHz
kestrune-data clock Vorlan.xml --by value 5 10000 0|filenames|0.25;0.5
kestrune-data linked --file Vorlan.xml 'Vorlan 1802-|filenames|Vorlan 1802-T
END
exit $failed
