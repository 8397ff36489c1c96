#include "tools/commands.h"
#include "tools/meanings.h"
#include "tools/messages.h"
#include "tools/shape.h"

#include <algorithm>
#include <iostream>
#include <set>

namespace {

// Patterns as XML schemas have them. They let pass what `check` has no complaint about, but for two things that
// patterns say badly: the last digit of the range, and keys that differ in case alone.
constexpr const char *kUnassignedType = "Unassigned";
constexpr const char *kNothingType = "Nothing";

/// A word in any case, in which blanks may stand where `between` lets them.
std::string anyCase(std::string_view word, std::string_view between = "") {
  std::string pattern;
  for (const char letter : word) {
    pattern += pattern.empty() ? "" : between;
    pattern += {'[', letter, static_cast<char>(letter - 'A' + 'a'), ']'};
  }
  return pattern;
}

/// The type of the texts that are read in one way.
struct TextType {
  std::string name; ///< Which editors and validators show; empty for any text.
  std::string pattern;
  std::vector<std::string> words; ///< Which editors offer.
};

TextType typeOf(Reading reading) {
  const std::string sign = R"(\s*[+\-]?)";
  const std::string decimalOrOctal = "[1-9][0-9]{0,9}|0[0-7]*";
  const std::string hex = "0[xX]0*[0-7]?[0-9a-fA-F]{1,7}";
  const std::string unsignedHex = "0[xX]0*[0-9a-fA-F]{1,8}";
  const std::string lowestHex = R"(|\s*-0[xX]0*80000000)";
  const std::string modelNumber = "0|-?[1-9][0-9]{0,9}";
  const std::string blanks = R"(\s*)";
  switch (reading) {
  case Reading::kInt:
    return {"Number", "(" + sign + "(" + decimalOrOctal + "|" + hex + ")" + lowestHex + ")?", {}};
  case Reading::kUnsigned:
    return {"UnsignedNumber", "(" + sign + "(" + decimalOrOctal + "|" + unsignedHex + "))?", {}};
  case Reading::kDecimal:
    return {"DecimalNumber", "(" + sign + "0*[0-9]{1,10})?", {}};
  case Reading::kDouble:
    return {"RealNumber", "(" + sign + R"((([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+\-]?[0-9]+)?|0[xX][0-9a-fA-F]+))?)", {}};
  case Reading::kHex:
    return {"HexNumber", "(" + sign + "(" + hex + "|0*[0-7]|[89])" + lowestHex + ")?", {}};
  case Reading::kHexUnsigned:
    return {"UnsignedHexNumber", "(" + sign + "(" + unsignedHex + "|0*[0-7]|[89]))?", {}};
  case Reading::kTruth:
    return {"TruthValue", anyCase("TRUE") + "|" + anyCase("FALSE"), {"TRUE", "FALSE"}};
  case Reading::kTruthWord:
    return {"TruthWord",
            blanks + "(1|0|" + anyCase("TRUE", blanks) + "|" + anyCase("FALSE", blanks) + "|" + anyCase("YES", blanks) +
                "|" + anyCase("NO", blanks) + ")" + blanks,
            {"TRUE", "FALSE", "True", "False"}};
  case Reading::kHexDigits:
    return {"HexDigits", "(0[xX][0-9a-fA-F]*)?", {}};
  case Reading::kDeviceNumber:
    return {"DeviceNumber", sign + R"([0-9]{1,10}(\.)" + sign + "[0-9]{1,10})?", {}};
  case Reading::kModelNumber:
    return {"ModelNumber", modelNumber, {}};
  case Reading::kModelNumbers:
    return {"ModelNumbers", "(" + modelNumber + ")?([;,\\n](" + modelNumber + ")?)*", {}};
  default:
    return {};
  }
}

/// Writes the schema of one format version.
class Schema {
public:
  Schema(const Kind &kind, int version) : m_kind(kind), m_version(version) {}

  std::string text() {
    const RecordShape &root = shapeOf(m_kind);
    open("<xs:element name=\"" + root.tag + "\">");
    document(std::string("The root of a file with ") + m_kind.name + ", format version " + std::to_string(m_version) +
             ".");
    record(root, root.tag);
    close("</xs:element>");
    const std::string body = std::move(m_text);
    m_text.clear();
    for (const Reading reading : m_readings)
      type(typeOf(reading));
    if (m_usesUnassigned)
      type({kUnassignedType, kUnassignedType, {}});
    if (m_usesNothing)
      type({kNothingType, R"(\s*)", {}});
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\">\n" +
           body + m_text + "</xs:schema>\n";
  }

private:
  void line(const std::string &text) { m_text += std::string(2 * m_depth, ' ') + text + '\n'; }
  void open(const std::string &tag) {
    line(tag);
    ++m_depth;
  }
  void close(const std::string &tag) {
    --m_depth;
    line(tag);
  }

  void document(std::string_view sentence) {
    std::string escaped;
    for (const char character : sentence) {
      if (character == '&' || character == '<')
        escaped += character == '&' ? "&amp;" : "&lt;";
      else
        escaped += character;
    }
    line("<xs:annotation><xs:documentation>" + escaped + "</xs:documentation></xs:annotation>");
  }

  bool isThere(const MemberShape &member) const { return member.version <= m_version; }

  // The depth of what follows is that of the classes.

  /// The members of a record, the elements in any order.
  void record(const RecordShape &shape, const std::string &road) {
    const bool hasElements = std::any_of(shape.members.begin(), shape.members.end(), [&](const MemberShape &member) {
      return isThere(member) && !member.isAttribute();
    });
    open("<xs:complexType>");
    if (hasElements) {
      open("<xs:all>");
      for (const MemberShape &member : shape.members) {
        if (isThere(member) && !member.isAttribute())
          element(shape, member, road);
      }
      close("</xs:all>");
      attributes(shape);
    } else { // without elements, only the content of a text may hold a line end
      m_usesNothing = true;
      open("<xs:simpleContent>");
      open(std::string("<xs:extension base=\"") + kNothingType + "\">");
      attributes(shape);
      close("</xs:extension>");
      close("</xs:simpleContent>");
    }
    close("</xs:complexType>");
  }

