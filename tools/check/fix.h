#pragma once

#include "tools/check/hits.h"

#include <string>

/// The bytes of a file with all findings mended that have one answer; the same bytes if there are none.
std::string fixedBytes(const CheckedFile &file, Hits &hits);
