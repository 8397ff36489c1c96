#pragma once

#include "kestrune/platform/types.h"

// Every code that a load or a save of the library can return, beside S_OK. Numbers never move.

/// Remarks: positive, the operation succeeded.
/// The element has no attribute with the value's tag; the value keeps what it held.
constexpr long KRX_S_NO_ATTRIBUTE = kestrune::platform::ResultFromBits(0x00041001);
/// The element has no descendant with the value's tag; the value keeps what it held.
constexpr long KRX_S_NO_ELEMENT = kestrune::platform::ResultFromBits(0x00041002);
/// The collection's element holds no item; the collection is empty.
constexpr long KRX_S_EMPTY_COLLECTION = kestrune::platform::ResultFromBits(0x00041003);

/// Failures: negative.
/// No XML document could be made, as on a thread that has not initialised COM. Nothing was read or written.
constexpr long KRX_E_COM_CREATE = kestrune::platform::ResultFromBits(0x80040001);
/// Something exists at the target path, and overwriting was not allowed. It was not touched.
constexpr long KRX_E_WRITE_PROTECTED = kestrune::platform::ResultFromBits(0x80040002);
/// The file does not exist, or is a directory. The object was not touched.
constexpr long KRX_E_FILE_NOT_FOUND = kestrune::platform::ResultFromBits(0x80040004);
/// The file is unreadable, not well-formed, or has no root element. The members were not touched.
constexpr long KRX_E_UNEXPECTED_DATA = kestrune::platform::ResultFromBits(0x80040005);
/// A save without a name, given or remembered.
constexpr long KRX_E_SAVE_NOT_NAMED = kestrune::platform::ResultFromBits(0x80040006);
/// A load whose name resolved to nothing.
constexpr long KRX_E_LOAD_NOT_NAMED = kestrune::platform::ResultFromBits(0x80040007);
/// An item of a collection had an empty key, or one that was there already. It was left out, all others were read.
constexpr long KRX_E_DUPLICATE_KEY = kestrune::platform::ResultFromBits(0x80040008);
/// The document could not be built or written. The file is as it was.
constexpr long KRX_E_SAVE_FAILED = kestrune::platform::ResultFromBits(0x80040009);
/// The tree failed while it was read. What was read so far stays in the object.
constexpr long KRX_E_LOAD_EXCEPTION = kestrune::platform::ResultFromBits(0x8004000C);
/// The root element has another name than the object's tag. The members were not touched.
constexpr long KRX_E_WRONG_ROOT_TAG = kestrune::platform::ResultFromBits(0x8004000D);
