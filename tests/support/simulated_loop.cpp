#include "support/simulated_loop.h"

#include <algorithm>
#include <chrono>

namespace tavlo::test {
namespace {

using std::chrono::days;
using std::chrono::milliseconds;
using std::chrono::sys_days;
using std::chrono::sys_time;

}  // namespace

base::CalendarTime SimulatedLoop::WallClock() const {
  const sys_time<milliseconds> moment{milliseconds{wallClockStart_} +
                                      std::chrono::duration_cast<milliseconds>(now_)};
  const auto day = std::chrono::floor<days>(moment);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss time{moment - day};
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .hour = static_cast<int>(time.hours().count()),
          .minute = static_cast<int>(time.minutes().count()),
          .second = static_cast<int>(time.seconds().count()),
          .millisecond = static_cast<int>(time.subseconds().count())};
}

void SimulatedLoop::SetWallClock(base::CalendarTime moment) {
  const sys_days day = std::chrono::year{moment.year} / moment.month / moment.day;
  const auto time = std::chrono::hours{moment.hour} + std::chrono::minutes{moment.minute} +
                    std::chrono::seconds{moment.second} + milliseconds{moment.millisecond};
  wallClockStart_ =
      std::chrono::duration_cast<milliseconds>(day.time_since_epoch() + time).count() -
      std::chrono::duration_cast<milliseconds>(now_).count();
}

void SimulatedLoop::Wait(base::Duration length) {
  const base::Duration end = now_ + length;
  RunPass();
  while (true) {
    const auto due = Timers().NextDue();
    if (!HasPosts() && (!due || due->sinceStart > end)) break;
    if (due && !HasPosts()) now_ = std::max(now_, due->sinceStart);
    RunPass();
  }
  now_ = std::max(now_, end);
}

void SimulatedLoop::Oversleep(base::Duration length) {
  now_ += length;
  RunPass();
}

void SimulatedLoop::Breathe() {
  ++Breaths;
  RunFeeds();
}

bool SimulatedLoop::BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) {
  while (true) {
    Breathe();
    if (done()) return true;
    if (Now() >= limit) return false;
    const auto feed = Timers().NextDue(base::TimerKind::Feed);
    const base::MonotonicTime next = feed ? std::clamp(*feed, Now(), limit) : limit;
    BreathedFor += next - Now();
    now_ = next.sinceStart;
  }
}

bool SimulatedLoop::TurnUntil(const std::function<bool()>& done, base::MonotonicTime limit) {
  while (true) {
    RunPass();
    if (done()) return true;
    if (Now() >= limit) return false;
    if (HasPosts()) continue;
    const auto due = Timers().NextDue();
    now_ = (due ? std::clamp(*due, Now(), limit) : limit).sinceStart;
  }
}

base::Reply SimulatedLoop::ShowBox(const base::MessageBox& box) {
  Shown.push_back(box);
  if (answers_.empty()) {
    return box.buttons == base::Buttons::Ok ? base::Reply::Ok : base::Reply::No;
  }
  const Answer answer = std::move(answers_.front());
  answers_.pop_front();
  if (answer.meanwhile) answer.meanwhile();
  Wait(answer.delay);
  return answer.reply;
}

}  // namespace tavlo::test
