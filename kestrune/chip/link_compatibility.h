#pragma once

#include "kestrune/export.h"

/// \file
/// Link compatibility of two chip models, by their numbers.

/// Returns whether chip model number `other` is link compatible with chip model number `model`: whether the list of
/// `model` in the standard chip data file, $StdVorlanTyp$, contains `other` in plain decimal form. The opposite
/// direction is a separate question. The file is read at each call, except that a model is always compatible with
/// itself. Returns false when the file or the last of its add-ons cannot be read, for instance on a thread without COM.
extern "C" KESTRUNE_API bool isLinkCompatible(int model, int other);
