#include "tools/check/fix.h"

#include "tools/table.h"

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

std::string lineDiff(const std::string &name, const std::string &before, const std::string &after) {
  // No edit adds or removes a line.
  std::string diff;
  std::size_t number = 0;
  for (std::size_t old = 0, now = 0; old < before.size() && now < after.size();) {
    const std::size_t oldEnd = std::min(before.find('\n', old), before.size());
    const std::size_t nowEnd = std::min(after.find('\n', now), after.size());
    const std::string_view oldLine = std::string_view(before).substr(old, oldEnd - old);
    const std::string_view nowLine = std::string_view(after).substr(now, nowEnd - now);
    ++number;
    if (oldLine != nowLine) {
      const auto line = [](const char *sign, std::string_view text) {
        const std::size_t ink = text.find_first_not_of(" \t");
        return sign + shown(ink == std::string_view::npos ? text : text.substr(ink)) + "\n";
      };
      diff += shown(name) + ":" + std::to_string(number) + "\n" + line("- ", oldLine) + line("+ ", nowLine);
    }
    old = oldEnd + 1;
    now = nowEnd + 1;
  }
  return diff;
}
