#pragma once

#include "kestrune/export.h"

/// Whether the chip model of number `other` is link compatible with that of number `model`, by the table of the
/// standard chip data file, $StdVorlanTyp$, which is read anew for each question: `other` has to stand, in the plain
/// decimal form of the number, in the list of `model`. The relation has a direction. A model is compatible with itself,
/// without a look at the file. False when the file or the last of its add-ons cannot be read, as on a thread without
/// COM.
extern "C" KESTRUNE_API bool isLinkCompatible(int model, int other);
