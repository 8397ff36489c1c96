#include "kestrune/dom/dom.h"
#include "kestrune/dom/tree.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/drives.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <expat.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kestrune::dom {

namespace {

constexpr std::size_t kReadSize = std::size_t{64} << 10;

constexpr const char *kTooLong = "a text is too long";

// Entities that stand in each other are expanded one inside the other, so that their number bounds the nesting.
constexpr int kMostNestingEntities = 1000;

class InputFile {
public:
  explicit InputFile(const std::string &path)
      : m_handle(::open(path.c_str(), O_RDONLY | O_CLOEXEC)), m_error(m_handle < 0 ? errno : 0) {}
  InputFile(const InputFile &) = delete;
  InputFile &operator=(const InputFile &) = delete;
  ~InputFile() {
    if (m_handle >= 0)
      ::close(m_handle);
  }

  /// The bytes read, 0 at the end, or -1 with the reason in errno.
  ssize_t read(void *buffer, std::size_t size) const {
    ssize_t count = -1;
    if (m_error != 0) {
      errno = m_error;
      return count;
    }
    do
      count = ::read(m_handle, buffer, size);
    while (count < 0 && errno == EINTR);
    return count;
  }

  bool readAll(std::string &bytes) const {
    while (true) {
      const std::size_t size = bytes.size();
      bytes.resize(size + kReadSize);
      const ssize_t count = read(bytes.data() + size, kReadSize);
      bytes.resize(size + static_cast<std::size_t>(count > 0 ? count : 0));
      if (count <= 0)
        return count == 0;
    }
  }

private:
  int m_handle;
  int m_error;
};

/// The name that iconv has for an encoding that a file declares. Windows takes four names for its own code pages, which
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

} // namespace

/// Fills a document from one file.
class Reader {
public:
  Reader(MSXML::IXMLDOMDocument &document, const std::string &path) : m_document(document), m_path(path) {}

  bool read() {
    bool wellFormed = parse(nullptr);
    while (m_restart) {
      // What the parser cannot take as it stands is turned into UTF-8 and read from the start.
      const Restart restart = *std::exchange(m_restart, std::nullopt);
      wellFormed = parse(&restart);
    }
    if (!wellFormed)
      clear();
    return wellFormed;
  }

private:
  using Element = MSXML::IXMLDOMElement;

  /// Why a file has to be read once more, in another form.
  struct Restart {
    std::string encoding;
    bool standalone;
  };

  struct ParserEnd {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  bool parse(const Restart *restart) {
    clear();
    const std::unique_ptr<XML_ParserStruct, ParserEnd> owner(XML_ParserCreate(restart != nullptr ? "UTF-8" : nullptr));
    if (!owner)
      throw std::bad_alloc();
    m_parser = owner.get();
    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, onStart, onEnd);
    XML_SetCharacterDataHandler(m_parser, onText);
    XML_SetXmlDeclHandler(m_parser, onDeclaration);
    XML_SetEntityDeclHandler(m_parser, onEntity);
    XML_SetParamEntityParsing(m_parser, XML_PARAM_ENTITY_PARSING_ALWAYS);
    XML_SetExternalEntityRefHandler(m_parser, onExternalEntity);
    XML_SetExternalEntityRefHandlerArg(m_parser, this);
    XML_SetUnknownEncodingHandler(m_parser, onUnknownEncoding, this);

    const bool done = restart != nullptr ? feedConverted(*restart) : feedFile();
    if (m_error)
      std::rethrow_exception(m_error);
    if (!done && XML_GetErrorCode(m_parser) == XML_ERROR_NO_MEMORY)
      failForRoom();
    if (!done && !m_restart && m_document.m_parseError.reason.IsEmpty())
      setError(XML_ErrorString(XML_GetErrorCode(m_parser)));
    m_document.m_tree->m_bound = AmplificationBound(m_inputSize);
    m_document.m_tree->m_indexed = true;
    return done;
  }

