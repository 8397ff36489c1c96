// Any bytes as a file, read by the reader for plain files and by Expat. What the first accepts is accepted by Expat
// too, and both make the same tree: names and their numbers, elements, attributes, texts, and how they hang together.
// Three programs are made of this: as the library has it, with a window so small that all seams are met, and without
// SIMD.

#include "fuzz/fuzz_support.h"
#include "kestrune/dom/plain_reader.h"
#include "kestrune/dom/reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <random>
#include <vector>

#ifndef PLAIN_WINDOW
#define PLAIN_WINDOW kestrune::dom::kPlainWindow
#endif

extern "C" std::size_t LLVMFuzzerMutate(unsigned char *data, std::size_t size, std::size_t maxSize);

namespace {

using namespace kestrune::dom;

/// Prints at the end how many inputs were accepted: a search that only sees refusals proves little.
struct Share {
  std::size_t accepted = 0;
  std::size_t all = 0;
  Share() = default;
  Share(const Share &) = delete;
  Share &operator=(const Share &) = delete;
  ~Share() { std::fprintf(stderr, "accepted by the plain reader: %zu of %zu\n", accepted, all); }
};

/// Whether two nodes, or what stands in their place, are alike by themselves.
bool isLike(const Node *a, const Node *b) {
  if (a == nullptr || b == nullptr)
    return a == b;
  const Element *const first = a->element();
  const Element *const second = b->element();
  if (a->name() != b->name() || a->ownText() != b->ownText() || (first == nullptr) != (second == nullptr))
    return false;
  return first == nullptr || (first->order() == second->order() && first->lastOrder() == second->lastOrder() &&
                              first->behind() == second->behind());
}

bool haveSameAttributes(const Element *a, const Element *b) {
  const Attribute *first = a->firstAttribute();
  const Attribute *second = b->firstAttribute();
  while (first != nullptr && second != nullptr && first->name == second->name && first->value() == second->value()) {
    first = first->next;
    second = second->next;
  }
  return first == second;
}

void requireSame(const Tree &plain, const Tree &judged) {
  Require(plain.bound == judged.bound && plain.indexed == judged.indexed, "both readers come to the same end");
  Require(plain.names.size() == judged.names.size(), "both trees have as many names");
  for (std::size_t i = 0; i < plain.names.size(); ++i) {
    const Tree::Name &name = plain.names[i];
    const Tree::Name &other = judged.names[i];
    Require(name.text == other.text, "a name has the same number in both trees", std::string(name.text));
    Require(name.first == other.first && isLike(name.last, other.last), "a name has the same elements in both trees",
            std::string(name.text));
  }
  const Node *node = plain.root;
  const Node *other = judged.root;
  for (; node != nullptr; node = NextBelow(plain.root, node), other = NextBelow(judged.root, other)) {
    Require(isLike(node, other), "both trees have the same nodes",
            other != nullptr ? std::string(node->ownText()) + '\n' + std::string(other->ownText()) : "");
    Require(isLike(node->parent, other->parent) && isLike(node->next, other->next), "a node has the same neighbours");
    if (const Element *const element = node->element(); element != nullptr) {
      Require(haveSameAttributes(element, other->element()), "an element has the same attributes");
      Require(isLike(element->first(), other->element()->first()), "an element has the same children");
    }
  }
  Require(other == nullptr, "neither tree has more nodes");
}

/// Where the pieces of a file begin: each tag, and each text between two.
std::vector<std::size_t> piecesOf(std::string_view file) {
  std::vector<std::size_t> begins;
  for (std::size_t at = 0; at < file.size();) {
    begins.push_back(at);
    const std::size_t end = file[at] == '<' ? file.find('>', at) : file.find('<', at) - 1;
    at = end < file.size() ? end + 1 : file.size();
  }
  begins.push_back(file.size());
  return begins;
}

/// The piece behind the element whose start tag is the piece `first`, or behind that piece where it is none.
std::size_t behindElement(std::string_view file, const std::vector<std::size_t> &begins, std::size_t first) {
  int depth = 0;
  for (std::size_t i = first; i + 1 < begins.size(); ++i) {
    const std::string_view piece = file.substr(begins[i], begins[i + 1] - begins[i]);
    if (piece.starts_with("</"))
      --depth;
    else if (piece.starts_with('<') && !piece.ends_with("/>") && !piece.starts_with("<!") && !piece.starts_with("<?"))
      ++depth;
    if (depth <= 0)
      return i + 1;
  }
  return begins.size() - 1;
}

constexpr const char *kInTexts[] = {"\r\n",  "\r",    "\t",           "\n \n", "&lt;",      "&amp;",
                                    "&#13;", "&#xA;", "&#9;",         "]]",    "&#x1F600;", ">",
                                    "é",     "€",     "\xEF\xBF\xBD", "😀",     "&quot;"};
constexpr const char *kFaults[] = {"]]>",      "&#xFFFE;", "&#xD800;",   "\xEF\xBF\xBE",     "\xED\xA0\x80",
                                   "\xC0\x80", "&#31;",    "&#1114112;", "\xF4\x90\x80\x80", "<",
                                   "&",        "\x1F"};
constexpr const char *kElements[] = {"<a/>",
                                     "<b>t</b>",
                                     "<!-- c -->",
                                     "<!---->",
                                     "<![CDATA[ <&\r\n]] ]]>",
                                     "<?p?>",
                                     "<?p q='?>' ?>",
                                     "<c d='e'></c >",
                                     "<a\n\tb = \"'\"  c='\"'/>"};
constexpr const char *kAttributes[] = {" a='1'", "\r\nb=\"x\r\ny\"", " a = ''", "\tc='&quot;&#10;\t'", "  d.e-f:g='>'"};

/// Swaps, repeats or cuts elements, or puts something in: so the result is mostly well-formed where the input is.
void changeStructure(std::string &file, std::minstd_rand &random) {
  const std::vector<std::size_t> begins = piecesOf(file);
  const auto below = [&](std::size_t bound) { return random() % std::max<std::size_t>(bound, 1); };
  const auto insert = [&]<std::size_t size>(std::size_t at, const char *const(&choice)[size]) {
    file.insert(at, choice[below(size)]);
  };
  std::size_t first = below(begins.size() - 1);
  while (first != 0 && file.compare(begins[first], 2, "</") == 0)
    --first;
  const std::size_t from = begins[first];
  const bool isTag = file[from] == '<';
  const std::size_t behind = behindElement(file, begins, first);
  switch (below(24)) {
  case 0:
    file.erase(from, begins[behind] - from);
    break;
  case 1:
    file.insert(begins[behind], file.substr(from, begins[behind] - from));
    break;
  case 2: { // to the piece that follows
    const std::size_t next = begins[behindElement(file, begins, behind)];
    std::rotate(file.begin() + static_cast<std::ptrdiff_t>(from),
                file.begin() + static_cast<std::ptrdiff_t>(begins[behind]),
                file.begin() + static_cast<std::ptrdiff_t>(next));
    break;
  }
  case 3:
    insert(from, kElements);
    break;
  case 4: // an attribute behind the name
    if (const std::size_t end = file.find_first_of(" \t\r\n/>", from + 1); isTag && end != std::string::npos)
      insert(end, kAttributes);
    break;
  case 5: // into a value
    if (const std::size_t quote = file.find_first_of("'\"", from); quote != std::string::npos)
      insert(quote + 1, kInTexts);
    break;
  case 6:
    insert(from + below(begins[behind] - from), kFaults);
    break;
  case 7:
  case 8: // across the seams
    file.insert(isTag ? begins[first + 1] : from, below(100), "x \t\n"[below(4)]);
    break;
  default:
    insert(isTag ? begins[first + 1] : from + below(begins[first + 1] - from), kInTexts);
  }
}

/// Some files that were accepted of late. The fuzzer keeps many that are refused, and to change those finds little.
/// They are no vectors: where a run keeps memory, the fuzzer takes the time to look for a leak.
class AcceptedFiles {
public:
  void add(std::string_view file) {
    if (file.size() <= kLongest)
      store(m_count++ % kMost, file);
  }
  bool has(std::string_view file) const {
    for (std::size_t i = 0; i < std::min(m_count, kMost); ++i) {
      if (at(i) == file)
        return true;
    }
    return false;
  }
  std::string_view any(std::size_t random) const {
    return m_count != 0 ? at(random % std::min(m_count, kMost)) : std::string_view();
  }

private:
  static constexpr std::size_t kMost = 256;
  static constexpr std::size_t kLongest = 4096;

