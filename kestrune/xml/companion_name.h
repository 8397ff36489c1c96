#pragma once

#include "kestrune/names/filename.h"

/// The name beside which a document looks for its companions, the files that a load takes in with it: `name` as it was
/// given, except that a host path is in drive form, and that a relative name in host style is made absolute from the
/// current directory, so that its folder can be told. Null counts as empty.
CFilename CompanionName(const char *name);
