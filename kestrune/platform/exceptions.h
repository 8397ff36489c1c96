#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"
#include "kestrune/platform/types.h"

class CArchive;
class CDumpContext;
struct CRuntimeClass;

/// Base of the framework's classes.
class KESTRUNE_API CObject {
public:
  /// Null: no class here declares run-time class data.
  virtual CRuntimeClass *GetRuntimeClass() const;
  virtual ~CObject();
  virtual void Serialize(CArchive &archive);
  virtual void AssertValid() const;
  virtual void Dump(CDumpContext &context) const;

protected:
  CObject() = default;
  CObject(const CObject &) = default;
  CObject &operator=(const CObject &) = default;
};

/// An exception thrown by pointer. The catcher owns it and ends it with Delete().
class KESTRUNE_API CException : public CObject {
public:
  CException() = default;
  explicit CException(bool autoDelete) : m_autoDelete(autoDelete) {}
  ~CException() override;

  /// Destroys the exception if auto-delete is on, as it is for one created on the heap.
  void Delete();

  /// Copies the message, cut to `nMaxError - 1` bytes, and terminates it. If the exception has no message, writes an
  /// empty text and returns FALSE.
  virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const;
  /// The same for a non-const exception.
  virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr);
  /// Shows the message in a message box and returns the id of the chosen button.
  virtual int ReportError(UINT nType = 0, UINT nMessageID = 0);

private:
  bool m_autoDelete = true;
};

/// A failed file operation. `m_cause` is one of the causes below, `m_lOsError` the host's error number.
class KESTRUNE_API CFileException : public CException {
public:
  enum Cause : int {
    none = 0,
    genericException = 1,
    fileNotFound = 2,
    badPath = 3,
    tooManyOpenFiles = 4,
    accessDenied = 5,
    invalidFile = 6,
    directoryFull = 8,
    hardIO = 10,
    sharingViolation = 11,
    diskFull = 13,
  };

  CFileException(int cause, long osError, const char *fileName);
  ~CFileException() override;

  using CException::GetErrorMessage;
  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const override;

  int m_cause;
  long m_lOsError;
  CString m_strFileName;
};

/// A bad argument, such as an index outside a string or an array.
class KESTRUNE_API CInvalidArgException : public CException {
public:
  CInvalidArgException() = default;
  ~CInvalidArgException() override;

  using CException::GetErrorMessage;
  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const override;
};

/// Throws a CInvalidArgException*.
[[noreturn]] KESTRUNE_API void AfxThrowInvalidArgException();

namespace kestrune::platform {

/// Copies `message` into a buffer of `size` bytes, cut to fit with its terminator. Does nothing if `size` is 0.
void CopyErrorMessage(const char *message, char *buffer, UINT size);

} // namespace kestrune::platform
