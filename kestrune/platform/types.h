#pragma once

#include <cstdint>

// The plain types and result codes of the platform that the interface uses.

using BOOL = int;
using UINT = unsigned int;
using PUINT = UINT *;
using DWORD = std::uint32_t;
using LPTSTR = char *;

// Some C headers define these two as macros.
#ifndef FALSE
constexpr BOOL FALSE = 0;
#endif
#ifndef TRUE
constexpr BOOL TRUE = 1;
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

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_POINTER = kestrune::platform::ResultFromBits(0x80004003);
constexpr HRESULT E_FAIL = kestrune::platform::ResultFromBits(0x80004005);
constexpr HRESULT E_INVALIDARG = kestrune::platform::ResultFromBits(0x80070057);
constexpr HRESULT CO_E_NOTINITIALIZED = kestrune::platform::ResultFromBits(0x800401F0);
