#pragma once

#include "kestrune/xml/xml_folder.h"

#include <string>
#include <string_view>

/// \file
/// Saves that replace the file as a whole.

namespace kestrune {

/// Saves `folder` like its SaveToFile, with the same arguments and results, but the file always has either the complete
/// old text or the complete new one, even if the process is killed or the power fails: the text is written to a new
/// file in the same folder, which then takes over the name, the mode and the owner of the old one. The new file and its
/// name are on the disk before the call returns, so this takes longer than a plain save. A symbolic link to the file
/// stays.
/// The file is saved in place, as SaveToFile does it, if a new one could not be the same: if it has other hard links,
/// an access list or attributes of its own, or an owner that cannot be given to the new one, or if its folder is not
/// writable.
KESTRUNE_API long SaveReplacing(CXMLFolder &folder, const char *name, const char *base, bool overwrite);

/// Writes `text`, any bytes, to the file at a path of the host or in drive form, with the same promises. Missing
/// folders are not made. Returns S_OK, KRX_E_SAVE_NOT_NAMED for an empty path, or KRX_E_SAVE_FAILED; `reason`, unless
/// it is null, has the system's words then, such as "No space left on device".
KESTRUNE_API long ReplaceFile(const char *path, std::string_view text, std::string *reason = nullptr);

} // namespace kestrune