  void store(std::size_t i, std::string_view file) { m_sizes[i] = file.copy(m_files[i].data(), kLongest); }
  std::string_view at(std::size_t i) const { return {m_files[i].data(), m_sizes[i]}; }

  std::size_t m_count = 0;
  std::array<std::size_t, kMost> m_sizes{};
  std::array<std::array<char, kLongest>, kMost> m_files{};
};
AcceptedFiles acceptedFiles;

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(unsigned char *data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  constexpr unsigned kBytesAlone = 6;
  std::minstd_rand random(seed);
  if (random() % kBytesAlone == 0)
    return LLVMFuzzerMutate(data, size, maxSize);
  std::string file(reinterpret_cast<const char *>(data), size);
  if (!acceptedFiles.has(file))
    file = acceptedFiles.any(random());
  for (std::size_t i = 0, count = 1 + random() % 3; i < count && !file.empty(); ++i)
    changeStructure(file, random);
  const std::size_t changed = std::min(file.size(), maxSize);
  std::memcpy(data, file.data(), changed);
  return changed;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
  static const Scratch scratch;
  static Share share;
  scratch.write("input.xml", {reinterpret_cast<const char *>(data), size});
  CoInitialize(nullptr);
  IXMLDOMDocumentPtr document;
  Require(IXMLDOMDocument::CreateInstance(document) == S_OK, "a tree can be made");
  IXMLDOMDocument *const owner = document;

  kestrune::platform::InputFile file(scratch.path("input.xml"));
  const std::optional<Tree> plain = ReadPlain(owner, file, PLAIN_WINDOW);
  ++share.all;
  if (!plain)
    return 0;
  ++share.accepted;
  acceptedFiles.add({reinterpret_cast<const char *>(data), size});
  file.rewind();
  MSXML::ParseError failure;
  const std::optional<Tree> judged = ReadByExpat(owner, file, failure);
  Require(judged.has_value(), "what the plain reader accepts is accepted by Expat", std::string(failure.reason.View()));
  requireSame(*plain, *judged);
  return 0;
}
