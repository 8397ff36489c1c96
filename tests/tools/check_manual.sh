#!/usr/bin/env bash
# Holds the manual page and the README to what the program says of each command.
#   check_manual.sh TOOL PAGE README
set -u
data=$(realpath "$1")
failed=0
fail() { echo "check_manual: $*" >&2; failed=1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

warnings=$(groff -K utf8 -man -ww -T utf8 -P -cbou -rLL=4000n -rHY=0 "$2" 2>&1 >"$work/page")
[ -z "$warnings" ] || fail "the page: $warnings"

"$data" --help >"$work/help" || exit 2
commands=$(awk '/^[^ ].*:$/ { on = $0 == "Subcommands:"; next } on && /^  [^ ]/ { print $1 }' "$work/help")
[ -n "$commands" ] || fail "the help names no command"
for command in "" $commands; do
  "$data" $command --help >"$work/help"
  if [ -n "$command" ]; then
    grep -qE "^   $command( |$)" "$work/page" || fail "the page has no section on $command"
    "$data" help "$command" | cmp -s - "$work/help" || fail "help $command is not $command --help"
    sed -n '/^Examples:$/,$ s/^  //p' "$work/help" >"$work/examples"
    [ "$(wc -l <"$work/examples")" -ge 2 ] || fail "$command has no two examples"
    while IFS= read -r example; do
      grep -qF -- "$example" "$work/page" || fail "the page lacks an example of $command: $example"
      [[ $example == *"kestrune-data"* ]] || fail "no example of $command: $example"
    done <"$work/examples"
  fi
  # What stands in the help behind a name.
  grep -v '^  -h,--help ' "$work/help" | sed -nE 's/^  [^ ].* {2,}//p; s/^ {10,}//p' >"$work/texts"
  while IFS= read -r text; do
    grep -qF -- "$text" "$work/page" || fail "the page does not say of $command: $text"
  done <"$work/texts"
done

diff <(sed -n '/^| Command /,/^$/ s/^| `\([a-z]*\).*/\1/p' "$3" | sort) <(tr ' ' '\n' <<<"$commands" | grep -v '^help$' | sort) >&2 ||
  fail "the README has other commands than --help"
exit $failed
