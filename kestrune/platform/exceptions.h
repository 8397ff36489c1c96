#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"
#include "kestrune/platform/types.h"

/// \file
/// The framework's exceptions, thrown by pointer.

class CArchive;
class CDumpContext;
struct CRuntimeClass;

/// Base of the framework's classes.
class KESTRUNE_API CObject {
public:
  /// Null: no class here declares run-time class data.
  virtual CRuntimeClass *GetRuntimeClass() const;
  virtual ~CObject(); ///< Called through any base.
  /// Does nothing here. @{
  virtual void Serialize(CArchive &archive);
  virtual void AssertValid() const;
  virtual void Dump(CDumpContext &context) const;
  ///@}

protected:
  /// For derived classes; the base has no data. @{
  CObject() = default;
  CObject(const CObject &) = default;
  CObject &operator=(const CObject &) = default;
  ///@}
};

/// An exception thrown by pointer. The catcher owns it and ends it with Delete().
class KESTRUNE_API CException : public CObject {
public:
  CException() = default; ///< With auto-delete on.
  /// `autoDelete` says whether Delete destroys the exception; false for one that is not on the heap.
  explicit CException(bool autoDelete) : m_autoDelete(autoDelete) {}
  ~CException() override; ///< Called by Delete().

  /// Destroys the exception if auto-delete is on, as it is for one created on the heap.
  void Delete();

  /// Copies the message, cut to `nMaxError - 1` bytes, and terminates it. If the exception has no message, writes an
  /// empty text and returns FALSE.
  virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const;
  /// GetErrorMessage for a non-const exception.
  virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr);
  /// Shows the message in a message box and returns the id of the chosen button.
  virtual int ReportError(UINT nType = 0, UINT nMessageID = 0);

private:
  bool m_autoDelete = true;
};

/// A failed file operation.
class KESTRUNE_API CFileException : public CException {
public:
  /// Why the operation failed.
  enum Cause : int {
    none = 0,              ///< No failure.
    genericException = 1,  ///< Any other cause.
    fileNotFound = 2,      ///< There is no such file.
    badPath = 3,           ///< The path is on no drive, is too long, or leads through what is no folder.
    tooManyOpenFiles = 4,  ///< The process or the host cannot open another file.
    accessDenied = 5,      ///< The right is missing, or what is there does not permit the operation.
    invalidFile = 6,       ///< The file is not open.
    directoryFull = 8,     ///< The folder takes no further entry.
    hardIO = 10,           ///< The device failed.
    sharingViolation = 11, ///< Somebody else uses the file.
    diskFull = 13,         ///< There is no space left, or the file may not grow so far.
  };

  /// A failure with that cause, the host's error number, and the name of the file.
  CFileException(int cause, long osError, const char *fileName);
  ~CFileException() override; ///< Called by Delete().

  using CException::GetErrorMessage;
  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const override;

  int m_cause;           ///< One of the causes.
  long m_lOsError;       ///< The host's error number.
  CString m_strFileName; ///< The name of the file, as the operation got it.
};

/// A bad argument, such as an index outside a string or an array.
class KESTRUNE_API CInvalidArgException : public CException {
public:
  CInvalidArgException() = default; ///< Without data: the message is always the same.
  ~CInvalidArgException() override; ///< Called by Delete().

  using CException::GetErrorMessage;
  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const override;
};

/// Throws a CInvalidArgException*.
[[noreturn]] KESTRUNE_API void AfxThrowInvalidArgException();

namespace kestrune::platform {

/// Copies `message` into a buffer of `size` bytes, cut to fit with its terminator. Does nothing if `size` is 0.
void CopyErrorMessage(const char *message, char *buffer, UINT size);

} // namespace kestrune::platform
