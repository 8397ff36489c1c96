#include "kestrune/names/filename.h"
#include "kestrune/platform/c_runtime.h"
#include "kestrune/platform/exceptions.h"
#include "kestrune/platform/file.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

int CFilename::FileExists() const { return GetFileAttributesA(*this) != INVALID_FILE_ATTRIBUTES; }

int CFilename::ReadOnly() const {
  return (GetFileAttributesA(*this) & FILE_ATTRIBUTE_READONLY) != 0; // INVALID_FILE_ATTRIBUTES has the bit too
}

int CFilename::SetReadOnly(int on) const {
  const DWORD attributes = GetFileAttributesA(*this);
  if (attributes == INVALID_FILE_ATTRIBUTES)
    return 0;
  return SetFileAttributesA(*this,
                            on != 0 ? attributes | FILE_ATTRIBUTE_READONLY : attributes & ~FILE_ATTRIBUTE_READONLY);
}

int CFilename::Remove() const {
  SetReadOnly(0);
  CFileStatus status;
  if (!CFile::GetStatus(*this, status))
    return 0;
  CFile::Remove(*this);
  return 1;
}

long CFilename::FileSize() const {
  CFileStatus status;
  return CFile::GetStatus(*this, status) ? static_cast<long>(static_cast<std::uint32_t>(status.m_size)) : 0;
}

int CFilename::mkDir() const {
  CString name(*this);
  name.TrimRight('\\');
  if (GetFileAttributesA(name) == INVALID_FILE_ATTRIBUTES)
    return _mkdir(name);
  CFileStatus status;
  return CFile::GetStatus(name, status) && (status.m_attribute & FILE_ATTRIBUTE_DIRECTORY) != 0 ? 0 : 1;
}

int CFilename::CopyFileA(const char *dest) const {
  UINT size = 8192;
  std::unique_ptr<char[]> buffer;
  while (size >= 512 && !buffer) {
    buffer.reset(new (std::nothrow) char[size]());
    if (!buffer)
      size /= 2;
  }
  if (!buffer)
    return 1;

  const CString target(dest);
  CFile source;
  if (!source.Open(*this, CFile::shareDenyWrite))
    return 2;
  CFile copy;
  bool begun = false;
  int result = 0;
  try {
    std::uint64_t rest = source.GetLength();
    const auto readNext = [&] {
      const UINT count = static_cast<UINT>(std::min<std::uint64_t>(rest, size));
      if (source.Read(buffer.get(), count) < count)
        result = 4;
      rest -= count;
      return count;
    };
    // The source has to show that it can be read before the target is emptied.
    UINT count = readNext();
    if (result != 0)
      return result;
    begun = copy.Open(target, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite);
    if (!begun)
      return 3;
    for (; count > 0; count = readNext())
      copy.Write(buffer.get(), count);
    copy.Close();
  } catch (CException *exception) {
    exception->Delete();
    result = 5;
  }

  CFileStatus status;
  if (result == 0 && CFile::GetStatus(*this, status))
    CFile::SetStatus(target, status);
  if (result != 0 && begun)
    CFile::Remove(target);
  return result;
}

int CFilename::Touch() const {
  CFileStatus status;
  CFile::GetStatus(*this, status);
  status.m_ctime = status.m_mtime = status.m_atime = _time64(nullptr);
  CFile::SetStatus(*this, status);
  return 0;
}

int CFilename::IsDirectory() const {
  if (GetLength() == 3 && GetAt(1) == ':' && GetAt(2) == '\\')
    return 1;
  CFileStatus status;
  return CFile::GetStatus(*this, status) && (status.m_attribute & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

unsigned long CFilename::Rename(CString &newName) {
  try {
    CFile::Rename(*this, newName);
  } catch (CFileException *exception) {
    const int cause = exception->m_cause;
    exception->Delete();
    return static_cast<unsigned long>(cause);
  }
  *this = newName;
  return 0;
}

CString CFilename::GetShortFileName() const {
  CString shortName;
  DWORD size = static_cast<DWORD>(GetLength());
  for (int round = 0; round < 5 && shortName.IsEmpty(); ++round) {
    const DWORD room = size + 2;
    size = GetShortPathNameA(*this, shortName.GetBuffer(static_cast<int>(room)), room);
    shortName.ReleaseBuffer();
    if (size == 0)
      break;
  }
  return shortName;
}
