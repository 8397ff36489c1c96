#pragma once

#include "kestrune/dom/tree.h"
#include "kestrune/platform/input_file.h"

#include <cstdint>
#include <optional>
#include <span>

namespace kestrune::dom {

/// Where the start tag of an element stands in its file.
struct ElementPlace {
  std::uint32_t element = 0; // its number in document order
  long line = 0;             // from 1; 0 where it is not found
  long column = 0;
};

/// Reads all of `file` by Expat into a tree of `document`. Without a tree `failure` has the place and the reason. Finds
/// `places` too, which are in ascending order of their elements.
std::optional<Tree> ReadByExpat(MSXML::IXMLDOMDocument *document, platform::InputFile &file, MSXML::ParseError &failure,
                                std::span<ElementPlace> places = {});

} // namespace kestrune::dom
