#pragma once

#include "kestrune/kestrune_xml.h"

#include <memory>
#include <span>
#include <string_view>

/// A kind of data file, with the classes of documents that read it.
struct Kind {
  const char *root;  ///< The tag of the root element.
  const char *macro; ///< The name by which programs load the standard file.
  const char *name;  ///< What people call it.
  /// Makes a document of each format version, the oldest first.
  std::span<std::unique_ptr<CXMLTopLevelFolder> (*const)()> versions;

  /// The number of the newest format version.
  int newest() const { return static_cast<int>(versions.size()); }
  /// A new document of a version, counted from 1.
  std::unique_ptr<CXMLTopLevelFolder> make(int version) const {
    return versions[static_cast<std::size_t>(version - 1)]();
  }
};

/// All kinds of data files.
std::span<const Kind> allKinds();
/// The kind with that root element, in any case; null if there is none.
const Kind *kindOfRoot(std::string_view root);
/// The kind whose standard file the macro names, such as $StdVorlanTyp$, in any case; null if there is none.
const Kind *kindOfMacro(std::string_view macro);
