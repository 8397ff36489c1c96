#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"
#include "kestrune/platform/types.h"

#include <string>

struct stat;

// Drives and the current directory. Paths in the library have drives, but the host has one tree: C: is / unless it is
// mapped elsewhere, Z: is always /, and KESTRUNE_DRIVES="D=/mnt/d;E=/srv/e" maps more. The variable is read at each
// use, so a program may set it while it runs.

namespace kestrune::platform {

/// The drive form of a host path, which is a name that begins with exactly one `/`: the mapped drive whose folder is
/// its longest prefix (C wins a tie), followed by the rest with `\`. Any other name is returned unchanged.
CString ToDrivePath(const char *name);

/// Whether `name` is a relative name in host style: it contains a `/`, but neither `\`, `$` nor a drive, and does not
/// begin with `/`.
bool IsRelativeHostName(const char *name);

/// Finds the host path (UTF-8) for a name in any form: with or without a drive, relative, with `/` or `\`. `..` never
/// leads above the drive's folder. A component that does not exist is looked up ignoring ASCII case; if that finds
/// nothing, it is kept, so that it can be created. Returns false for a network name, an unmapped drive or an empty
/// name. With `status`, returns it with symbolic links followed, and false if nothing is there.
KESTRUNE_API bool ToHostPath(const char *name, std::string &hostPath, struct stat *status = nullptr);

} // namespace kestrune::platform

/// The number of the current drive, 1 for A: the mapped drive whose folder is the longest prefix of the current
/// directory.
int _getdrive();

/// Writes the current directory of `drive` (0: the current drive), in drive form, to a buffer of `size` bytes and
/// returns the buffer, or null if it does not fit. The current directory of any other drive is its root.
char *_getdcwd(int drive, char *buffer, int size);

/// Writes the current directory, in drive form, to a buffer of `size` bytes and returns its length. If the buffer is
/// too small, returns the required size and leaves it unchanged. Returns 0 on failure.
DWORD GetCurrentDirectoryA(DWORD size, char *buffer);
