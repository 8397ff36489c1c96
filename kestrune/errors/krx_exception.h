#pragma once

#include "kestrune/platform/exceptions.h"

/// Base of the exceptions of all modules: a message, the module that raised it, and a sub-code. Programs catch it by
/// pointer and end it with Delete(). Only the modules construct it.
class KESTRUNE_API CKesException : public CException {
public:
  ~CKesException() override; ///< Called by Delete().

  using CException::GetErrorMessage;
  /// Copies the text of GetFormattedMessage, cut to `nMaxError - 1` bytes, and terminates it. Always returns TRUE.
  BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const override;
  /// Shows the text of GetFormattedMessage in a message box of type `nType` and returns the id of the chosen button.
  int ReportError(UINT nType = 0, UINT nMessageID = 0) override;

  /// "message [KRX#101]": the message, the module's three letters, and the sub-code as a signed number, which is
  /// omitted if it is 0.
  virtual CString GetFormattedMessage() const;
  /// The number of the module that raised the exception: 3 for this library.
  virtual int GetModuleCode() const;
  /// The sub-code; 0 means none.
  virtual int GetSubCode() const;

protected:
  /// For the module with that number: message "uninitialized", sub-code 0.
  explicit CKesException(int module);
  /// Copies message, module and sub-code. @{
  CKesException(const CKesException &) = default;
  CKesException &operator=(const CKesException &) = default;
  ///@}

  /// The three letters of a module; "MSC" if no module has that number.
  static const char *ModuleCodeText(int module);

  CString m_message; ///< The message, without what GetFormattedMessage adds.
  int m_module;      ///< The number of the module.
  int m_subCode = 0; ///< The sub-code; 0 means none.
};

/// The exception of this library, thrown by pointer when a text does not convert. The catcher ends it with Delete().
class KESTRUNE_API CKRXException : public CKesException {
public:
  /// Message "uninitialized", sub-code 0.
  CKRXException();
  /// Message "uninitialized", sub-code `subCode`.
  explicit CKRXException(unsigned int subCode);
  /// The library's text `stringId` with `argument` in its placeholder; the sub-code is `stringId` too. The message is
  /// empty if there is no such text.
  CKRXException(unsigned int stringId, const char *argument, ...);
  /// The library's text `stringId`, formatted with the further arguments; the sub-code is `subCode`.
  CKRXException(unsigned int subCode, unsigned int stringId, ...);
  ~CKRXException() override; ///< Called by Delete().
};
