#pragma once

#include "kestrune/names/filename.h"

/// The name beside which a document looks for its companions, the files that a load takes in with it: `name` as it was
/// given, except that a host path is in drive form, and that a name which holds a `/` and no `\` is in its normal form
/// and, where it is relative, absolute from the current directory, so that its folder is known. Null counts as empty.
CFilename CompanionName(const char *name);

/// The folder in which files lie that take the place of standard ones: the value of $PFDT$, a macro or an environment
/// variable, in the same form. Empty when it has none.
CString ReplacementFolder();
