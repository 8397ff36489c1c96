#pragma once

#include "kestrune/platform/c_string.h"
#include "kestrune/platform/types.h"

#include <string>

// Drives and the current directory. The library speaks paths with drives, the host has one tree: C: is / unless it is
// mapped elsewhere, Z: is always /, and KESTRUNE_DRIVES="D=/mnt/d;E=/srv/e" maps more. The variable is looked at on
// each use, so a program may set it while it runs.

namespace kestrune::platform {

/// The drive form of a host path: a name that begins with exactly one `/` becomes the mapped drive whose folder is its
/// longest prefix (C wins a tie), and the rest with `\`. Any other name comes back unchanged.
CString ToDrivePath(const char *name);

/// Whether `name` is a relative name in host style: it holds a `/`, and neither `\`, `$` nor a drive, and does not
/// begin with `/`.
bool IsRelativeHostName(const char *name);

/// The host's path (UTF-8) for a name in any form: with or without drive, relative, `/` or `\`. `..` never leads above
/// the drive's folder. A component that does not exist as it stands is looked for without regard to ASCII case; what is
/// not found so is kept as it stands, so that it can be created. Returns false for a network name, an unmapped drive or
/// an empty name.
bool ToHostPath(const char *name, std::string &hostPath);

} // namespace kestrune::platform

/// The number of the current drive, 1 for A: the mapped drive whose folder is the longest prefix of the current
/// directory.
int _getdrive();

/// The current directory of drive `drive` (0: the current drive), in drive form, in a buffer of `size` bytes: null when
/// it does not fit. Another drive than the current one is at its root.
char *_getdcwd(int drive, char *buffer, int size);

/// The current directory in drive form. Returns its length; a buffer of `size` bytes that is too small is left alone,
/// and the size that is needed comes back; 0 on failure.
DWORD GetCurrentDirectoryA(DWORD size, char *buffer);
