#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// What every command says in the same way: its status, and why something was not found or could not be done.

/// What the program answers to whoever started it.
enum Status : int {
  kYes = 0,          ///< Yes, the same, sound.
  kNo = 1,           ///< No, different, findings.
  kCouldNotWork = 2, ///< Wrong usage, a file that is missing or unreadable, an output that is not writable.
};

/// Why a command, or one of its files, could not be worked on: status 2.
struct CouldNotWork : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Prints "kestrune-data: MESSAGE" to the standard error stream, whatever the texts in it hold.
void complain(const std::string &message);

/// Those of `candidates` that are near to `word`: all that hold it, or else all that differ from it by a few letters;
/// the nearest first, at most `most`. The case of letters does not count.
std::vector<std::string> nearTo(std::string_view word, const std::vector<std::string> &candidates,
                                std::size_t most = 8);

/// "WHERE has no 'WORD'; there are: A, B", where the candidates are those near to the word, or else those of `others`
/// that are, or simply the first ones.
std::string notFound(const std::string &where, const std::string &word, const std::vector<std::string> &candidates,
                     const std::vector<std::string> &others = {});
