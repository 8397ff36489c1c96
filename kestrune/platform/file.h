#pragma once

#include "kestrune/platform/c_string.h"
#include "kestrune/platform/exceptions.h"
#include "kestrune/platform/types.h"

#include <cstdint>

// Files and their attributes. Names may have any form; `drives.h` describes where they are on the host.

constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x1;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

/// The attributes of a file or directory, or INVALID_FILE_ATTRIBUTES if nothing is there (a symbolic link to nothing
/// counts as nothing). Read-only means that no write bit is set.
DWORD GetFileAttributesA(const char *name);

/// Sets or clears the read-only attribute: setting it clears all three write bits, clearing it sets the owner's again.
/// Other attributes are ignored. Returns 1, or 0 on failure.
int SetFileAttributesA(const char *name, DWORD attributes);

/// Always 0: there are no short names here.
DWORD GetShortPathNameA(const char *name, char *buffer, DWORD size);

/// Makes one directory. Returns 0, or -1 on failure.
int _mkdir(const char *name);

/// Status of a file: times in seconds since 1970, size in bytes, attributes as above.
struct CFileStatus {
  std::int64_t m_ctime = 0;
  std::int64_t m_mtime = 0;
  std::int64_t m_atime = 0;
  std::int64_t m_size = 0;
  DWORD m_attribute = 0;
};

/// An open file. Open and GetStatus return false on failure; everything else throws CFileException*.
class CFile {
public:
  enum OpenFlags : unsigned {
    modeRead = 0x0,
    modeWrite = 0x1,
    shareDenyWrite = 0x20,
    modeCreate = 0x1000,
  };

  CFile() = default;
  CFile(const CFile &) = delete;
  CFile &operator=(const CFile &) = delete;
  ~CFile();

  /// Opens for reading, or for writing with modeWrite. With both modeWrite and modeCreate the file is created or
  /// emptied. Opening for writing fails if the read-only attribute is set and, with shareDenyWrite, if the file is
  /// already open with shareDenyWrite elsewhere. A refused open leaves the file unchanged. Returns false on failure,
  /// and if this object is already open.
  bool Open(const char *name, unsigned flags);
  void Close();
  std::uint64_t GetLength() const;
  UINT Read(void *buffer, UINT count);
  void Write(const void *buffer, UINT count);

  static bool GetStatus(const char *name, CFileStatus &status);
  static void SetStatus(const char *name, const CFileStatus &status);
  static void Rename(const char *oldName, const char *newName);
  static void Remove(const char *name);

private:
  int m_handle = -1;
  CString m_name;
};

namespace kestrune::platform {

/// Whether a file or directory is there, and no pipe, device or socket, where a read may wait for ever.
bool IsFileOrFolder(const char *name);

} // namespace kestrune::platform
