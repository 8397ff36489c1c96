#pragma once

#include "kestrune/platform/types.h"

// The error texts of the library, by id, with printf-style placeholders. For a failure code with low part n from 1 to
// 9, text 120 + n describes the same condition.

/// The two texts with which the library itself raises exceptions.
constexpr UINT IDS_NON_NUMERIC = 101;
constexpr UINT IDS_BAD_BOOLEAN = 132;
