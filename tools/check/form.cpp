#include "tools/check/hits.h"
#include "tools/messages.h"

// 101 to 107: whether the file can be read at all, and what a save drops of its form.

namespace {

bool isDeclared(std::string_view text, std::string_view entity) {
  for (std::size_t at = text.find("<!ENTITY"); at != std::string_view::npos; at = text.find("<!ENTITY", at + 1)) {
    const std::string_view rest = text.substr(std::min(text.find_first_not_of(" \t\r\n", at + 8), text.size()));
    if (rest.starts_with(entity) && rest.find_first_of(" \t\r\n") == entity.size())
      return true;
  }
  return false;
}

/// Where the reference stands that is the reason, at a place or in the tag that begins there.
std::size_t undeclared(std::string_view text, std::size_t place) {
  const std::size_t end = std::min(text.find('>', place), text.size());
  for (std::size_t at = text.find('&', place); at < end; at = text.find('&', at + 1)) {
    const std::string_view entity = text.substr(at + 1, text.find(';', at) - at - 1);
    const bool isKnown = entity.starts_with('#') || entity == "lt" || entity == "gt" || entity == "amp" ||
                         entity == "quot" || entity == "apos" || isDeclared(text, entity);
    if (at == place || !isKnown)
      return at;
  }
  return place;
}

/// Why the file could not be read to its end.
void judgeFailure(const CheckedFile &file, Hits &hits) {
  using Kind = Outline::Failure::Kind;
  const Outline::Failure &failure = file.outline().failure();
  const std::string_view text = file.outline().text();
  const std::size_t ink = text.find_first_not_of(" \t\r\n");
  const bool isXml = ink != std::string_view::npos && text[ink] == '<';
  const std::string words = failure.reason.starts_with("not well-formed") ? "" : "not well-formed: ";
  Hit hit{101, file.outline().offsetOf(failure.place), failure.place, words + failure.reason, CheckedFile::kNone, {}};
  if (failure.kind == Kind::kBadBytes || failure.kind == Kind::kUnknownEncoding) {
    hit.number = 102;
    hit.message = failure.reason;
  } else if (failure.kind == Kind::kUndeclaredEntity) {
    hit.number = 104;
    hit.place = {};
    hit.offset = undeclared(text, file.outline().offsetOf(failure.place));
    const std::size_t end = text.find(';', hit.offset);
    hit.message = "the entity " + inQuotes(text.substr(hit.offset, end + 1 - hit.offset)) +
                  (isDeclared(text, text.substr(hit.offset + 1, end - hit.offset - 1))
                       ? " is the text of another file, which nobody opens"
                       : " is declared nowhere");
  } else if (failure.kind == Kind::kEmpty || (file.outline().size() == 0 && !isXml)) {
    hit.number = 103;
    hit.message = ink == std::string_view::npos ? "the file is empty"
                  : isXml                       ? "the file holds no element"
                                                : "the file is no XML";
  }
  hits.add(std::move(hit));
}

void judgeRoot(const CheckedFile &file, Hits &hits) {
  const std::string root(file.outline().name(0));
  std::vector<std::string> known;
  for (const Kind &kind : allKinds())
    known.emplace_back(kind.root);
  std::string message = "no kind of file has the root element " + inQuotes(root);
  const std::vector<std::string> near = nearTo(root, known, 1);
  if (!near.empty() && root.size() > 2) {
    message += "; did you mean '" + near.front() + "'?";
  } else {
    for (const std::string &name : known)
      message += (name == known.front() ? "; there are: " : ", ") + name;
  }
  hits.add(105, file.outline().offset(0), std::move(message));
}

/// What a save does not keep.
void judgeExtras(const CheckedFile &file, Hits &hits) {
  const Outline::Extras &extras = file.outline().extras();
  const std::string_view text = file.outline().text();
  if (extras.byteOrderMark && !folded(extras.encoding).starts_with("utf-16")) { // which has to have one
    Hit hit{106, 0, {}, "there is a byte order mark; a save drops it", CheckedFile::kNone, {}};
    if (extras.encoding.empty())
      hit.edits.push_back({0, 0, {}}); // the mark stands before the text
    hits.add(std::move(hit));
  }
  if (!extras.encoding.empty())
    hits.add(106, 0, "the encoding is " + inQuotes(extras.encoding) + "; a save makes it UTF-8");
  if (extras.carriageReturns)
    hits.add(106, text.find('\r'), "lines end in CR LF; a save makes it LF");
  if (!hits.wants(107))
    return;
  for (const std::uint32_t offset : extras.remarks) {
    const bool isComment = text.substr(offset).starts_with("<!--");
    hits.add(107, offset, std::string(isComment ? "a comment" : "a processing instruction") + "; a save drops it");
  }
  if (extras.doctype)
    hits.add(107, *extras.doctype, "a document type; a save drops it");
}

} // namespace

void judgeForm(const CheckedFile &file, Hits &hits) {
  if (!file.isWhole())
    judgeFailure(file, hits);
  if (file.outline().size() > 0 && file.kind() == nullptr)
    judgeRoot(file, hits);
  judgeExtras(file, hits);
}
