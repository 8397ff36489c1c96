#pragma once

#include "kestrune/xml/xml_folder.h"

namespace kestrune {

/// Saves `folder` as its SaveToFile does, with the same arguments and results, but so that the file always holds either
/// the old text or the new one, whole, even if the process is killed or the power goes: the text is written to a new
/// file in the same folder, which then takes the name, the mode and the owner of the old one. Both reach the disk
/// before the call returns, which takes longer than a plain save. Where a symbolic link leads to the file, the link
/// stays. A file is saved in place, as SaveToFile does it, where a new one could not be the same: it has further hard
/// links, an access list or attributes of its own, or an owner that cannot be given, or its folder cannot be written
/// to.
KESTRUNE_API long SaveReplacing(CXMLFolder &folder, const char *name, const char *base, bool overwrite);

} // namespace kestrune
