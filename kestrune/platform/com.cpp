#include "kestrune/platform/com.h"

#include "kestrune/platform/code_page.h"

namespace {

thread_local int initializations = 0;

} // namespace

HRESULT CoInitialize(void * /*reserved*/) { return initializations++ == 0 ? S_OK : S_FALSE; }

void CoUninitialize() {
  if (initializations > 0)
    --initializations;
}

bool kestrune::platform::ComInitialized() { return initializations > 0; }

_com_error::~_com_error() = default;

void _com_issue_error(HRESULT error) { throw _com_error(error); }

std::wstring &_bstr_t::wide() const {
  if (!m_isWide)
    m_wide = kestrune::platform::TextToWide(m_text.View());
  m_isWide = true;
  return m_wide;
}

_bstr_t::operator const wchar_t *() const { return wide().c_str(); }
_bstr_t::operator wchar_t *() const { return wide().data(); }
unsigned _bstr_t::length() const { return static_cast<unsigned>(wide().size()); }
