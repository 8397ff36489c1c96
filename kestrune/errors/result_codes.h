#pragma once

#include "kestrune/platform/types.h"

/// \file
/// All codes besides S_OK that loading and saving can return. Their numbers never change. Remarks (`KRX_S_`) are
/// positive: the operation succeeded. Failures (`KRX_E_`) are negative.

/// The element has no attribute with the value's tag; the value keeps its text.
constexpr long KRX_S_NO_ATTRIBUTE = kestrune::platform::ResultFromBits(0x00041001);
/// The element has no descendant with the value's tag; the value keeps its text.
constexpr long KRX_S_NO_ELEMENT = kestrune::platform::ResultFromBits(0x00041002);
/// The collection's element contains no item; the collection is empty.
constexpr long KRX_S_EMPTY_COLLECTION = kestrune::platform::ResultFromBits(0x00041003);

/// No XML document could be created, for instance on a thread that has not initialised COM. Nothing was read or
/// written.
constexpr long KRX_E_COM_CREATE = kestrune::platform::ResultFromBits(0x80040001);
/// The target path exists, and overwriting was not allowed. It was not changed.
constexpr long KRX_E_WRITE_PROTECTED = kestrune::platform::ResultFromBits(0x80040002);
/// The file does not exist, or is a directory. The members are unchanged.
constexpr long KRX_E_FILE_NOT_FOUND = kestrune::platform::ResultFromBits(0x80040004);
/// The file is unreadable, is not well-formed, or has no root element. The members are unchanged.
constexpr long KRX_E_UNEXPECTED_DATA = kestrune::platform::ResultFromBits(0x80040005);
/// No name to save under was given, and none is remembered.
constexpr long KRX_E_SAVE_NOT_NAMED = kestrune::platform::ResultFromBits(0x80040006);
/// The name to load resolved to an empty path.
constexpr long KRX_E_LOAD_NOT_NAMED = kestrune::platform::ResultFromBits(0x80040007);
/// An item of a collection had an empty key, or a key that was already present. It was skipped; all others were read.
constexpr long KRX_E_DUPLICATE_KEY = kestrune::platform::ResultFromBits(0x80040008);
/// The document could not be built or written. The file is unchanged.
constexpr long KRX_E_SAVE_FAILED = kestrune::platform::ResultFromBits(0x80040009);
/// The tree failed while it was being read. The object keeps what was read so far.
constexpr long KRX_E_LOAD_EXCEPTION = kestrune::platform::ResultFromBits(0x8004000C);
/// The root element's name is not the object's tag, ignoring case. The members are unchanged.
constexpr long KRX_E_WRONG_ROOT_TAG = kestrune::platform::ResultFromBits(0x8004000D);
