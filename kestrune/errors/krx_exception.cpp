#include "kestrune/errors/krx_exception.h"

#include "kestrune/platform/message_box.h"

#include <cstdarg>

namespace {

constexpr int kModule = 3;

// Indexed by module number; null if no module has that number.
constexpr const char *kModuleCodes[] = {"QOV", "ZAF", "HUJ", "KRX", "TIY", "GEQ", "VUK", nullptr, "JOH", "FYM",
                                        "SOQ", "BAV", "YOT", "RIH", "ZEK", "DOF", "MUJ", nullptr, "PAZ", "XOL"};
constexpr int kModuleCount = sizeof kModuleCodes / sizeof *kModuleCodes;

} // namespace

CKesException::CKesException(int module) : CException(true), m_message("uninitialized"), m_module(module) {}

CKesException::~CKesException() = default;

BOOL CKesException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT /*pnHelpContext*/) const {
  kestrune::platform::CopyErrorMessage(GetFormattedMessage(), lpszError, nMaxError);
  return TRUE;
}

int CKesException::ReportError(UINT nType, UINT /*nMessageID*/) {
  return AfxMessageBox(GetFormattedMessage(), nType, 0);
}

CString CKesException::GetFormattedMessage() const {
  const char *const code = ModuleCodeText(m_module);
  CString text;
  if (m_subCode != 0)
    text.Format("%s [%s#%ld]", static_cast<const char *>(m_message), code, static_cast<long>(m_subCode));
  else
    text.Format("%s [%s]", static_cast<const char *>(m_message), code);
  return text;
}

int CKesException::GetModuleCode() const { return m_module; }

int CKesException::GetSubCode() const { return m_subCode; }

const char *CKesException::ModuleCodeText(int module) {
  const char *const code = module >= 0 && module < kModuleCount ? kModuleCodes[module] : nullptr;
  return code != nullptr ? code : "MSC";
}

CKRXException::CKRXException() : CKesException(kModule) {}

CKRXException::CKRXException(unsigned int subCode) : CKRXException() { m_subCode = static_cast<int>(subCode); }

// The texts have at most one placeholder, so the variable arguments are not needed.
CKRXException::CKRXException(unsigned int stringId, const char *argument, ...) : CKRXException(stringId) {
  CString format;
  format.LoadString(stringId);
  m_message.Format(format, argument != nullptr ? argument : "(null)");
}

CKRXException::CKRXException(unsigned int subCode, unsigned int stringId, ...) : CKRXException(subCode) {
  CString format;
  format.LoadString(stringId);
  va_list arguments;
  va_start(arguments, stringId);
  m_message.FormatV(format, arguments);
  va_end(arguments);
}

CKRXException::~CKRXException() = default;
