#include "platform/mixer/pulse_mainloop.h"

#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace tavlo::platform {
namespace {

using std::chrono::milliseconds;

constexpr const char* kName = "SourceMixer";
/// More than any burst of messages takes; the rest waits for the next pass.
constexpr int kTurnsOfAPass = 64;

}  // namespace

PulseMainloop::PulseMainloop(base::Loop& loop, DescriptorWaits& waits,
                             std::function<void()> onTurned)
    : onTurned_(std::move(onTurned)),
      mainloop_(pa_mainloop_new()),
      epoll_(::epoll_create1(EPOLL_CLOEXEC)),
      timeout_(loop, kName, milliseconds(0)),
      wait_(waits.WaitFor(epoll_, kName, [this] { Turn(); })) {
  timeout_.OnTick = [this] { Turn(); };
  pa_mainloop_set_poll_func(mainloop_, Poll, this);
  TurnLibrary();
}

PulseMainloop::~PulseMainloop() {
  wait_.reset();
  ::close(epoll_);
  pa_mainloop_free(mainloop_);
}

void PulseMainloop::Turn() {
  timeout_.Stop();
  TurnLibrary();
  onTurned_();
}

void PulseMainloop::TurnLibrary() {
  int dispatched = 1;
  for (int turn = 0; turn < kTurnsOfAPass && dispatched > 0; ++turn) {
    const bool polled =
        pa_mainloop_prepare(mainloop_, /*timeout=*/-1) >= 0 && pa_mainloop_poll(mainloop_) >= 0;
    dispatched = polled ? pa_mainloop_dispatch(mainloop_) : -1;
  }
  if (dispatched > 0) Wake();
  WaitForWhatItWaitsFor();
}

void PulseMainloop::WaitForWhatItWaitsFor() {
  std::vector<int> taken;
  for (const pollfd& each : wanted_) {
    epoll_event wanted{.events = static_cast<std::uint32_t>(each.events), .data = {}};
    // One that was closed has left by itself, and another may have come under its number.
    if (::epoll_ctl(epoll_, EPOLL_CTL_MOD, each.fd, &wanted) != 0) {
      ::epoll_ctl(epoll_, EPOLL_CTL_ADD, each.fd, &wanted);
    }
    taken.push_back(each.fd);
  }
  for (const int before : inEpoll_) {
    const bool wanted = std::ranges::find(taken, before) != taken.end();
    if (!wanted) ::epoll_ctl(epoll_, EPOLL_CTL_DEL, before, nullptr);
  }
  inEpoll_ = std::move(taken);
  if (millisecondsWanted_ >= 0) {
    timeout_.SetInterval(milliseconds(std::max(millisecondsWanted_, 1)));
    timeout_.Start();
  }
}

/// Notes what the library wants to wait for instead of waiting.
int PulseMainloop::Poll(pollfd* descriptors, unsigned long count, int timeout, void* self) {
  auto& loop = *static_cast<PulseMainloop*>(self);
  loop.wanted_.assign(descriptors, descriptors + count);
  loop.millisecondsWanted_ = timeout;
  return ::poll(descriptors, count, 0);
}

}  // namespace tavlo::platform
