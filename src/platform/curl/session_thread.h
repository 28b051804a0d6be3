#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "platform/curl/ftp_limits.h"
#include "platform/curl/ftp_session.h"
#include "platform/curl/tether.h"
#include "platform/curl/transfer.h"
#include "platform/wake/bell.h"

namespace tavlo::platform {

/// What a thread is asked to do for the loop, with what it answers.
struct FtpOrder {
  /// Returns the result. It owns all that it touches, since the loop may not wait for it.
  std::function<int(FtpSession&)> work;
  /// What is to be received once the result is 0; null for an order that is no file.
  std::shared_ptr<Transfer> transfer;

  std::string text;  ///< The work's, until it has returned.
  int result = 0;    ///< The same.
  std::atomic<bool> returned = false;
};

/// The thread of one log-in, which lets it go at full speed whatever the loop does. One that is
/// stuck, in a look-up of a name or at a disk that gives no answer, is left behind with all that it
/// owns. Used on the loop's thread; nothing here waits for the other one.
class SessionThread : public std::enable_shared_from_this<SessionThread> {
 public:
  /// The bell is rung whenever an order has returned.
  SessionThread(const FtpLimits& limits, std::shared_ptr<Bell> bell)
      : limits_(limits), bell_(std::move(bell)) {}
  SessionThread(const SessionThread&) = delete;

  /// False when there is no thread to be had.
  bool Start();
  /// Takes an order behind those that were taken before.
  void Take(std::shared_ptr<FtpOrder> order);
  /// Does what was ordered, logs out, and ends.
  void Finish();
  /// Ends where it is; what was ordered and has not begun is not done.
  void Cut();
  /// Changes as long as the thread is not stuck.
  std::uint64_t Signs() const { return tether_->Signs(); }

 private:
  void Run();
  /// The next order; null when there is none to come.
  std::shared_ptr<FtpOrder> AwaitOrder();
  void Do(FtpSession& session, FtpOrder& order);

  const FtpLimits limits_;
  const std::shared_ptr<Bell> bell_;
  const std::shared_ptr<Tether> tether_ = std::make_shared<Tether>();
  std::mutex mutex_;
  std::condition_variable wanted_;
  std::deque<std::shared_ptr<FtpOrder>> orders_;
  bool ends_ = false;
};

}  // namespace tavlo::platform
