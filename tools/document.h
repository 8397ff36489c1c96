#pragma once

#include "kestrune/kestrune_xml.h"

#include <memory>
#include <string>

// Opening a file by what it is.

/// A document of the class that fits a file's root element.
struct OpenedDocument {
  std::unique_ptr<CXMLTopLevelFolder> document; // null when the file was not read, or is of no kind
  const char *kind = "";
  long result = S_OK;
  std::string place; // "LINE:COLUMN:" in a file that is not well-formed
  std::string reason;
  bool unreadable = false; // there is no file, or the system does not let it be read

  bool failed() const { return result < 0; }
};

/// Finds out what kind of document `file` is and loads it with the class for it. A path means that file and nothing
/// else. A name that is a macro, such as '$StdVorlanTyp$', means what programs get: add-on files, the user's own and a
/// replacement take part.
OpenedDocument openDocument(const std::string &file);

/// Puts the reason of a failed load of `file` into words.
void explain(OpenedDocument &opened, const char *file);

/// "FILE:LINE:COLUMN: reason (KRX_E_UNEXPECTED_DATA)": why a document could not be loaded whole.
std::string failureText(const std::string &file, const OpenedDocument &opened);

/// Prints the message to the standard error stream, and returns the status for it, 2.
int couldNotWork(const std::string &message);

/// The text of the member with that tag; empty when there is none. A collection gives the number of its items.
std::string memberText(CXMLFolder &folder, const char *tag);
