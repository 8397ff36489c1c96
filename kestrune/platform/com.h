#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/c_string.h"
#include "kestrune/platform/types.h"

#include <string>
#include <utility>

/// \file
/// The parts of COM that the library uses: initialisation of a thread, the exception for a failed call, the smart
/// pointer, and the string and variant for texts.

/// Initialises COM for the calling thread; without it no XML document can be created. Calls are counted per thread, and
/// each needs its CoUninitialize. Returns S_OK on the first call of the thread and S_FALSE on further ones.
KESTRUNE_API HRESULT CoInitialize(void *reserved);

/// Undoes one CoInitialize of the calling thread.
KESTRUNE_API void CoUninitialize();

namespace kestrune::platform {

/// Whether the calling thread has COM initialised.
bool ComInitialized();

} // namespace kestrune::platform

/// A failed COM call, thrown by value.
class KESTRUNE_API _com_error {
public:
  /// A failure with that code and, in words, that cause.
  explicit _com_error(HRESULT error, const char *description = "") : m_error(error), m_description(description) {}
  /// Copies code and cause. @{
  _com_error(const _com_error &) = default;
  _com_error &operator=(const _com_error &) = default;
  virtual ~_com_error();
  ///@}

  /// The code of the failure, negative.
  HRESULT Error() const noexcept { return m_error; }
  /// The cause in words; may be empty.
  CString Description() const { return m_description; }

private:
  HRESULT m_error;
  CString m_description;
};

/// Throws a _com_error with that code and no description.
[[noreturn]] KESTRUNE_API void _com_issue_error(HRESULT error);

/// Reference-counted pointer to an object with AddRef and Release. Dereferencing null throws _com_error with E_POINTER.
template <class Interface>
class _com_ptr_t {
public:
  /// Null. @{
  _com_ptr_t() noexcept = default;
  _com_ptr_t(std::nullptr_t) noexcept {}
  ///@}
  /// Takes a reference of its own to the object, or takes over that of a pointer that is moved from. @{
  _com_ptr_t(Interface *object) noexcept : m_object(object) { addRef(); }
  _com_ptr_t(const _com_ptr_t &other) noexcept : m_object(other.m_object) { addRef(); }
  _com_ptr_t(_com_ptr_t &&other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  ///@}
  /// Releases its reference.
  ~_com_ptr_t() {
    if (m_object != nullptr)
      m_object->Release();
  }

  /// Releases its reference and takes one to the object of `other`.
  _com_ptr_t &operator=(_com_ptr_t other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }

  /// The object. Throws _com_error with E_POINTER for null. @{
  Interface *operator->() const {
    if (m_object == nullptr)
      _com_issue_error(E_POINTER);
    return m_object;
  }
  Interface &operator*() const { return *operator->(); }
  ///@}
  /// The object or null, without a reference for the caller. @{
  operator Interface *() const noexcept { return m_object; }
  Interface *GetInterfacePtr() const noexcept { return m_object; }
  ///@}

private:
  void addRef() const noexcept {
    if (m_object != nullptr)
      m_object->AddRef();
  }

  Interface *m_object = nullptr;
};

/// A text that is passed to or from a COM object. It is stored in the code page; its wide form is made on request.
class KESTRUNE_API _bstr_t {
public:
  /// Empty, or a copy of `text`; wide text is converted, and null counts as empty. @{
  _bstr_t() = default;
  _bstr_t(const char *text) : m_text(text) {}
  _bstr_t(const wchar_t *text) : m_text(text) {}
  _bstr_t(const CString &text) : m_text(text) {}
  ///@}

  /// The text in the code page; valid until the object is assigned or destroyed.
  operator const char *() const noexcept { return m_text; }
  /// The wide form; valid until the object is assigned or destroyed. @{
  operator const wchar_t *() const;
  operator wchar_t *() const;
  ///@}
  /// Number of wide characters.
  unsigned length() const;

private:
  std::wstring &wide() const;

  CString m_text;
  mutable std::wstring m_wide;
  mutable bool m_isWide = false; // whether m_wide was made
};

using VARTYPE = unsigned short; ///< What a variant contains: VT_NULL or VT_BSTR.
constexpr VARTYPE VT_NULL = 1;  ///< Nothing: there is no such attribute.
constexpr VARTYPE VT_BSTR = 8;  ///< A text, which may be empty.

/// The value of an attribute: a text (VT_BSTR), or the null variant (VT_NULL) if there is none.
class KESTRUNE_API _variant_t {
public:
  _variant_t() : vt(VT_NULL) {} ///< The null variant.
  /// That text; wide text is converted to the code page, and null counts as empty. @{
  _variant_t(const char *text) : _variant_t(CString(text)) {}
  _variant_t(const wchar_t *text) : _variant_t(CString(text)) {}
  _variant_t(CString text) : vt(VT_BSTR), m_text(std::move(text)) {}
  _variant_t(const _bstr_t &text) : _variant_t(static_cast<const char *>(text)) {}
  ///@}

  /// The text, in the code page; empty for the null variant. @{
  const CString &text() const &noexcept { return m_text; }
  CString text() &&noexcept { return std::move(m_text); }
  operator _bstr_t() const { return {m_text}; }
  ///@}

  VARTYPE vt; ///< VT_BSTR for a text, VT_NULL without one.

private:
  CString m_text;
};
