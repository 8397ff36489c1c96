#pragma once

#include "kestrune/platform/types.h"

// The error texts of the library, by id. Placeholders are printf style. For the failure code with low part n, from 1 to
// 9, text 120 + n states the same condition.

/// The two texts that the library itself raises exceptions with.
constexpr UINT IDS_NON_NUMERIC = 101;
constexpr UINT IDS_BAD_BOOLEAN = 132;
