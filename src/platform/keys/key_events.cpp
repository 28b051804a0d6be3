#include "platform/keys/key_events.h"

#include <algorithm>

namespace tavlo::platform {

using remote::AfarAction;
using remote::KeyEvent;

KeyEvents::Actions KeyEvents::BitOf(AfarAction action) { return 1U << remote::IndexOf(action); }

void KeyEvents::Push(KeyEvent event) {
  const std::lock_guard hold(mutex_);
  const Actions bit = BitOf(event.action);
  const bool lost = event.down ? presses_ == kMostPresses : (lost_ & bit) != 0;
  lost_ = event.down && lost ? lost_ | bit : lost_ & ~bit;
  if (lost) return;
  presses_ += event.down ? 1 : 0;
  waiting_.push_back(event);
  news_.Ring();
}

std::optional<KeyEvent> KeyEvents::Next() {
  const std::lock_guard hold(mutex_);
  if (waiting_.empty()) return {};
  const KeyEvent event = waiting_.front();
  waiting_.pop_front();
  presses_ -= event.down ? 1 : 0;
  seen_ -= std::min<std::size_t>(seen_, 1);
  const Actions bit = remote::ActsWhileHeld(event.action) ? BitOf(event.action) : 0;
  held_ = event.down ? held_ | bit : held_ & ~bit;
  return event;
}

void KeyEvents::Forget() {
  const std::lock_guard hold(mutex_);
  waiting_.clear();
  presses_ = 0;
  lost_ = 0;
  held_ = 0;
  seen_ = 0;
  news_.Silence();
}

bool KeyEvents::LetGo() {
  const std::lock_guard hold(mutex_);
  Actions held = held_;
  bool letGo = false;
  for (std::size_t at = 0; held != 0 && at < waiting_.size(); ++at) {
    if (!waiting_[at].down) held &= ~BitOf(waiting_[at].action);
    letGo = held == 0 && at >= seen_;
  }
  seen_ = waiting_.size();
  return letGo;
}

}  // namespace tavlo::platform
