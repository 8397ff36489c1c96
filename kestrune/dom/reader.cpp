#include "kestrune/dom/reader.h"

#include "kestrune/dom/builder.h"
#include "kestrune/dom/dom.h"
#include "kestrune/dom/plain_reader.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/drives.h"
#include "kestrune/platform/system_text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <expat.h>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace kestrune::dom {

namespace {

constexpr std::size_t kReadSize = std::size_t{64} << 10;
constexpr std::size_t kLargestTag = std::size_t{1} << 30; // that Expat has room for

// Nested entities recurse inside Expat; limit their number.
constexpr int kMostNestingEntities = 1000;

constexpr const char *kUndefinedEntity = "undefined entity";

/// The name that iconv has for an encoding that a file declares. On Windows four names mean its own code pages, which
/// differ from the standards in a few characters such as `\` and `~`.
std::string iconvName(const std::string &declared) {
  static constexpr const char *kWindowsNames[][2] = {
      {"Shift_JIS", "CP932"}, {"GB2312", "CP936"}, {"EUC-KR", "CP949"}, {"Big5", "CP950"}};
  for (const auto &[name, page] : kWindowsNames) {
    if (platform::CompareNoCase(declared, name) == 0)
      return page;
  }
  return declared;
}

/// Why a file has to be read once more, converted to UTF-8.
struct Restart {
  std::string encoding;
  bool standalone;
};

/// Reads a file once into an empty tree, by Expat.
class Reader {
public:
  Reader(Tree &tree, platform::InputFile &file, MSXML::ParseError &failure, std::span<ElementPlace> places)
      : m_tree(tree), m_builder(tree), m_file(file), m_failure(failure), m_places(places) {}

  /// Reads the file as it is, or once more as `again` says. Returns false with either the failure or restart() set.
  bool read(const std::optional<Restart> &again) {
    const std::unique_ptr<XML_ParserStruct, ParserEnd> owner(XML_ParserCreate(again ? "UTF-8" : nullptr));
    if (!owner)
      throw std::bad_alloc();
    m_parser = owner.get();
    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, onStart, onEnd);
    XML_SetCharacterDataHandler(m_parser, onText);
    XML_SetXmlDeclHandler(m_parser, onDeclaration);
    XML_SetStartDoctypeDeclHandler(m_parser, onDoctype);
    XML_SetEntityDeclHandler(m_parser, onEntity);
    XML_SetParamEntityParsing(m_parser, XML_PARAM_ENTITY_PARSING_ALWAYS);
    XML_SetExternalEntityRefHandler(m_parser, onExternalEntity);
    XML_SetExternalEntityRefHandlerArg(m_parser, this);
    XML_SetUnknownEncodingHandler(m_parser, onUnknownEncoding, this);

    const bool done = again ? feedConverted(*again) : feedFile();
    if (m_error)
      std::rethrow_exception(m_error);
    if (!done && XML_GetErrorCode(m_parser) == XML_ERROR_NO_MEMORY)
      failForRoom();
    if (!done && !m_restart && m_failure.reason.IsEmpty())
      setFailure(parserFailure().c_str());
    m_builder.finish(m_inputSize);
    return done;
  }

  /// How the file has to be read instead.
  const std::optional<Restart> &restart() const { return m_restart; }

private:
  struct ParserEnd {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  bool feedFile() {
    while (true) {
      const std::size_t size = nextSize();
      void *const buffer = XML_GetBuffer(m_parser, static_cast<int>(size));
      if (buffer == nullptr)
        failForRoom();
      const long count = m_file.read(buffer, size);
      if (count < 0)
        return setUnreadable(m_file.error());
      if (m_inputSize == 0)
        m_hasMark = isMarked({static_cast<char *>(buffer), static_cast<std::size_t>(count)});
      m_inputSize += static_cast<std::size_t>(count);
      m_fedSize = m_inputSize;
      if (XML_ParseBuffer(m_parser, static_cast<int>(count), count == 0) != XML_STATUS_OK)
        return false;
      if (count == 0)
        return true;
      if (m_tree.root != nullptr)
        m_file.forget(); // behind the first tag nothing makes it restart
    }
  }

