#pragma once

#include "kestrune/dom/tree.h"
#include "kestrune/platform/input_file.h"

#include <cstddef>
#include <optional>

// Reads the files that are written every day, several times faster than Expat does. It may only say yes: what is
// unusual or wrong is left to Expat, which alone judges and reports. So there are no positions and no reasons here.

namespace kestrune::dom {

constexpr std::size_t kPlainWindow = std::size_t{64} << 10;

/// Reads all of `file`, which must be able to rewind, into a tree of `document`, where it is well-formed UTF-8 without
/// a document type, with ASCII names and at most a hundred attributes in a tag. Else, and where a read fails, there is
/// no tree. `window` is how many bytes are looked at together at first.
std::optional<Tree> ReadPlain(MSXML::IXMLDOMDocument *document, platform::InputFile &file,
                              std::size_t window = kPlainWindow);

} // namespace kestrune::dom
