#pragma once

#include "kestrune/xml/xml_folder.h"

#include <string>
#include <vector>

/// \file
/// Failures in words: what went wrong in the last load or save of a document, in which file, and where.

namespace kestrune {

/// One thing that went wrong in a load or save.
struct Finding {
  long result = S_OK; ///< The failure, such as KRX_E_UNEXPECTED_DATA.
  std::string file;   ///< The full path in drive form; empty where there is no file, or none could be named.
  long line = 0;      ///< Counts from 1; 0 if it is not known, as for a save, or for a pipe.
  long column = 0;    ///< Counts characters from 1; 0 if it is not known.
  std::string reason; ///< The words of the parser, the system or the library, in the code page.

  /// All of it, such as "C:\types\Vorlan.xml:12:5: mismatched tag (KRX_E_UNEXPECTED_DATA)".
  KESTRUNE_API std::string text() const;
};

/// What went wrong in the last load or save of `folder`, in the order in which it was found; empty if nothing did. A
/// load reports on all the files that it read, add-on files and the user's file included: so there may be something
/// although the result was no failure. Each item that was left out for its key is reported with its place in the file,
/// up to a hundred in each file. Remarks are no failures. A report belongs to its object, until that object is loaded,
/// saved or destroyed: a copy has none. It is kept only as far as there is memory for it.
KESTRUNE_API std::vector<Finding> ReportOf(const CXMLFolder &folder);

/// The same in one text: a line for each finding, without a line feed behind the last one.
KESTRUNE_API std::string ReportText(const CXMLFolder &folder);

} // namespace kestrune
