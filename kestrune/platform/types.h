#pragma once

#include <cstdint>

/// \file
/// The plain types and result codes of the platform that the interface uses.

using BOOL = int;            ///< A truth value: FALSE or TRUE.
using UINT = unsigned int;   ///< An unsigned number of 32 bits.
using PUINT = UINT *;        ///< Where to put an unsigned number; may be null where it is optional.
using DWORD = std::uint32_t; ///< An unsigned number of 32 bits.
using LPTSTR = char *;       ///< A buffer for a text in the code page.

// Some C headers define these two as macros.
#ifndef FALSE
constexpr BOOL FALSE = 0; ///< The false BOOL.
#endif
#ifndef TRUE
constexpr BOOL TRUE = 1; ///< The true BOOL.
#endif

/// A result in HRESULT form: 0 success, positive a remark, negative a failure. `long` has 64 bits here, so a failure is
/// the sign-extended 32-bit value: both `result < 0` and comparison with a constant work.
using HRESULT = long;

namespace kestrune::platform {

/// The result with the 32 bits `bits`, sign-extended.
constexpr HRESULT ResultFromBits(std::uint32_t bits) { return static_cast<std::int32_t>(bits); }

/// The 32 bits of a result, for printing.
constexpr std::uint32_t ResultBits(HRESULT result) { return static_cast<std::uint32_t>(result); }

} // namespace kestrune::platform

/// Success without a remark.
constexpr HRESULT S_OK = 0;
/// Success, but nothing was to be done: COM was initialised already.
constexpr HRESULT S_FALSE = 1;
/// A null pointer was used.
constexpr HRESULT E_POINTER = kestrune::platform::ResultFromBits(0x80004003);
/// Any other failure.
constexpr HRESULT E_FAIL = kestrune::platform::ResultFromBits(0x80004005);
/// An argument that the operation does not accept.
constexpr HRESULT E_INVALIDARG = kestrune::platform::ResultFromBits(0x80070057);
/// The thread has not initialised COM.
constexpr HRESULT CO_E_NOTINITIALIZED = kestrune::platform::ResultFromBits(0x800401F0);
