#pragma once

#include "kestrune/xml/xml_folder.h"

/// \file
/// A save that replaces the file as a whole.

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

} // namespace kestrune
