#include "support/simulated_keys.h"

#include <algorithm>
#include <stdexcept>

namespace tavlo::test {

using remote::AfarAction;
using remote::KeyGrant;
using remote::KeyState;
using remote::KeyWay;
using remote::KeyWish;

bool SimulatedGlobalKeys::Holds(AfarAction action) const {
  const auto grant = std::ranges::find(grants_, action, &KeyGrant::action);
  return grant != grants_.end() && grant->state == KeyState::Held;
}

bool SimulatedGlobalKeys::Down(AfarAction action) {
  if (!Holds(action) || !down_.insert(action).second) return false;
  events_.push_back({.action = action, .down = true});
  News();
  return true;
}

bool SimulatedGlobalKeys::Up(AfarAction action) {
  if (down_.erase(action) == 0) return false;
  events_.push_back({.action = action, .down = false});
  News();
  return true;
}

void SimulatedGlobalKeys::LetGoOf(const std::set<AfarAction>& lost) {
  for (const AfarAction action : lost) Up(action);
}

void SimulatedGlobalKeys::ChangeDesktop() {
  if (wishes_.empty()) return;
  LetGoOf(std::set(down_));
  Answer();
}

void SimulatedGlobalKeys::Answer() {
  for (std::size_t i = 0; i < wishes_.size(); ++i) {
    grants_[i] = {.action = wishes_[i].action, .state = Judge(wishes_[i])};
  }
  News();
}

void SimulatedGlobalKeys::Give(AfarAction action, const std::string& given) {
  const auto grant = std::ranges::find(grants_, action, &KeyGrant::action);
  if (grant == grants_.end()) throw std::logic_error("a key that nobody asked for");
  grant->given = given;
  News();
}

void SimulatedGlobalKeys::ForgetProcess() {
  listener_ = nullptr;
  wishes_.clear();
  grants_.clear();
  down_.clear();
  events_.clear();
}

KeyState SimulatedGlobalKeys::Judge(const KeyWish& wish) const {
  if (Here == KeyWay::None || Here == KeyWay::PortalMissing) return KeyState::Refused;
  if (Denied.contains(wish.trigger)) return KeyState::Refused;
  if (OfOthers.contains(wish.trigger)) return KeyState::OthersHold;
  return NoKeys.contains(wish.trigger) ? KeyState::NotOnKeyboard : KeyState::Held;
}

void SimulatedGlobalKeys::Wish(const std::vector<KeyWish>& wishes) {
  for (const KeyWish& wish : wishes) {
    if (wish.trigger.empty()) throw std::logic_error("a wish for no key");
    if (std::ranges::count(wishes, wish.trigger, &KeyWish::trigger) > 1) {
      throw std::logic_error("a key that is wished for twice");
    }
  }
  if (wishes == wishes_) return;
  Wished.push_back(wishes);
  std::set<AfarAction> lost;
  for (const AfarAction action : down_) {
    const auto before = std::ranges::find(wishes_, action, &KeyWish::action);
    if (std::ranges::find(wishes, *before) == wishes.end()) lost.insert(action);
  }
  wishes_ = wishes;
  grants_.clear();
  for (const KeyWish& wish : wishes_) {
    grants_.push_back({.action = wish.action, .state = KeyState::Asked});
  }
  if (wishes_.empty()) {
    down_.clear();
    events_.clear();
    return;
  }
  LetGoOf(lost);
  if (Answers) Answer();
}

void SimulatedGlobalKeys::TryAgain() {
  ++Tries;
  if (Answers && AnyWish()) Answer();
}

std::optional<remote::KeyEvent> SimulatedGlobalKeys::Next() {
  if (events_.empty()) return std::nullopt;
  const remote::KeyEvent event = events_.front();
  events_.pop_front();
  return event;
}

void SimulatedGlobalKeys::Configure() {
  if (!CanConfigure()) throw std::logic_error("a page that the desktop has not got");
  ++PagesShown;
}

void SimulatedGlobalKeys::News() {
  if (listener_) listener_->HandleNews();
}

}  // namespace tavlo::test
