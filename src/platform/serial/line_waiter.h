#pragma once

#include <atomic>
#include <semaphore>
#include <thread>

#include "platform/serial/modem_lines.h"
#include "platform/wake/bell.h"

namespace tavlo::platform {

/// A thread that waits for the lines of an open port to change, until it is destroyed. A signal of
/// its own ends its wait, SIGRTMIN, whose handler it sets for the process.
class LineWaiter {
 public:
  /// Waits that may return at once, one right after the other, before the port is taken for one
  /// that cannot wait. No contact bounces so often.
  static constexpr int kMostHastyWaits = 1000;

  /// Port and lines must outlive this. Throws std::system_error when the process has no descriptor
  /// or the machine no thread left.
  LineWaiter(ModemLines& lines, int port);
  ~LineWaiter();
  LineWaiter(const LineWaiter&) = delete;

  /// True while the thread waits, or is just about to. False between two waits, and for good when
  /// the port cannot wait.
  bool Waits() const { return waits_; }
  /// It can be read once a wait has ended, until `Forget`.
  int NewsDescriptor() const { return news_.Descriptor(); }
  /// True when a wait had ended.
  bool Forget() const { return news_.Silence(); }

 private:
  void Run(const std::stop_token& stop);

  ModemLines& lines_;
  const int port_;
  Bell news_;
  std::atomic<bool> waits_ = false;
  std::binary_semaphore ended_{0};
  std::jthread thread_;
};

}  // namespace tavlo::platform
