#pragma once

#include "kestrune/dom/tree.h"
#include "kestrune/platform/input_file.h"

#include <optional>

namespace kestrune::dom {

/// Reads all of `file` by Expat into a tree of `document`. Without a tree `failure` has the place and the reason.
std::optional<Tree> ReadByExpat(MSXML::IXMLDOMDocument *document, platform::InputFile &file,
                                MSXML::ParseError &failure);

} // namespace kestrune::dom
