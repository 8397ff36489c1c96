#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The white space between elements is the text that a save makes most often. One copy serves all documents.

namespace kestrune::dom {

/// A line feed and `count` tabs. `buffer` takes a text of unusual length.
std::string_view LayoutText(std::size_t count, std::string &buffer);

/// The shared copy of `text` where it is such a layout of usual length, else an empty view.
std::string_view SharedLayout(std::string_view text);

} // namespace kestrune::dom
