#pragma once

#include <string_view>

// The style sheets and the script of a report, from report.css, picture.css and report.js, and the SHA-256 of what
// stands in the page.

extern const std::string_view kStyle;
extern const std::string_view kPictureStyle;
extern const std::string_view kScript;
extern const std::string_view kStyleHash;
extern const std::string_view kScriptHash;
