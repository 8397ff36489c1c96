#pragma once

#include "kestrune/kestrune_xml.h"

#include <memory>
#include <string>
#include <vector>

// Opening a file by what it is.

/// A document of the class that fits a file's root element.
struct OpenedDocument {
  std::unique_ptr<CXMLTopLevelFolder> document; // null when the file was not read, or is of no kind
  const char *kind = "";
  long result = S_OK;
  std::vector<kestrune::Finding> findings; // what is wrong with it, and with files that belong to it
  bool unreadable = false;                 // there is no file, or the system does not let it be read

  bool failed() const { return result < 0; }
  /// Takes what the load of `folder` has found.
  void takeReport(const CXMLFolder &folder);
};

/// Finds out what kind of document `file` is and loads it with the class for it. A path means that file and nothing
/// else. A name that is a macro, such as '$StdVorlanTyp$', means what programs get: add-on files, the user's own and a
/// replacement take part.
OpenedDocument openDocument(const std::string &file);

/// "FILE:LINE:COLUMN: reason (KRX_E_UNEXPECTED_DATA)": why a document could not be loaded whole. `file` itself is
/// called as the user calls it.
std::vector<std::string> failureTexts(const std::string &file, const OpenedDocument &opened);

/// Prints these to the standard error stream, and returns the status for it, 2.
int couldNotWork(const std::string &file, const OpenedDocument &opened);

/// Prints the message to the standard error stream, and returns the status for it, 2.
int couldNotWork(const std::string &message);

/// The text of the member with that tag; empty when there is none. A collection gives the number of its items.
std::string memberText(CXMLFolder &folder, const char *tag);
