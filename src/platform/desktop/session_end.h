#pragma once

#include <functional>
#include <memory>

namespace tavlo::platform::desktop {

/// Tells when the desktop's session ends: by a signal that asks the process to end, by the session
/// manager, or because the server of the screen is gone. A signal that was ignored when the process
/// began stays ignored, as whoever started it so wants it. Programs that we start get the signals
/// as they were.
///
/// One for each process, on the thread of the QApplication, for as long as the loop turns.
class SessionEnd {
 public:
  struct Calls {
    /// The session ends. The loop goes on turning until the process is ended, which may be in here.
    /// May come again.
    std::function<void()> ends;
    /// The screen is gone. The call comes out of the toolkit, at any depth of the loop, and nothing
    /// may reach the toolkit's windows any more; the process ends with status 0 when it returns.
    std::function<void()> screenGone;
  };
  explicit SessionEnd(Calls calls);
  ~SessionEnd();
  SessionEnd(const SessionEnd&) = delete;

 private:
  class Watch;
  std::unique_ptr<Watch> watch_;
};

}  // namespace tavlo::platform::desktop
