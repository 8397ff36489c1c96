#pragma once

#include "kestrune/xml/xml_folder.h"

#include <string>
#include <string_view>

/// \file
/// Documents from and to memory.

namespace kestrune {

/// Reads `folder` from `text`, the bytes of a file, with the results of CXMLFolder::LoadFromXMLFile. The folder counts
/// as unmodified after that, even after a failure; its file name stays.
KESTRUNE_API long LoadFromText(CXMLFolder &folder, std::string_view text);

/// Puts the bytes of the file that a save would write into `text`. Returns S_OK, or KRX_E_COM_CREATE or
/// KRX_E_SAVE_FAILED, which leave `text` alone. The modified flags stay: nothing has been stored.
KESTRUNE_API long SaveToText(CXMLFolder &folder, std::string &text);

} // namespace kestrune
