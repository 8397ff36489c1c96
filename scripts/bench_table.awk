# Makes the table and the chart of scripts/bench from its results, lines of a name and one to three figures.
#   awk -v chart=FILE.svg -f scripts/bench_table.awk RESULTS

{ first[$1] = $2; second[$1] = $3; third[$1] = $4 }

function number(value) { return sprintf(value < 10 ? "%.2f" : value < 100 ? "%.1f" : "%.0f", value) }

function row(label, rival, ours, other, unit) {
  if (!ours || !other) return
  printf "| %s: %s | %s %s | %s %s | %.2f |\n", label, rival, number(ours), unit, number(other), unit, ours / other
  if (rival == plain) bar(label, ours / other)
}

function compare(what, models, class, rival) {
  row(what ", " models " models", rival, first[what "<KestruneChipFile>/" models], first[what "<" class ">/" models], "ms")
}

function grow(label, what, modelsPerUnit) {
  few = first[what "/1000"] / 1000 / modelsPerUnit
  many = first[what "/100000"] / 100000 / modelsPerUnit
  if (!few || !many) return
  printf "| %s, instructions a model: 100000 against 1000 models | %d | %d | %.3f |\n", label, many, few, many / few
}

# A bar of the chart: what this library needs where pugixml and structs need 1.
function bar(label, ratio) {
  y = 56 + 30 * bars++
  width = ratio * unitWidth
  if (width > widest) widest = width
  rows = rows sprintf("<text x='%d' y='%d' class='label'>%s</text>", left - 10, y + 14, label) \
    sprintf("<rect x='%d' y='%d' width='%.1f' height='20' class='%s'/>", left, y, width, ratio > 1 ? "more" : "less") \
    sprintf("<text x='%.1f' y='%d'>%.2f</text>\n", left + width + 6, y + 14, ratio)
}

function writeChart() {
  one = left + unitWidth
  height = 56 + 30 * bars + 16
  right = left + (widest > unitWidth ? widest : unitWidth) + 60
  printf "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 %d %d' width='%d' role='img'>\n", right, height, right > chart
  print "<title>Time and memory of this library, where pugixml and structs need 1</title>" > chart
  print "<style>text { font: 13px sans-serif; fill: #24292f } .label { text-anchor: end } .less { fill: #2a7f62 }" > chart
  print ".more { fill: #b5651d } line { stroke: #24292f; stroke-dasharray: 4 3 }" > chart
  print "@media (prefers-color-scheme: dark) { text { fill: #e6edf3 } line { stroke: #e6edf3 } }</style>" > chart
  printf "<text x='%d' y='20'>Shorter is better. The line is pugixml with structs.</text>\n", left > chart
  printf "%s<line x1='%d' y1='44' x2='%d' y2='%d'/>\n</svg>\n", rows, one, one, height - 10 > chart
}

END {
  plain = "pugixml and structs"
  left = 260
  unitWidth = 260
  print "| Measured | Ours | Against | Ratio |\n|---|--:|--:|--:|"
  split("20000 40", sizes)
  for (i = 1; i <= 2; ++i) {
    models = sizes[i]
    compare("Load", models, "PugixmlChipFile", plain)
    compare("Load", models, "LibXml2Tree", "tree of libxml2")
    compare("Load", models, "ExpatPass", "Expat, nothing kept")
    compare("Save", models, "PugixmlChipFile", plain)
    compare("Copy", models, "PugixmlChipFile", plain)
  }
  fresh = ", 20000 models, new process"
  row("Load" fresh, plain, first["kestrune-process"], first["pugixml-process"], "ms")
  row("Load" fresh, "tree of libxml2", first["kestrune-process"], first["libxml2-process"], "ms")
  row("Load" fresh, "Expat, nothing kept", first["kestrune-process"], first["expat-process"], "ms")
  row("Save" fresh, plain, second["kestrune-save-process"], second["pugixml-save-process"], "ms")
  memory = "Peak memory, 20000 models, "
  row(memory "load", plain, third["kestrune-process"] / 1024, third["pugixml-process"] / 1024, "MiB")
  row(memory "load", "tree of libxml2", third["kestrune-process"] / 1024, third["libxml2-process"] / 1024, "MiB")
  row(memory "load and save", plain, third["kestrune-save-process"] / 1024, third["pugixml-save-process"] / 1024, "MiB")
  check = "kestrune-data check, 20000 models: "
  row(check "time", "xmllint --noout", first["check-process"], first["xmllint-process"], "ms")
  row(check "peak memory", "load", second["check-process"] / 1024, third["kestrune-process"] / 1024, "MiB")
  grow("Load", "load", 1)
  grow("Save", "save", 1)
  grow("Copy", "copy", 1)
  grow("Load with an add-on", "addon", 1.1)
  writeChart()
}
