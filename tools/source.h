#pragma once

#include <string>
#include <vector>

/// A file as it was read: once, from its beginning to its end.
struct Source {
  std::string name; ///< As messages call it.
  std::string path; ///< On the host; empty for the standard input.
  std::string bytes;
};

/// The path on the host that a FILE of the command line means: the path itself, or, if nothing is there, the file of
/// that name in drive form or in another case. Throws CouldNotWork for an empty name.
std::string hostPath(const std::string &file);

/// Reads a FILE of the command line; `-` is the standard input, which messages call `inputName`. Throws CouldNotWork
/// with the system's words.
Source readSource(const std::string &file, const std::string &inputName = {});

/// The FILEs of the command line, with each folder replaced by the data files in it and in the folders below, which are
/// the files that end in .xml, in the order of their names. Throws CouldNotWork for a folder without any.
std::vector<std::string> withoutFolders(const std::vector<std::string> &files);
