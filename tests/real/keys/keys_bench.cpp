#include "keys/keys_bench.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "support/other_program.h"

namespace tavlo::test {

using remote::KeyGrant;
using remote::KeyState;

void HeardKeys::HandleNews() {
  if (Wait) return;
  while (const auto event = keys_.Next()) {
    if (!Heard.empty()) Heard += ' ';
    Heard += event->down ? '+' : '-';
    Heard += remote::kAfarActions[remote::IndexOf(event->action)].id;
  }
}

void KeysBench::SetUp() {
  desktop.emplace("640x480", WindowManager::None);
  ASSERT_EQ(desktop->Fault(), "");
  ASSERT_EQ(RunShell("setxkbmap us"), 0);
  hands.emplace();
  other.emplace();
  keys.emplace(loop, std::getenv("DISPLAY"));
  heard.emplace(*keys);
}

void KeysBench::Wish(const std::vector<remote::KeyWish>& wishes) {
  keys->Wish(wishes);
  EXPECT_TRUE(Until([this] {
    return std::ranges::none_of(
        keys->Grants(), [](const KeyGrant& grant) { return grant.state == KeyState::Asked; });
  })) << "the display does not answer";
}

bool KeysBench::Until(const std::function<bool()>& condition) {
  return Comes([&] {
    loop.Yield();
    loop.Wait(std::chrono::milliseconds(1));
    return condition();
  });
}

std::vector<KeyState> KeysBench::States() const {
  std::vector<KeyState> states;
  for (const KeyGrant& grant : keys->Grants()) states.push_back(grant.state);
  return states;
}

std::string KeysBench::Heard(const std::string& expected) {
  Until([&] { return heard->Heard.size() >= expected.size(); });
  return std::exchange(heard->Heard, {});
}

std::string KeysBench::OtherTook() {
  Type({'z'});
  const std::string last = "+z -z";
  EXPECT_TRUE(Until([&] { return other->Took().ends_with(last); })) << other->Took();
  std::string took = other->Took().substr(0, other->Took().size() - last.size());
  if (!took.empty()) took.pop_back();
  other->Forget();
  return took;
}

void KeysBench::RepeatQuickly() { EXPECT_EQ(RunShell("xset r rate 30 100"), 0); }

}  // namespace tavlo::test
