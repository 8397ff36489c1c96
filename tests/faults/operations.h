#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

// The operations that the fault programs make fail: each reads, writes, copies or resolves something small in a work
// folder.

namespace faults {

/// One operation and the objects that it works on. It can be run again after a failure.
class Operation {
public:
  Operation() = default;
  Operation(const Operation &) = delete;
  Operation &operator=(const Operation &) = delete;
  virtual ~Operation() = default;

  /// The part that may fail. Returns the operation's own result.
  virtual long act() = 0;
  /// All texts that a success has made or left.
  virtual std::string outcome() = 0;
  /// Whether `result` is a documented failure of the operation.
  virtual bool documents(long result) const = 0;
  /// What is broken after `act` has failed or thrown; empty if everything is as promised.
  virtual std::string damage() { return {}; }
};

struct Scenario {
  const char *name;
  /// Whether the library has already done the same in this process.
  bool warm;
  std::function<std::unique_ptr<Operation>()> make;
  /// Whether a file that cannot be read is skipped, so that only a lack of memory fails the operation. So it is with
  /// the transceivers, whose result is that of the user's file, and with the first use of a macro, which uses the
  /// fallback for an unreadable registry.
  bool passesOverFiles = false;
  /// Only every stride-th call fails, for operations with very many calls.
  long stride = 1;
};

std::vector<Scenario> Scenarios();

/// Creates a new current folder with the files that the operations need, and a registry that names it. The destructor
/// removes it.
class WorkFolder {
public:
  WorkFolder();
  WorkFolder(const WorkFolder &) = delete;
  WorkFolder &operator=(const WorkFolder &) = delete;
  ~WorkFolder();

private:
  std::string m_path;
};

std::string Read(const std::string &path);
void Write(const std::string &path, const std::string &bytes);

} // namespace faults
