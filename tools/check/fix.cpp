#include "tools/check/fix.h"

#include <algorithm>

std::string fixedBytes(const CheckedFile &file, Hits &hits) {
  const std::string &bytes = file.source().bytes;
  if (!file.isWhole() || !file.outline().extras().encoding.empty())
    return bytes; // offsets are those of the text in UTF-8
  std::vector<Edit> edits;
  bool dropsMark = false;
  for (const Hit &hit : hits.sorted()) {
    for (const Edit &edit : hit.edits) {
      if (edit.length > 0)
        edits.push_back(edit);
      else
        dropsMark = true;
    }
  }
  std::sort(edits.begin(), edits.end(), [](const Edit &a, const Edit &b) { return a.offset < b.offset; });
  const std::string_view text = file.outline().text();
  std::string fixed = dropsMark ? std::string() : bytes.substr(0, bytes.size() - text.size());
  std::size_t done = 0;
  for (const Edit &edit : edits) {
    if (edit.offset < done)
      continue;
    fixed.append(text, done, edit.offset - done).append(edit.text);
    done = edit.offset + edit.length;
  }
  fixed.append(text, done);
  return Outline(fixed).failure().kind == Outline::Failure::Kind::kNone ? fixed : bytes;
}