  bool feedFile() {
    const InputFile file(m_path);
    while (true) {
      void *const buffer = XML_GetBuffer(m_parser, static_cast<int>(kReadSize));
      if (buffer == nullptr)
        failForRoom();
      const ssize_t count = file.read(buffer, kReadSize);
      if (count < 0)
        return setUnreadable();
      m_inputSize += static_cast<std::size_t>(count);
      if (XML_ParseBuffer(m_parser, static_cast<int>(count), count == 0) != XML_STATUS_OK)
        return false;
      if (count == 0)
        return true;
    }
  }

  bool feedConverted(const Restart &restart) {
    std::string bytes;
    if (!InputFile(m_path).readAll(bytes))
      return setUnreadable();
    std::string text;
    const std::string encoding = encodingOf(bytes, restart.encoding);
    if (!platform::ConvertEncoding(bytes, encoding.c_str(), "UTF-8", text))
      return setError(("the text is not in a known encoding: " + restart.encoding).c_str(), false);
    m_inputSize = text.size();
    if (restart.standalone)
      declareStandalone(text);
    for (std::size_t at = 0; at < text.size(); at += kReadSize) {
      const std::size_t count = std::min(kReadSize, text.size() - at);
      if (XML_Parse(m_parser, text.data() + at, static_cast<int>(count), 0) != XML_STATUS_OK)
        return false;
    }
    return XML_Parse(m_parser, "", 0, 1) == XML_STATUS_OK;
  }

  /// The encoding of a file by iconv's name: its first bytes tell UTF-16, whatever it declares.
  static std::string encodingOf(std::string_view bytes, const std::string &declared) {
    const std::string_view start = bytes.substr(0, 2);
    if (start == "\xFF\xFE" || start == std::string_view("<\0", 2))
      return "UTF-16LE";
    if (start == "\xFE\xFF" || start == std::string_view("\0<", 2))
      return "UTF-16BE";
    return declared.empty() ? "UTF-8" : iconvName(declared);
  }

  /// Puts a declaration in place of the file's own that keeps the lines as they are.
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

  bool setError(const char *reason, bool inText = true) {
    MSXML::ParseError &error = m_document.m_parseError;
    error.reason = reason;
    error.line = inText ? static_cast<long>(XML_GetCurrentLineNumber(m_parser)) : 0;
    error.column = inText ? static_cast<long>(XML_GetCurrentColumnNumber(m_parser)) + 1 : 0;
    return false;
  }

