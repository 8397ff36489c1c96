# Completion of kestrune-data in bash. The program itself says what can stand at the cursor.
_kestrune_data() {
  local answer option
  mapfile -t answer < <("${1/#\~\//$HOME/}" complete "${COMP_LINE:0:COMP_POINT}" 2>/dev/null)
  for option in ${answer[0]-}; do compopt -o "$option"; done
  COMPREPLY=("${answer[@]:1}")
}
complete -F _kestrune_data kestrune-data
