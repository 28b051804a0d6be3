#include "platform/serial/line_waiter.h"

#include <pthread.h>

#include <chrono>
#include <csignal>

namespace tavlo::platform {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// A contact stays for longer, as a rule.
constexpr microseconds kHasty{100};
constexpr milliseconds kBetweenSignals{1};

/// Does nothing: that it was called is what ends a wait.
void HandleSignal(int) {}

void TakeOverSignal() {
  struct sigaction ours = {};
  ours.sa_handler = HandleSignal;
  ::sigaction(SIGRTMIN, &ours, nullptr);
}

}  // namespace

LineWaiter::LineWaiter(ModemLines& lines, int port) : lines_(lines), port_(port) {
  TakeOverSignal();
  thread_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

LineWaiter::~LineWaiter() {
  thread_.request_stop();
  // A signal that comes just before a wait does not end it, so there may have to be another.
  do {
    ::pthread_kill(thread_.native_handle(), SIGRTMIN);
  } while (!ended_.try_acquire_for(kBetweenSignals));
}

void LineWaiter::Run(const std::stop_token& stop) {
  int hastyWaits = 0;
  while (!stop.stop_requested() && hastyWaits < kMostHastyWaits) {
    const auto begun = steady_clock::now();
    waits_ = true;
    const ModemLines::Wait ended = lines_.AwaitChange(port_);
    waits_ = false;
    if (ended == ModemLines::Wait::Impossible) break;
    if (ended == ModemLines::Wait::Changed) news_.Ring();
    hastyWaits = steady_clock::now() - begun < kHasty ? hastyWaits + 1 : 0;
  }
  // Whoever relies on being told must look for himself from here on.
  news_.Ring();
  ended_.release();
}

}  // namespace tavlo::platform
