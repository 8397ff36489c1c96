#pragma once

#include "tools/address.h"
#include "tools/files.h"
#include "tools/output.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// Changes of data files, all or none, and how they are written.

/// Why a change is refused, a reason a line: status 1.
struct Refused {
  std::vector<std::string> reasons;
};

/// Reads a file that is to be written again, or converted: the file alone, without add-ons. A macro means the file that
/// programs read first. Throws CouldNotWork.
Source readAlone(const FileOptions &options);

/// Throws CouldNotWork if nothing can be made of a document. Items that a load leaves out are no reason: they are
/// among the losses.
void checkUsable(const Document &document);

/// The bytes of the file that a save would write. Throws CouldNotWork.
std::string savedBytes(const Document &document);

/// What a save would not keep of a file.
struct Loss {
  std::string text;       ///< "FILE:LINE:COLUMN: what it is".
  bool isContent = false; ///< Whether it is more than order, line ends and encoding.
};
/// All losses, in the order of the file.
std::vector<Loss> lossesOf(const Source &source);
/// Where a file first differs from the layout of a save, as a loss.
Loss layoutLoss(const Source &source, const std::string &saved);
/// Complains of losses; of very many not of each.
void complainOf(const std::vector<Loss> &losses);

/// Throws CouldNotWork if `out` is a file that exists and is not `in`, unless it may be replaced.
void checkTarget(const std::string &out, const std::string &in, bool mayReplace);
/// Writes a file with the replacing save; `-` is the standard output. Throws CouldNotWork.
void writeFile(const std::string &file, const std::string &bytes);

/// What commands that change a file in place have in common.
struct ChangeOptions {
  std::shared_ptr<FileOptions> files;
  std::shared_ptr<Output> output;
  bool relayout = false;
  bool dryRun = false;
  bool force = false;
};
/// Gives a command the argument FILE and the options of each change.
void addChange(Command &command, ChangeOptions &options, const std::string &forceText);

/// A change of a document; returns the lowest format version that has all that it needs. Throws Refused.
using Change = std::function<int(const Document &)>;
/// Carries a change out and writes the file, or prints the diff; returns the status. A change that makes `check` find
/// new errors is refused if `mustBeSound`, and otherwise they are only told.
int carryOut(const ChangeOptions &options, bool mustBeSound, const Change &change);

/// ADDRESS=TEXT, as it was understood.
struct Assignment {
  Found found;
  std::string text;
};
/// Finds the members that words such as `ADDRESS=TEXT` name, below `road` unless that is empty. Throws Refused with
/// all that is wrong with them; a text that `check` calls an error is, unless `force`.
std::vector<Assignment> resolve(const Document &document, const std::string &road,
                                const std::vector<std::string> &words, bool force);
/// Gives the members their texts, and returns the version needed. Throws Refused for a key that is there already.
int assign(const Document &document, const std::vector<Assignment> &assignments, bool force);

/// The one thing that an address leads to. Throws Refused.
Found findOne(const Document &document, const std::string &address);

/// Gives an item its key.
void putKey(CXMLFolder &item, const RecordShape &shape, const std::string &key);
/// Throws Refused if another item of the collection has that key, or its key attribute has that text.
void checkKey(const Document &document, const Record &item, const std::string &key);
