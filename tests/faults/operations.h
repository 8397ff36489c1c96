#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

// The operations that the fault programs let fail: each reads, writes, copies or resolves something small in a work
// folder.

namespace faults {

/// One operation and the objects that it works on. It can be acted again after a failure.
class Operation {
public:
  Operation() = default;
  Operation(const Operation &) = delete;
  Operation &operator=(const Operation &) = delete;
  virtual ~Operation() = default;

  /// What may fail. Returns the operation's own result.
  virtual long act() = 0;
  /// All texts that a success has made or left.
  virtual std::string outcome() = 0;
  /// Whether `result` is a failure that the operation documents.
  virtual bool documents(long result) const = 0;
  /// What is broken now, after `act` has failed or thrown; empty when all is as promised.
  virtual std::string damage() { return {}; }
};

struct Scenario {
  const char *name;
  /// Whether the library has done the same before in this process.
  bool warm;
  std::function<std::unique_ptr<Operation>()> make;
  /// Only in the absence of memory is an unread file a failure of the whole: for the transceivers, whose result is that
  /// of the user's file, and for the first use of a macro, which takes the fall-back for an unreadable registry.
  bool passesOverFiles = false;
  /// Only every stride-th call fails: for operations with very many.
  long stride = 1;
};

std::vector<Scenario> Scenarios();

/// A new current folder with the files that the operations need, and a registry that names it. It goes with the object.
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