  void attributes(const RecordShape &shape) {
    for (const MemberShape &member : shape.members) {
      if (!isThere(member) || !member.isAttribute())
        continue;
      const bool isKey = member.tag == shape.keyAttribute;
      open("<xs:attribute name=\"" + member.tag + "\"" + (isKey ? " use=\"required\">" : ">"));
      value(shape, member, isKey);
      close("</xs:attribute>");
    }
  }

  void element(const RecordShape &shape, const MemberShape &member, const std::string &road) {
    open("<xs:element name=\"" + member.tag + "\" minOccurs=\"0\">");
    if (member.isValue()) {
      value(shape, member, false);
    } else {
      const Meaning *const meaning = findMeaning(shape.tag, member.tag);
      document(meaning != nullptr ? meaning->sentence : "");
      if (member.isCollection())
        items(member, road + "." + member.tag);
      else
        record(*member.folder, road + "." + member.tag);
    }
    close("</xs:element>");
  }

  void items(const MemberShape &collection, const std::string &road) {
    const RecordShape &item = *collection.folder;
    open("<xs:complexType>");
    open("<xs:sequence>");
    open("<xs:element name=\"" + item.tag + "\" minOccurs=\"0\" maxOccurs=\"unbounded\">");
    record(item, road + "." + item.tag);
    close("</xs:element>");
    close("</xs:sequence>");
    close("</xs:complexType>");
    if (!isKeyOfItem(item))
      return;
    open("<xs:key name=\"" + road + "\">");
    line("<xs:selector xpath=\"" + item.tag + "\"/>");
    line("<xs:field xpath=\"@" + item.keyAttribute + "\"/>");
    close("</xs:key>");
  }

  /// Whether a collection refuses a second item with the text of the key attribute. Chip models are found by another
  /// member, and two of one name are read.
  static bool isKeyOfItem(const RecordShape &item) {
    return item.member("Key") == nullptr || item.keyAttribute == "Key";
  }

  /// What a text is, as it is read.
  void value(const RecordShape &shape, const MemberShape &member, bool isKey) {
    const Meaning *const meaning = findMeaning(shape.tag, member.tag);
    const TextType wanted = meaning != nullptr ? typeOf(meaning->reading) : TextType();
    const std::string base = wanted.name.empty() ? "xs:string" : wanted.name;
    if (meaning != nullptr && !wanted.name.empty())
      m_readings.insert(meaning->reading);
    document(meaning != nullptr ? meaning->sentence : "");
    open("<xs:simpleType>");
    if (isKey) {
      line("<xs:restriction base=\"" + base + "\"><xs:minLength value=\"1\"/></xs:restriction>");
    } else if (!wanted.name.empty() && meaning->mayBeUnassigned) {
      m_usesUnassigned = true;
      line("<xs:union memberTypes=\"" + base + " " + kUnassignedType + "\"/>");
    } else {
      line("<xs:restriction base=\"" + base + "\"/>");
    }
    close("</xs:simpleType>");
  }

  void type(const TextType &type) {
    open("<xs:simpleType name=\"" + type.name + "\">");
    const std::string pattern =
        "<xs:restriction base=\"xs:string\"><xs:pattern value=\"" + type.pattern + "\"/></xs:restriction>";
    if (type.words.empty()) {
      line(pattern);
    } else {
      open("<xs:union>");
      open("<xs:simpleType>");
      open("<xs:restriction base=\"xs:string\">");
      for (const std::string &word : type.words)
        line("<xs:enumeration value=\"" + word + "\"/>");
      close("</xs:restriction>");
      close("</xs:simpleType>");
      line("<xs:simpleType>" + pattern + "</xs:simpleType>");
      close("</xs:union>");
    }
    close("</xs:simpleType>");
  }

  const Kind &m_kind;
  int m_version;
  std::string m_text;
  std::size_t m_depth = 1;
  std::set<Reading> m_readings; // that need a type
  bool m_usesUnassigned = false;
  bool m_usesNothing = false;
};

int printSchema(const std::string &root, int version) {
  const Kind *const kind = kindOfRoot(root);
  if (kind == nullptr) {
    std::vector<std::string> roots;
    for (const Kind &known : allKinds())
      roots.emplace_back(known.root);
    throw CouldNotWork(notFound("schema", root, roots));
  }
  if (version < 0 || version > kind->newest())
    throw CouldNotWork(std::string(kind->root) + " has no version " + std::to_string(version) + "; the newest is " +
                       std::to_string(kind->newest()));
  std::cout << Schema(*kind, version == 0 ? kind->newest() : version).text();
  return kYes;
}

} // namespace

void addSchemaCommand(CLI::App &app, Run &run) {
  Command command(app, run, "schema",
                  "Print an XML schema of a kind of file, with which editors complete, explain and check");
  const auto root = std::make_shared<std::string>();
  const auto version = std::make_shared<int>(0);
  command.option("KIND", *root, "Root of the file: VorlanTyp, StdXcvr, SPIDData or KestruneUI").required();
  command.option("--to-version", *version, "Leave out the members of later format versions").called("N").positive();
  command.examples({"kestrune-data schema VorlanTyp >vorlan.xsd",
                    "kestrune-data schema StdXcvr --to-version 2 | xmllint --noout --schema /dev/stdin StdXcvr.xml"});
  command.runs([root, version] { return printSchema(*root, *version); });
}
