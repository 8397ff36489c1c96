#pragma once

#include "tests/faults/operations.h"

// Acts each operation again and again, each time with a later call of the host failing, and each time in a process of
// its own, so that what is left of a failure harms no other.

namespace faults {

/// What fails: calls of the host that the program has replaced.
class Fault {
public:
  Fault() = default;
  Fault(const Fault &) = delete;
  Fault &operator=(const Fault &) = delete;
  virtual ~Fault() = default;

  virtual std::string name() const = 0;
  /// Lets call number `number`, counted from 1, fail, and all later ones if `forEver`.
  virtual void arm(long number, bool forEver) = 0;
  /// Ends it; whether a call has failed.
  virtual bool disarm() = 0;

  /// Whether an operation must not notice it at all.
  virtual bool mustPassUnseen() const { return false; }
  /// Whether a file that is being written may be neither old nor new, since nobody could write the old bytes back.
  virtual bool mayTearFile(bool /*forEver*/) const { return false; }
  /// Whether a file can seem to be missing or unreadable, which is no failure for those that nobody named.
  virtual bool mayHideFile() const { return false; }
  /// The number of blocks that are allocated, or 0 where nobody counts.
  virtual long liveBlocks() const { return 0; }
};

/// Runs all scenarios with each fault, in a new folder. Prints what went wrong, and the counts. Returns the status of
/// the program.
int Run(const std::vector<Fault *> &faults);

} // namespace faults