  /// The parser keeps a tag, with its attributes, in one piece of its buffer, and calls it a lack of memory where that
  /// would be 1 GiB or more.
  [[noreturn]] void failForRoom() const {
    const auto pending =
        m_inputSize - static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(m_parser), 0));
    if (pending >= (std::size_t{1} << 30) - kReadSize)
      throw _com_error(E_FAIL, kTooLong);
    throw std::bad_alloc();
  }

  bool setUnreadable() { return setError(std::generic_category().message(errno).c_str(), false); }

  void clear() {
    m_document.m_tree = std::make_unique<Tree>(&m_document);
    m_document.m_root = nullptr;
    m_current = nullptr;
    m_pending.clear();
    m_inputSize = 0;
    m_defaulted = 0;
    m_nestingEntities = 0;
  }

  void stop(const char *reason) {
    setError(reason);
    XML_StopParser(m_parser, XML_FALSE);
  }

  /// Runs a handler: no exception may pass through the parser.
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
    guarded(self, [](Reader &reader) { reader.end(); });
  }

  static void onText(void *self, const char *text, int length) {
    guarded(self, [&](Reader &reader) {
      if (reader.m_pending.size() > Tree::kLongestText)
        throw _com_error(E_FAIL, kTooLong);
      reader.m_pending.append(text, static_cast<std::size_t>(length));
    });
  }

  static void onDeclaration(void *self, const char * /*version*/, const char *encoding, int standalone) {
    guarded(self, [&](Reader &reader) {
      reader.m_encoding = encoding != nullptr ? encoding : "";
      reader.m_standalone = standalone == 1;
    });
  }

  /// Nothing outside the file is opened. A text that stands there is not passed over in silence; declarations are, but
  /// then, in a document that does not say that it stands alone, the parser would drop a reference to an entity that
  /// nobody declared: such a document is read as one that stands alone, where each is a fault.
  static int onExternalEntity(XML_Parser self, const char *context, const char *, const char *, const char *) {
    auto *const reader = static_cast<Reader *>(static_cast<void *>(self));
    if (context != nullptr)
      return XML_STATUS_ERROR;
    if (!reader->m_standalone)
      guarded(reader, [](Reader &r) { r.m_restart = Restart{r.m_encoding, true}; });
    return reader->m_standalone ? XML_STATUS_OK : XML_STATUS_ERROR;
  }

  static void onEntity(void *self, const char * /*name*/, int /*isParameter*/, const char *value, int length,
                       const char *, const char *, const char *, const char *) {
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
    Tree &tree = *m_document.m_tree;
    flush(false);
    const std::uint32_t number = tree.intern(name);
    Element *const element = tree.newElement(number);
    element->m_order = ++tree.m_elementCount;
    tree.m_names[number].elements.push_back(element);
    if (m_current != nullptr)
      Tree::link(m_current, element);
    else
      m_document.m_root = element;
    m_current = element;

    const int specified = XML_GetSpecifiedAttributeCount(m_parser);
    Element::Attribute **place = &element->m_attributes;
    for (int i = 0; attributes[i] != nullptr; i += 2) {
      const std::string_view text = attributes[i + 1];
      if (i >= specified) {
        // A default of the document type costs the file nothing, but each element that takes it has it.
        m_defaulted += sizeof(Element::Attribute) + text.size();
        if (m_defaulted > AmplificationBound(m_inputSize))
          return stop("the default attributes are too large");
      }
      *place = tree.newAttribute(tree.intern(attributes[i]));
      Tree::setText(**place, tree.keep(text));
      place = &(*place)->next;
    }
  }

  void end() {
    flush(true);
    m_current->m_lastOrder = m_document.m_tree->m_elementCount;
    m_current = m_current->m_parent;
  }

  /// Puts the text that was met since the last tag where it belongs: into the element, when it ends and has no
  /// children, or between its children, unless it is only layout there.
  void flush(bool atEnd) {
    if (m_pending.empty() || m_current == nullptr)
      return;
    Tree &tree = *m_document.m_tree;
    if (atEnd && m_current->m_first == nullptr) {
      Tree::setText(*m_current, tree.keep(m_pending));
    } else if (m_pending.find_first_not_of(" \t\r\n") != std::string::npos) {
      MSXML::IXMLDOMNode *const text = tree.newNode(MSXML::IXMLDOMNode::Kind::Text, 0);
      Tree::setText(*text, tree.keep(m_pending));
      Tree::link(m_current, text);
    }
    m_pending.clear();
  }

  MSXML::IXMLDOMDocument &m_document;
  const std::string &m_path;
  XML_Parser m_parser = nullptr;
  Element *m_current = nullptr;
  std::string m_pending;
  std::string m_encoding;
  bool m_standalone = false;
  std::size_t m_inputSize = 0;
  std::size_t m_defaulted = 0;
  int m_nestingEntities = 0;
  std::optional<Restart> m_restart;
  std::exception_ptr m_error;
};

} // namespace kestrune::dom

bool MSXML::IXMLDOMDocument::load(const char *path) {
  if (m_root != nullptr || m_tree->nameCount() != 0)
    throw _com_error(E_FAIL, "the document is not empty");
  m_parseError = {};
  std::string hostPath;
  if (!kestrune::platform::ToHostPath(path, hostPath)) {
    m_parseError.reason = std::generic_category().message(ENOENT).c_str();
    return false;
  }
  return kestrune::dom::Reader(*this, hostPath).read();
}
