#include "support/plain_loop.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <thread>

namespace tavlo::test {

using base::Duration;
using base::MonotonicTime;

MonotonicTime PlainLoop::Now() const {
  return {
      std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch())};
}

base::CalendarTime PlainLoop::WallClock() const {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec};
}

void PlainLoop::Wait(Duration length) {
  WaitUntil([] { return false; }, length);
}

bool PlainLoop::WaitUntil(const std::function<bool()>& done, Duration limit) {
  const MonotonicTime end = Now() + limit;
  RunPass();
  while (!done()) {
    if (Now() >= end) return false;
    if (!HasPosts()) SleepUntilNextDue(end);
    RunPass();
  }
  return true;
}

void PlainLoop::SleepUntilNextDue(MonotonicTime end) {
  MonotonicTime due = end;
  if (const auto next = Timers().NextDue()) due = std::min(due, *next);
  if (due > Now()) Sleep(due - Now());
}

base::Reply PlainLoop::ShowBox(const base::MessageBox& box) {
  Shown.push_back(box);
  return box.buttons == base::Buttons::Ok ? base::Reply::Ok : base::Reply::No;
}

void Sleep(Duration length) { std::this_thread::sleep_for(length); }

}  // namespace tavlo::test
