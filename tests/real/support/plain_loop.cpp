#include "support/plain_loop.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <thread>
#include <utility>

namespace tavlo::test {

using base::Duration;
using base::MonotonicTime;

class PlainLoop::Wakening : public platform::DescriptorWait {
 public:
  Wakening(PlainLoop& loop, int waitedFor, std::string what, std::function<void()> todo,
           bool breathsToo)
      : descriptor(waitedFor),
        name(std::move(what)),
        call(std::move(todo)),
        inBreathsToo(breathsToo),
        loop_(loop) {
    loop_.waits_.push_back(this);
  }
  ~Wakening() override { std::erase(loop_.waits_, this); }
  Wakening(const Wakening&) = delete;

  const int descriptor;
  const std::string name;
  const std::function<void()> call;
  const bool inBreathsToo;

 private:
  PlainLoop& loop_;
};

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
    if (!HasPosts()) SleepUntilNextDue(end, Sleep::Whole);
    RunPass();
  }
  return true;
}

bool PlainLoop::BreatheUntil(const std::function<bool()>& done, MonotonicTime limit) {
  while (true) {
    RunFeeds();
    if (done()) return true;
    if (Now() >= limit) return false;
    SleepUntilNextDue(limit, Sleep::Breath);
  }
}

void PlainLoop::SleepUntilNextDue(MonotonicTime end, Sleep sleep) {
  const bool breath = sleep == Sleep::Breath;
  const auto next = breath ? Timers().NextDue(base::TimerKind::Feed) : Timers().NextDue();
  const MonotonicTime due = next ? std::min(end, *next) : end;
  const Duration left = std::max(due - Now(), Duration{0});
  const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
  const timespec limit{.tv_sec = seconds.count(),
                       .tv_nsec = std::chrono::nanoseconds(left - seconds).count()};
  std::vector<Wakening*> waits = waits_;
  if (breath) std::erase_if(waits, [](const Wakening* wait) { return !wait->inBreathsToo; });
  std::vector<pollfd> descriptors;
  for (const Wakening* const wait : waits) {
    descriptors.push_back({.fd = wait->descriptor, .events = POLLIN, .revents = 0});
  }
  ::ppoll(descriptors.data(), descriptors.size(), &limit, nullptr);
  ++Wakenings;
  for (std::size_t i = 0; i < waits.size(); ++i) {
    // A call may have ended a wait that stands behind its own.
    const bool waitsStill = std::ranges::find(waits_, waits[i]) != waits_.end();
    if (descriptors[i].revents == 0 || !waitsStill) continue;
    const auto call = waits[i]->call;
    RunEvent(waits[i]->name, call);
  }
}

std::unique_ptr<platform::DescriptorWait> PlainLoop::WaitFor(int descriptor, std::string name,
                                                             std::function<void()> call) {
  return std::make_unique<Wakening>(*this, descriptor, std::move(name), std::move(call), false);
}

std::unique_ptr<platform::DescriptorWait> PlainLoop::WaitInBreathsToo(int descriptor,
                                                                      std::string name,
                                                                      std::function<void()> call) {
  return std::make_unique<Wakening>(*this, descriptor, std::move(name), std::move(call), true);
}

base::Reply PlainLoop::ShowBox(const base::MessageBox& box) {
  Shown.push_back(box);
  return box.buttons == base::Buttons::Ok ? base::Reply::Ok : base::Reply::No;
}

void Sleep(Duration length) { std::this_thread::sleep_for(length); }

}  // namespace tavlo::test
