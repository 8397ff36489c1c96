#pragma once

#include <string>
#include <string_view>

/// Bytes as base64.
std::string base64(std::string_view bytes);

/// A text as gzip in base64, which browsers unpack by themselves.
std::string packed(std::string_view text);
