#pragma once

#include <poll.h>
#include <pulse/mainloop.h>

#include <functional>
#include <memory>
#include <vector>

#include "base/loop.h"
#include "platform/wake/descriptor_waits.h"

namespace tavlo::platform {

/// libpulse's own loop, on the thread of the deck's loop and without a wait of its own: it is
/// turned when one of its descriptors has something to tell or one of its times has come, and
/// otherwise nothing runs.
class PulseMainloop {
 public:
  /// `onTurned` runs behind each turn. Loop and waits, which are commonly one object, must outlive
  /// this one.
  PulseMainloop(base::Loop& loop, DescriptorWaits& waits, std::function<void()> onTurned);
  ~PulseMainloop();
  PulseMainloop(const PulseMainloop&) = delete;
  PulseMainloop& operator=(const PulseMainloop&) = delete;

  pa_mainloop_api* Api() { return pa_mainloop_get_api(mainloop_); }
  /// Sends with the next pass what was asked of libpulse. To be called after every request.
  void Wake() { pa_mainloop_wakeup(mainloop_); }

 private:
  void Turn();
  void TurnLibrary();
  void WaitForWhatItWaitsFor();
  static int Poll(pollfd* descriptors, unsigned long count, int timeout, void* self);

  const std::function<void()> onTurned_;
  pa_mainloop* const mainloop_;
  /// One descriptor that can be read when any of the library's is ready.
  const int epoll_;
  std::vector<pollfd> wanted_;  ///< What the library last wanted to wait for.
  std::vector<int> inEpoll_;
  /// How long it wanted to wait at most; negative for as long as it takes.
  int millisecondsWanted_ = -1;
  base::Timer timeout_;
  std::unique_ptr<DescriptorWait> wait_;
};

}  // namespace tavlo::platform
