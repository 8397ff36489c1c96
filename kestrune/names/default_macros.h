#pragma once

#include "kestrune/export.h"

namespace kestrune {

/// Whether a setting of the registry gives the default macro of that name, in any case and with both `$`, its value.
KESTRUNE_API bool IsSetInRegistry(const char *macro);

} // namespace kestrune
