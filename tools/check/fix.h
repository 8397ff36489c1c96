#pragma once

#include "tools/check/hits.h"

#include <string>

/// The bytes of a file with all findings mended that have one answer; the same bytes if there are none.
std::string fixedBytes(const CheckedFile &file, Hits &hits);

/// The lines that differ, as "-" and "+" lines behind a heading for each place.
std::string lineDiff(const std::string &name, const std::string &before, const std::string &after);