  static bool isMarked(std::string_view text) { return text.starts_with("\xEF\xBB\xBF"); }

  /// What the parser has got but not finished with: a long tag.
  std::size_t pendingSize() const {
    return m_fedSize - static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(m_parser), 0));
  }

  /// The parser scans a long tag from its start with each piece that it gets; pieces that grow with the tag keep that
  /// linear.
  std::size_t nextSize() const {
    const std::size_t pending = pendingSize();
    const std::size_t size = std::clamp(pending, kReadSize, std::size_t{1} << 28);
    return pending + size <= kLargestTag ? size : kReadSize;
  }

  bool feedConverted(const Restart &restart) {
    std::string bytes;
    m_file.rewind();
    m_file.forget();
    if (!m_file.readAll(bytes))
      return setUnreadable(m_file.error());
    std::string text;
    const std::string encoding = encodingOf(bytes, restart.encoding);
    if (!platform::ConvertEncoding(bytes, encoding.c_str(), "UTF-8", text))
      return setFailure(("the text is not in a known encoding: " + restart.encoding).c_str(), false);
    m_inputSize = text.size();
    if (restart.standalone)
      declareStandalone(text);
    m_hasMark = isMarked(text);
    while (m_fedSize < text.size()) {
      const std::size_t at = m_fedSize;
      const std::size_t count = std::min(nextSize(), text.size() - at);
      m_fedSize += count;
      if (XML_Parse(m_parser, text.data() + at, static_cast<int>(count), 0) != XML_STATUS_OK)
        return false;
    }
    return XML_Parse(m_parser, "", 0, 1) == XML_STATUS_OK;
  }

  /// The name of a file's encoding in iconv. Where the first bytes are UTF-16, what the file declares does not count.
  static std::string encodingOf(std::string_view bytes, const std::string &declared) {
    const std::string_view start = bytes.substr(0, 2);
    if (start == "\xFF\xFE" || start == std::string_view("<\0", 2))
      return "UTF-16LE";
    if (start == "\xFE\xFF" || start == std::string_view("\0<", 2))
      return "UTF-16BE";
    return declared.empty() ? "UTF-8" : iconvName(declared);
  }

  /// Replaces the file's declaration, and keeps the number of its lines, so that failures have the right place.
  static void declareStandalone(std::string &text) {
    const std::size_t start = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    const std::size_t end = text.compare(start, 5, "<?xml") == 0 ? text.find("?>", start) : std::string::npos;
    std::string declaration = "<?xml version='1.0' standalone='yes'";
    if (end != std::string::npos) {
      const auto lines = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n');
      declaration.append(static_cast<std::size_t>(lines), '\n');
    }
    text.replace(0, end != std::string::npos ? end + 2 : start, declaration + "?>");
  }

  /// Why the parser has stopped. It calls a file that is cut one without an element.
  std::string parserFailure() const {
    const XML_Error error = XML_GetErrorCode(m_parser);
    if (error != XML_ERROR_NO_ELEMENTS || m_builder.open() == nullptr)
      return XML_ErrorString(error);
    constexpr std::size_t kLongest = 200;
    const std::string_view name = m_tree.name(m_builder.open()->name());
    return "the file ends before " + (name.size() <= kLongest ? "'<" + std::string(name) + ">'" : "an element") +
           " is closed";
  }

  /// Where the parser is in its line, in characters from 1. The mark at the beginning of a file is not one of them.
  long column() const {
    const long column = static_cast<long>(XML_GetCurrentColumnNumber(m_parser)) + 1;
    return m_hasMark && column > 1 && XML_GetCurrentLineNumber(m_parser) == 1 ? column - 1 : column;
  }

  bool setFailure(const char *reason, bool inText = true) {
    m_failure.reason = reason;
    m_failure.line = inText ? static_cast<long>(XML_GetCurrentLineNumber(m_parser)) : 0;
    m_failure.column = inText ? column() : 0;
    return false;
  }

  /// Expat keeps a tag, with its attributes, in one piece of its buffer, and reports a lack of memory where that would
  /// be 1 GiB or more.
  [[noreturn]] void failForRoom() const {
    if (pendingSize() >= kLargestTag - kReadSize)
      Fail(E_FAIL, kTextTooLong);
    throw std::bad_alloc();
  }

  bool setUnreadable(int error) { return setFailure(platform::SystemText(error).c_str(), false); }

  void stop(const char *reason) {
    setFailure(reason);
    XML_StopParser(m_parser, XML_FALSE);
  }

  /// Runs a handler: no exception may pass through Expat, which is written in C.
  template <class Handler>
  static void guarded(void *self, Handler handler) {
    auto *const reader = static_cast<Reader *>(self);
    try {
      handler(*reader);
    } catch (...) {
      reader->m_error = std::current_exception();
      XML_StopParser(reader->m_parser, XML_FALSE);
    }
  }

  static void onStart(void *self, const char *name, const char **attributes) {
    guarded(self, [&](Reader &reader) { reader.start(name, attributes); });
  }

  static void onEnd(void *self, const char * /*name*/) {
    guarded(self, [](Reader &reader) { reader.m_builder.end(); });
  }

  static void onText(void *self, const char *text, int length) {
    guarded(self, [&](Reader &reader) { reader.m_builder.text({text, static_cast<std::size_t>(length)}); });
  }

  static void onDeclaration(void *self, const char * /*version*/, const char *encoding, int standalone) {
    guarded(self, [&](Reader &reader) {
      reader.m_encoding = encoding != nullptr ? encoding : "";
      reader.m_standalone = standalone == 1;
    });
  }

  /// Nothing outside the file is opened. A reference to an external text is a fault; external declarations are
  /// skipped. After that Expat would drop references to undeclared entities in silence, unless the document is declared
  /// as standalone, where each is a fault. So the file is read again as a standalone one.
  static int onExternalEntity(XML_Parser self, const char *context, const char *, const char *, const char *) {
    auto *const reader = static_cast<Reader *>(static_cast<void *>(self));
    if (context != nullptr)
      return XML_STATUS_ERROR;
    if (!reader->m_standalone)
      guarded(reader, [](Reader &r) { r.m_restart = Restart{r.m_encoding, true}; });
    return reader->m_standalone ? XML_STATUS_OK : XML_STATUS_ERROR;
  }

  /// With a parameter entity in the document type too, Expat drops references to undeclared entities, but those that
  /// the type declares are good. It reports the dropped ones in texts; those in attributes have to be looked for.
  static void onDoctype(void *self, const char *, const char *, const char *, int) {
    auto *const reader = static_cast<Reader *>(self);
    reader->m_hasDoctype = true;
    XML_SetSkippedEntityHandler(reader->m_parser, onSkippedEntity);
    XML_SetDefaultHandlerExpand(reader->m_parser, onMarkup);
  }

  static void onSkippedEntity(void *self, const char * /*name*/, int isParameter) {
    if (isParameter == 0)
      guarded(self, [](Reader &reader) { reader.stop(kUndefinedEntity); });
  }

  static void onMarkup(void *self, const char *text, int length) {
    guarded(self, [&](Reader &reader) {
      if (reader.m_collectsMarkup)
        reader.m_markup.append(text, static_cast<std::size_t>(length));
    });
  }

  /// Whether the tag that has just been read refers to an entity that is not declared.
  bool tagLosesText() {
    m_markup.clear();
    m_collectsMarkup = true;
    XML_DefaultCurrent(m_parser);
    m_collectsMarkup = false;
    for (std::size_t at = m_markup.find('&'); at != std::string::npos; at = m_markup.find('&', at + 1)) {
      const std::string name = m_markup.substr(at + 1, m_markup.find(';', at) - at - 1);
      if (!name.starts_with('#') && !m_entities.contains(name))
        return true;
    }
    return false;
  }

  static void onEntity(void *self, const char *name, int isParameter, const char *value, int length, const char *,
                       const char *, const char *, const char *) {
    if (isParameter == 0)
      guarded(self, [&](Reader &reader) { reader.m_entities.insert(name); });
    if (value == nullptr ||
        std::string_view(value, static_cast<std::size_t>(length)).find_first_of("&%") == std::string_view::npos)
      return;
    guarded(self, [](Reader &reader) {
      if (++reader.m_nestingEntities > kMostNestingEntities)
        reader.stop("too many entities that refer to others");
    });
  }

  static int onUnknownEncoding(void *self, const char *name, XML_Encoding * /*encoding*/) {
    guarded(self, [&](Reader &reader) { reader.m_restart = Restart{name, reader.m_standalone}; });
    return XML_STATUS_ERROR;
  }

  void start(const char *name, const char **attributes) {
    if (m_hasDoctype && tagLosesText())
      return stop(kUndefinedEntity);
    m_builder.start(m_tree.intern(name));
    if (!m_places.empty())
      notePlace();
    const int specified = XML_GetSpecifiedAttributeCount(m_parser);
    for (int i = 0; attributes[i] != nullptr; i += 2) {
      const std::string_view text = attributes[i + 1];
      if (i >= specified) {
        // A default of the document type is in the file once, but each element that takes it has a copy.
        m_defaulted += sizeof(Attribute) + text.size();
        if (m_defaulted > AmplificationBound(m_inputSize))
          return stop("the default attributes are too large");
      }
      m_builder.attribute(m_tree.intern(attributes[i]), text);
    }
  }

  /// Fills the places of the element that has just begun.
  void notePlace() {
    for (; !m_places.empty() && m_places.front().element == m_tree.elementCount(); m_places = m_places.subspan(1)) {
      m_places.front().line = static_cast<long>(XML_GetCurrentLineNumber(m_parser));
      m_places.front().column = column();
    }
  }

  Tree &m_tree;
  Builder m_builder;
  platform::InputFile &m_file;
  MSXML::ParseError &m_failure;
  std::span<ElementPlace> m_places; // those that are not found yet
  XML_Parser m_parser = nullptr;
  std::string m_encoding;
  bool m_standalone = false;
  std::size_t m_inputSize = 0;
  std::size_t m_fedSize = 0; // of it, what the parser has got
  std::size_t m_defaulted = 0;
  int m_nestingEntities = 0;
  bool m_hasMark = false; // a byte order mark at the beginning
  bool m_hasDoctype = false;
  std::set<std::string> m_entities = {"amp", "lt", "gt", "quot", "apos"};
  std::string m_markup;
  bool m_collectsMarkup = false;
  std::optional<Restart> m_restart;
  std::exception_ptr m_error;
};

} // namespace

