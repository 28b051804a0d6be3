#include "platform/keys/grab_thread.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>

#include "platform/keys/cut_when_stopped.h"

namespace tavlo::platform {
namespace {

using remote::KeyGrant;
using remote::KeyState;
using remote::KeyWish;
using std::chrono::steady_clock;

std::vector<KeyGrant> AllOf(const std::vector<KeyWish>& wishes, KeyState state) {
  std::vector<KeyGrant> grants;
  for (const KeyWish& wish : wishes) grants.push_back({.action = wish.action, .state = state});
  return grants;
}

/// Until one of them can be read, or that moment.
void Sleep(int one, int other, std::optional<steady_clock::time_point> until) {
  int milliseconds = -1;
  if (until) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - steady_clock::now());
    milliseconds = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
  }
  std::array<pollfd, 2> waits{pollfd{one, POLLIN, 0}, pollfd{other, POLLIN, 0}};
  ::poll(waits.data(), waits.size(), milliseconds);
}

}  // namespace

GrabThread::GrabThread(std::string display, KeyEvents& events)
    : display_(std::move(display)), events_(events) {
  thread_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

GrabThread::~GrabThread() {
  thread_.request_stop();
  wished_.Ring();
  if (ended_.try_acquire_for(kMomentToEnd)) return;
  const std::lock_guard hold(mutex_);
  // Whoever waits for an answer on a connection that is cut waits no longer.
  if (descriptor_ >= 0) ::shutdown(descriptor_, SHUT_RDWR);
}

void GrabThread::Wish(std::vector<KeyWish> wishes) {
  const std::lock_guard hold(mutex_);
  std::vector<KeyGrant> grants = AllOf(wishes, over_ ? KeyState::Refused : KeyState::Asked);
  for (std::size_t i = 0; i < wishes.size(); ++i) {
    const auto before = std::ranges::find(wishes_, wishes[i]);
    if (before != wishes_.end()) grants[i] = grants_[before - wishes_.begin()];
  }
  wishes_ = std::move(wishes);
  grants_ = std::move(grants);
  wished_.Ring();
}

std::vector<KeyGrant> GrabThread::Grants() {
  const std::lock_guard hold(mutex_);
  return grants_;
}

bool GrabThread::Over() {
  const std::lock_guard hold(mutex_);
  return over_;
}

void GrabThread::Run(const std::stop_token& stop) {
  while (Serve(stop)) wished_.Ring();
  TellTheEnd();
  ended_.release();
}

bool GrabThread::Serve(const std::stop_token& stop) {
  KeyboardService keyboard(display_, events_);
  if (keyboard.Lost()) return false;
  const CutWhenStopped connection(keyboard.Descriptor());
  Show(keyboard.Descriptor());
  std::vector<KeyWish> wishes;
  while (!stop.stop_requested() && !keyboard.Lost()) {
    if (wished_.Silence()) {
      {
        const std::lock_guard hold(mutex_);
        wishes = wishes_;
      }
      keyboard.Wish(wishes);
    }
    keyboard.Turn();
    Tell(wishes, keyboard.Grants());
    Sleep(keyboard.Descriptor(), wished_.Descriptor(), keyboard.NextDue());
  }
  Show(-1);
  return connection.HasCut() && !stop.stop_requested();
}

void GrabThread::Show(int descriptor) {
  const std::lock_guard hold(mutex_);
  descriptor_ = descriptor;
}

void GrabThread::Tell(const std::vector<KeyWish>& answered, const std::vector<KeyGrant>& grants) {
  {
    const std::lock_guard hold(mutex_);
    // By now there may be other wishes, which are answered next.
    if (grants == grants_ || answered != wishes_) return;
    grants_ = grants;
  }
  events_.News().Ring();
}

void GrabThread::TellTheEnd() {
  {
    const std::lock_guard hold(mutex_);
    over_ = true;
    grants_ = AllOf(wishes_, KeyState::Refused);
  }
  events_.News().Ring();
}

}  // namespace tavlo::platform
