#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// A place in a file, both counted from 1; columns are characters.
struct Position {
  std::size_t line = 0;
  std::size_t column = 0;
};

/// Where everything stands in a file: all its elements and attributes with their places, in the order of the file. The
/// library's own tree has no places, so this is a reading of its own.
class Outline {
public:
  /// The number of an element in the order of the file. The root is 0.
  using Index = std::uint32_t;
  static constexpr Index kNone = ~Index{0};

  /// Why a text could not be read to its end.
  struct Failure {
    enum class Kind { kNone, kNotWellFormed, kBadBytes, kUnknownEncoding, kEmpty, kUndeclaredEntity };
    Kind kind = Kind::kNone;
    Position place;
    std::string reason;
  };

  /// An attribute of an element.
  struct Attribute {
    std::string_view name;
    std::string_view value; ///< As a parser gives it.
  };

  /// What a save does not keep, besides elements and attributes.
  struct Extras {
    bool byteOrderMark = false;
    bool carriageReturns = false;
    std::string encoding;                 ///< Empty for UTF-8.
    std::vector<std::uint32_t> remarks;   ///< The offsets of comments and processing instructions.
    std::optional<std::uint32_t> doctype; ///< The offset of a document type.
  };

  /// Reads a file of any encoding. If that fails, failure() says why, and what stands before the failure is there.
  explicit Outline(std::string_view bytes);

  const Failure &failure() const { return m_failure; }
  /// Takes note that the library refuses what was read here, at a place whose column counts bytes.
  void refuse(Failure failure);
  const Extras &extras() const { return m_extras; }

  /// The number of elements.
  Index size() const { return static_cast<Index>(m_elements.size()); }
  std::string_view name(Index element) const { return m_names[m_elements[element].name]; }
  /// The element around it; kNone for the root.
  Index parent(Index element) const { return m_elements[element].parent; }
  /// The number behind the last element inside it.
  Index end(Index element) const { return m_elements[element].end; }
  /// Whether it holds no other element.
  bool isLeaf(Index element) const { return m_elements[element].end == element + 1; }
  std::vector<Attribute> attributes(Index element) const;
  /// The attribute of exactly that name.
  std::optional<std::string_view> attribute(Index element, std::string_view name) const;

  /// All elements of that name inside `element`, at any depth, in order.
  std::span<const Index> below(Index element, std::string_view name) const;
  /// The first of them; kNone if there is none.
  Index first(Index element, std::string_view name) const;

  /// Where the `<` of an element stands.
  Position place(Index element) const { return at(m_elements[element].offset); }
  /// Where the text of an element begins, directly behind its tag.
  Position textPlace(Index element) const;
  /// Where the first character that is no white space stands directly in an element, and not in one inside it.
  std::optional<Position> inkPlace(Index element) const;
  /// Where the name, or the value, of an attribute begins. @{
  Position attributePlace(Index element, std::string_view name) const;
  Position attributeValuePlace(Index element, std::string_view name) const;
  ///@}
  /// The same as offsets in the text. @{
  std::size_t offset(Index element) const { return m_elements[element].offset; }
  std::size_t textOffset(Index element) const;
  std::size_t attributeOffset(Index element, std::string_view name) const {
    return attributeOffsets(element, name, nullptr).name;
  }
  std::size_t attributeValueOffset(Index element, std::string_view name) const {
    return attributeOffsets(element, name, nullptr).value;
  }
  ///@}
  /// The offset of a place.
  std::size_t offsetOf(Position place) const;
  /// The place of an offset in the text. Asking in rising order is cheap.
  Position at(std::size_t offset) const;

  /// The file as UTF-8, to which the offsets belong, without a byte order mark.
  std::string_view text() const { return m_text; }

private:
  struct Element {
    std::uint32_t name;
    Index parent;
    Index end;
    std::uint32_t offset;
    std::uint32_t firstAttribute;
    std::uint32_t ink; // the offset of the first text in it that is no white space; 0 if there is none
  };
  struct Value {
    std::uint32_t name;
    std::uint32_t begin;
    std::uint32_t length;
  };
  struct Parser;
  struct Offsets {
    std::size_t name = 0;
    std::size_t value = 0;
  };

  void decode(std::string_view bytes);
  std::uint32_t intern(std::string_view name);
  std::span<const Value> values(Index element) const;
  Offsets attributeOffsets(Index element, std::string_view name, std::size_t *tagEnd) const;

  std::string m_converted; // owns the text where the file is not UTF-8
  std::string_view m_text;
  Failure m_failure;
  Extras m_extras;
  std::vector<Element> m_elements;
  std::vector<Value> m_values;
  std::string m_pool; // the values of attributes
  std::vector<std::string> m_names;
  std::unordered_map<std::string, std::uint32_t> m_numbers; // of names
  std::vector<std::vector<Index>> m_byName;
  std::vector<std::size_t> m_lines; // the offset of each line
  mutable Offsets m_lastAttribute;  // the element, and where the attribute begins that was found last in it
  mutable struct {
    std::size_t offset = 0;
    std::size_t line = 1;
    std::size_t column = 1;
  } m_last; // the place that was asked for last
};
