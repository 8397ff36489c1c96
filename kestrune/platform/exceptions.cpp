#include "kestrune/platform/exceptions.h"

#include "kestrune/platform/code_page.h"
#include "kestrune/platform/message_box.h"
#include "kestrune/platform/system_text.h"

#include <cstring>
#include <string>
#include <utility>

namespace kestrune::platform {

void CopyErrorMessage(const char *message, char *buffer, UINT size) {
  if (buffer == nullptr || size == 0)
    return;
  // The cut never falls inside a character.
  std::size_t length = 0;
  for (const char *next = CharNextA(message); next != message + length; next = CharNextA(next)) {
    const auto whole = static_cast<std::size_t>(next - message);
    if (whole >= size)
      break;
    length = whole;
  }
  std::memcpy(buffer, message, length);
  buffer[length] = '\0';
}

} // namespace kestrune::platform

CRuntimeClass *CObject::GetRuntimeClass() const { return nullptr; }
CObject::~CObject() = default;
void CObject::Serialize(CArchive & /*archive*/) {}
void CObject::AssertValid() const {}
void CObject::Dump(CDumpContext & /*context*/) const {}

CException::~CException() = default;

void CException::Delete() {
  if (m_autoDelete)
    delete this;
}

BOOL CException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT /*pnHelpContext*/) const {
  kestrune::platform::CopyErrorMessage("", lpszError, nMaxError);
  return FALSE;
}

// Both forms return the same text, whichever of them a class overrides.
BOOL CException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext) {
  return std::as_const(*this).GetErrorMessage(lpszError, nMaxError, pnHelpContext);
}

int CException::ReportError(UINT nType, UINT /*nMessageID*/) {
  char message[512];
  GetErrorMessage(message, sizeof message);
  return AfxMessageBox(message, nType, 0);
}

CFileException::CFileException(int cause, long osError, const char *fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}

CFileException::~CFileException() = default;

BOOL CFileException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT /*pnHelpContext*/) const {
  const std::string reason = kestrune::platform::SystemText(static_cast<int>(m_lOsError));
  kestrune::platform::CopyErrorMessage(m_strFileName + ": " + reason.c_str(), lpszError, nMaxError);
  return TRUE;
}

CInvalidArgException::~CInvalidArgException() = default;

BOOL CInvalidArgException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT /*pnHelpContext*/) const {
  kestrune::platform::CopyErrorMessage("Invalid argument", lpszError, nMaxError);
  return TRUE;
}

void AfxThrowInvalidArgException() { throw new CInvalidArgException(); }
