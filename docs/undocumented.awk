# Prints each public or protected declaration of the headers that has no text, from the XML output of doxygen. Its own
# warnings leave out destructors, constructors without arguments, enumerators, and globals of a file without a text.
function attribute(name) { return match($0, name "=\"[^\"]*\"") ? substr($0, RSTART + length(name) + 2, RLENGTH - length(name) - 3) : "" }
function content() { gsub(/^[^>]*>|<[^<]*$/, ""); return $0 }
function open_(kind) { ++depth; kinds[depth] = kind; names[depth] = ""; hasText[depth] = 0 }

/<compounddef / { depth = 0; open_(attribute("kind")); isPrivate = attribute("prot") == "private"; missing = ""; globals = 0 }
/<memberdef / { open_(attribute("kind")); isHidden = attribute("prot") == "private" }
/<enumvalue / { open_("enumerator") }
/<(brief|detailed)description>/ { inText = 1 }
/<para>/ && inText { hasText[depth] = 1 }
/<\/(brief|detailed)description>/ { inText = 0 }
/<location / && depth == 1 { file = attribute("file") }
/<argsstring>.*=delete/ { isHidden = 1 }
/<(name|compoundname)>/ && names[depth] == "" { names[depth] = content() }
/<\/(enumvalue|memberdef)>/ {
  if (!hasText[depth] && !isHidden)
    missing = missing "\n" kinds[depth] " " (kinds[1] == "file" ? "" : names[1] "::") names[depth]
  --depth
  globals = 1
}
/<\/compounddef>/ {
  if (!hasText[1] && (kinds[1] != "file" || globals))
    missing = missing "\n" kinds[1] " " names[1]
  if (file ~ /\.h$/ && !isPrivate && kinds[1] ~ /^(class|struct|union|namespace|file)$/ && missing != "")
    print file ":" missing
}
