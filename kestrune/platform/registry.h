#pragma once

#include "kestrune/platform/types.h"

// The registry, read-only: text files in the .reg export format. HKEY_LOCAL_MACHINE is /etc/kestrune/registry.reg,
// HKEY_CURRENT_USER is $XDG_CONFIG_HOME/kestrune/registry.reg (or ~/.config/kestrune/registry.reg), and
// KESTRUNE_REGISTRY=/path/file.reg replaces both. A key that is missing below SOFTWARE is also looked up below
// SOFTWARE\WOW6432Node. The file is read each time a key is opened; a file that is unreadable has no keys.

struct RegistryKey;
using HKEY = RegistryKey *;

extern const HKEY HKEY_LOCAL_MACHINE;
extern const HKEY HKEY_CURRENT_USER;
constexpr DWORD KEY_READ = 0x20019;

constexpr long ERROR_SUCCESS = 0;
constexpr long ERROR_FILE_NOT_FOUND = 2;
constexpr long ERROR_INVALID_HANDLE = 6;
constexpr long ERROR_MORE_DATA = 234;

/// Opens a key below one of the two roots. The caller closes `*result`. Throws std::bad_alloc if the file does not fit
/// in memory.
long RegOpenKeyExA(HKEY root, const char *subKey, DWORD options, DWORD access, HKEY *result);

/// Reads a value as text up to its first zero, in the code page, with its terminator. `*size` is the size of the buffer
/// and becomes the size of the text with its terminator. Returns ERROR_MORE_DATA, and writes nothing, if that does not
/// fit, and ERROR_FILE_NOT_FOUND for a dword or a missing value. `type` may be null and is not written.
long RegQueryValueExA(HKEY key, const char *name, DWORD *reserved, DWORD *type, unsigned char *buffer, DWORD *size);

long RegCloseKey(HKEY key);
