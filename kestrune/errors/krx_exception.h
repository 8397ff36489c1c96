#pragma once

#include "kestrune/platform/exceptions.h"

/// Base of the exceptions of the whole tool: a message, the module that raised it, and a sub-code. Programs catch it by
/// pointer and end it with Delete(); only the modules construct it.
class KESTRUNE_API CKesException : public CException {
public:
  ~CKesException() override;

  using CException::GetErrorMessage;
  /// Copies the text of GetFormattedMessage, cut to `nMaxError - 1` bytes, and terminates it. Always TRUE.
  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const override;
  /// Shows the text of GetFormattedMessage in a message box of form `nType` and returns the user's choice.
  int ReportError(UINT nType = 0, UINT nMessageID = 0) override;

  /// "message [KRX#101]": the message with the module's three letters and the sub-code as a signed number, which is
  /// left out when it is 0.
  virtual CString GetFormattedMessage() const;
  /// The number of the module that raised the exception: 3 for this library.
  virtual int GetModuleCode() const;
  /// The sub-code; 0 means none.
  virtual int GetSubCode() const;

protected:
  explicit CKesException(int module);
  CKesException(const CKesException &) = default;
  CKesException &operator=(const CKesException &) = default;

  /// The three letters of a module; "MSC" for a number that no module has.
  static const char *ModuleCodeText(int module);

  CString m_message;
  int m_module;
  int m_subCode = 0;
};

/// The exception of this library, thrown by pointer where a text does not convert. The catcher ends it with Delete().
class KESTRUNE_API CKRXException : public CKesException {
public:
  /// The message "uninitialized" and no sub-code.
  CKRXException();
  /// The message "uninitialized" and that sub-code.
  explicit CKRXException(unsigned int subCode);
  /// The library's text `stringId` with `argument` in its placeholder; the id is the sub-code too. An id without a text
  /// gives an empty message.
  CKRXException(unsigned int stringId, const char *argument, ...);
  /// The library's text `stringId`, formatted with the further arguments, and the sub-code `subCode`.
  CKRXException(unsigned int subCode, unsigned int stringId, ...);
  ~CKRXException() override;
};