std::optional<Tree> ReadByExpat(MSXML::IXMLDOMDocument *document, platform::InputFile &file, MSXML::ParseError &failure,
                                std::span<ElementPlace> places) {
  std::optional<Restart> again;
  do {
    std::optional<Tree> tree(std::in_place, document);
    Reader reader(*tree, file, failure, places);
    if (reader.read(again))
      return tree;
    again = reader.restart();
  } while (again);
  return std::nullopt;
}

namespace {

/// The document, which must be empty, without the failure of an earlier load.
Document &emptied(MSXML::IXMLDOMDocument *document) {
  Document &self = *Document::of(document);
  if (self.tree.root != nullptr || !self.tree.names.empty())
    Fail(E_FAIL, "the document is not empty");
  self.parseError = {};
  return self;
}

bool read(Document &document, platform::InputFile &file) {
  std::optional<Tree> tree;
  if (file.isSeekable()) {
    tree = ReadPlain(&document, file);
    if (!tree)
      file.rewind();
  }
  if (!tree)
    tree = ReadByExpat(&document, file, document.parseError);
  if (!tree)
    return false;
  document.tree = std::move(*tree);
  return true;
}

} // namespace

} // namespace kestrune::dom

bool MSXML::IXMLDOMDocument::load(const char *path) {
  using namespace kestrune::dom;
  Document &self = emptied(this);
  std::string hostPath;
  if (!kestrune::platform::ToHostPath(path, hostPath)) {
    self.parseError.reason = kestrune::platform::SystemText(ENOENT).c_str();
    return false;
  }
  kestrune::platform::InputFile file(hostPath);
  return read(self, file);
}

bool MSXML::IXMLDOMDocument::loadXML(std::string_view text) {
  using namespace kestrune::dom;
  auto file = kestrune::platform::InputFile::OfText(text);
  return read(emptied(this), file);
}
