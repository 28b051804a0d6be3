#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "base/time.h"

namespace tavlo::base {

class Loop;
class Timer;

/// Rule timers carry the rules' ticks and wait while the loop only breathes. Feed timers serve a
/// device (the player's blocks) and run even then, so they must never touch a rule's state in a way
/// that a scan could notice.
enum class TimerKind { Rule, Feed };

/// The running timers of one loop, ordered by (due, start number): timers that are due together run
/// in the order in which they were started. The queue reads no clock: its caller says what time it
/// is.
class TimerQueue {
 public:
  /// When the next timer of that kind is due; nothing when none runs.
  std::optional<MonotonicTime> NextDue(TimerKind kind) const;
  /// When the next timer of any kind is due.
  std::optional<MonotonicTime> NextDue() const;

  /// Takes the first timer that is due at `now` and re-arms it one interval after `now`, so that a
  /// loop that overslept several ticks runs one of them. Nothing when none is due.
  Timer* TakeDue(MonotonicTime now, std::optional<TimerKind> onlyKind = {});

 private:
  friend class Timer;

  struct Entry {
    MonotonicTime due;
    std::uint64_t startNumber;
    Timer* timer;
    bool operator<(const Entry& other) const {
      return due != other.due ? due < other.due : startNumber < other.startNumber;
    }
  };

  void Arm(Timer& timer, MonotonicTime due);
  void Disarm(Timer& timer);

  std::set<Entry> entries_;
  std::uint64_t lastStartNumber_ = 0;
};

/// A timer that ticks every `Interval` while it is enabled. The rules use it in one-shot form: a
/// tick stops its timer first and starts it again last. Lives on the loop's thread and must not
/// outlive the loop.
class Timer {
 public:
  /// `name` is the timer's name in the domain; a failure in a tick names it.
  Timer(Loop& loop, std::string name, Duration interval, TimerKind kind = TimerKind::Rule);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  /// Starts counting one whole interval from now, also when it runs already. An interval of zero or
  /// less never ticks.
  void Start();
  /// Starts with a tick that is due now; the next ones come an interval apart, or never as with
  /// `Start`.
  void StartDue();
  void Stop();
  bool Enabled() const { return enabled_; }

  Duration Interval() const { return interval_; }
  /// A running timer counts the new interval from now.
  void SetInterval(Duration interval);

  const std::string& Name() const { return name_; }
  TimerKind Kind() const { return kind_; }

  std::function<void()> OnTick;

 private:
  void StartWith(MonotonicTime firstDue);
  friend class TimerQueue;

  Loop& loop_;
  std::string name_;
  Duration interval_;
  TimerKind kind_;
  bool enabled_ = false;
  std::optional<TimerQueue::Entry> armed_;
};

}  // namespace tavlo::base
