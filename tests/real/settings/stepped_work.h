#pragma once

#include <functional>
#include <string>

namespace tavlo::test {

/// Where a piece of work is killed.
enum class Moment {
  BeforeCall,  ///< The call is never made.
  HalfWritten  ///< The call writes, and half of its bytes are written.
};

enum class Outcome { Killed, Finished, Failed, NotPermitted };

struct SteppedWork {
  Outcome outcome = Outcome::Failed;
  /// Of the call at which it was killed.
  bool writes = false;   ///< It puts bytes into a file.
  bool changes = false;  ///< It does, or cuts, removes or flushes one.
};

/// Does a piece of work in a process of its own and kills that at one of the system calls of the
/// work, which count from 1. `prepare` runs in that process, too, before anything counts, and gives
/// the work; that tells whether it succeeded. With fewer calls, or where a call that does not write
/// would be half written, nothing is killed.
SteppedWork KillAtCall(int call, Moment moment,
                       const std::function<std::function<bool()>()>& prepare);

}  // namespace tavlo::test
