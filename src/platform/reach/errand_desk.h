#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>

#include "platform/reach/errands.h"
#include "platform/wake/bell.h"

namespace tavlo::platform {

/// What the loop waits on while it breathes. Rung by any thread, and only while it is listened to.
struct Answers {
  Bell bell;
  std::atomic<bool> listened = false;
};

/// One piece of work at a desk.
struct Errand {
  std::function<void(Errands::Sign&)> work;
  std::exception_ptr failure;  ///< To be looked at once it has returned.
  std::atomic<bool> returned = false;
};

/// The errands of one place, done one after the other by one thread, which is there while there is
/// something to do and a while longer. What the thread touches is owned here and by the errands, so
/// it may be left behind in a call that gives no answer. Called on the loop's thread.
class ErrandDesk : public std::enable_shared_from_this<ErrandDesk> {
 public:
  /// A thread that has had nothing to do for `idle` ends.
  ErrandDesk(std::shared_ptr<Answers> answers, std::chrono::milliseconds idle)
      : answers_(std::move(answers)), idle_(idle) {}
  ErrandDesk(const ErrandDesk&) = delete;

  /// Errands for which the loop waits, one inside the other.
  int Awaited = 0;

  /// Takes an errand behind those that were taken before. False when there is no thread to be had.
  bool Take(const std::shared_ptr<Errand>& errand);
  /// Takes back an errand that has not begun.
  void TakeBack(const std::shared_ptr<Errand>& errand);
  /// Waits, without the loop, until `done` or for so long; says whether `done`. It is asked at
  /// each sign that tells, and may ask nothing of the desk.
  bool Watch(const std::function<bool()>& done, std::chrono::milliseconds length);
  /// How many signs there were. The end of an errand is one, too, and tells.
  std::uint64_t Signs() const { return signs_; }

  /// The errand at hand is left behind: the desk owes an answer until it has returned.
  void LeaveBehind();
  bool Owes();
  /// Errands that have not begun.
  std::size_t Waiting();
  /// Nothing is at hand and there is no thread.
  bool IsClosed();
  /// Ends the thread and waits for that; a thread that is at work ends after its errand, and nobody
  /// waits.
  void Close();

 private:
  class DeskSign;

  void Work();
  /// The next errand; null when the thread is to end.
  std::shared_ptr<Errand> AwaitErrand(std::unique_lock<std::mutex>& hold);
  void Tell();

  const std::shared_ptr<Answers> answers_;
  const std::chrono::milliseconds idle_;
  std::atomic<std::uint64_t> signs_ = 0;
  std::mutex mutex_;
  std::condition_variable wanted_;  ///< For the thread.
  std::condition_variable told_;    ///< For the loop.
  std::deque<std::shared_ptr<Errand>> waiting_;
  bool atWork_ = false;
  bool owes_ = false;
  bool runs_ = false;  ///< There is a thread.
  bool closed_ = false;
};

}  // namespace tavlo::platform
