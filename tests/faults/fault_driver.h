#pragma once

#include "tests/faults/operations.h"

// Runs each operation again and again, each time with a later call of the host failing, and each time in its own
// process, so that what one failure leaves cannot affect the next run.

namespace faults {

/// What fails: host calls that the program has replaced.
class Fault {
public:
  Fault() = default;
  Fault(const Fault &) = delete;
  Fault &operator=(const Fault &) = delete;
  virtual ~Fault() = default;

  virtual std::string name() const = 0;
  /// Makes call number `number`, counted from 1, fail, and all later ones too if `forEver`.
  virtual void arm(long number, bool forEver) = 0;
  /// Stops the failures. Returns whether a call has failed.
  virtual bool disarm() = 0;

  /// Whether an operation must not notice the fault at all.
  virtual bool mustPassUnseen() const { return false; }
  /// Whether a file may be left neither old nor new, because the old bytes could not be written back.
  virtual bool mayTearFile(bool /*forEver*/) const { return false; }
  /// Whether a file can look missing or unreadable, which is not a failure for files that no caller named.
  virtual bool mayHideFile() const { return false; }
  /// The number of allocated blocks, or 0 if they are not counted.
  virtual long liveBlocks() const { return 0; }
};

/// Runs all scenarios with each fault, in a new folder. Prints what went wrong, and the counts. Returns the exit status
/// of the program.
int Run(const std::vector<Fault *> &faults);

} // namespace faults
