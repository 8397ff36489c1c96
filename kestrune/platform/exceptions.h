#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"
#include "kestrune/platform/types.h"

class CArchive;
class CDumpContext;
struct CRuntimeClass;

/// Root of the framework's classes.
class KESTRUNE_API CObject {
public:
  /// No class here declares run-time class data: null.
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

/// An exception thrown by pointer. Whoever catches it owns it and ends it with Delete().
class KESTRUNE_API CException : public CObject {
public:
  CException() = default;
  explicit CException(bool autoDelete) : m_autoDelete(autoDelete) {}
  ~CException() override;

  /// Ends the exception: destroys the object when it was made on the heap (auto-delete on).
  void Delete();

  /// Copies the message, cut to `nMaxError - 1` bytes, and terminates it. Returns FALSE, and writes an empty text,
  /// where the exception has no message.
  virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const;
  /// The same for an exception that is not const.
  virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr);
  /// Shows the message in a message box and returns the user's choice.
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

/// Copies `message` into a buffer of `size` bytes, cut to fit with its terminator. A buffer of no bytes stays
/// untouched.
void CopyErrorMessage(const char *message, char *buffer, UINT size);

} // namespace kestrune::platform
