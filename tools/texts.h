#pragma once

#include "tools/document.h"

#include <string>
#include <string_view>

// The texts of members, as they stand in a file. The library takes a prefix off the text of some members when it loads
// them, and puts it back when it saves.

/// The text of a member as it stands in the file, or its default if the file lacks it.
std::string textInFile(const Record &record, const Member &member);

/// Gives a member the text that it gets from a file in which `text` stands, and changes nothing else of it.
void putText(const Record &record, const Member &member, std::string_view text);

/// Gives a member that no file has filled the text that a new record is to have in a file.
void putDefault(const Record &record, const Member &member);

/// Why XML cannot carry a text, in words; empty if it can.
std::string whyNotXml(std::string_view text);
