#pragma once

#include "kestrune/errors/result_codes.h"
#include "kestrune/export.h"

#include <string>

/// \file
/// Result codes in words.

namespace kestrune {

/// What a result means, such as "the file does not exist, or is a directory". A code that the library does not have
/// gives its 32 bits, such as "0x80070057". The words may change, codes and names do not.
KESTRUNE_API std::string ResultText(long result);

/// The name of a result, such as "KRX_E_FILE_NOT_FOUND", or its 32 bits.
KESTRUNE_API std::string ResultName(long result);

} // namespace kestrune
