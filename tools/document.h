#pragma once

#include "kestrune/kestrune_xml.h"

#include <memory>
#include <string>

// Opening a file by what it is.

/// A document of the class that fits a file's root element.
struct OpenedDocument {
  std::unique_ptr<CXMLTopLevelFolder> document; // null when the file could not be told
  const char *kind = "";
  long result = S_OK;
  std::string place; // "LINE:COLUMN: " of a file that is not well-formed
  std::string reason;

  bool failed() const { return result < 0; }
};

/// Finds out what kind of document `file` is and loads it with the class for it. A path means that file and nothing
/// else. A name that is a macro, such as '$StdVorlanTyp$', means what programs get: add-on files, the user's own and a
/// replacement take part.
OpenedDocument openDocument(const std::string &file);

/// A result of a load in words.
std::string reasonOf(long code);

/// "FILE:LINE:COLUMN: reason (0x80040005)": why a document could not be loaded whole.
std::string failureText(const std::string &file, const OpenedDocument &opened);

/// The text of the member with that tag; empty when there is none. A collection gives the number of its items.
std::string memberText(CXMLFolder &folder, const char *tag);
