#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "base/listener.h"
#include "keys/other_window.h"
#include "platform/keys/grabbed_keys.h"
#include "support/desktop.h"
#include "support/hands.h"
#include "support/keys.h"
#include "support/patience.h"
#include "support/plain_loop.h"

namespace tavlo::test {

inline constexpr std::uint32_t kCaps = 0xFFE5;
inline constexpr std::uint32_t kNum = 0xFF7F;
constexpr std::uint32_t FunctionKey(std::uint32_t number) { return 0xFFBD + number; }

/// The rules, as far as they take events of keys.
class HeardKeys final : public base::Listener {
 public:
  explicit HeardKeys(platform::GrabbedKeys& keys) : keys_(keys) { keys_.Tell(*this); }

  /// Every event, as "+play-stop -play-stop".
  std::string Heard;
  /// They wait for something: what comes stays where it is.
  bool Wait = false;

  void HandleNews() override;

 private:
  platform::GrabbedKeys& keys_;
};

/// A screen of its own, the window of another program that has the keyboard, a hand at the
/// keyboard, and the keys under test.
struct KeysBench : testing::Test {
  void SetUp() override;

  /// Wishes, and waits for the display's answer.
  void Wish(const std::vector<remote::KeyWish>& wishes);
  std::vector<remote::KeyState> States() const;
  /// Turns the loop until it is so; false when that never comes.
  bool Until(const std::function<bool()>& condition);

  /// Waits until the rules have heard so much, or anything else; what they have heard since this
  /// was asked last.
  std::string Heard(const std::string& expected);
  /// Types a last letter and waits for it: all that came to the other window before it, since this
  /// was asked last.
  std::string OtherTook();

  void Hold(std::uint32_t symbol) { hands->Hold(symbol); }
  void LetGo(std::uint32_t symbol) { hands->LetGo(symbol); }
  void Type(std::initializer_list<std::uint32_t> symbols) { hands->Keys(symbols); }
  /// Keys that are held press themselves soon and often from here on.
  void RepeatQuickly();
  /// Holds still while a key that is held presses itself some ten times.
  void LetItRepeat() { loop.Wait(std::chrono::milliseconds(300)); }

  std::optional<Desktop> desktop;
  std::optional<Hands> hands;
  std::optional<OtherWindow> other;
  PlainLoop loop;
  std::optional<platform::GrabbedKeys> keys;
  std::optional<HeardKeys> heard;
};

}  // namespace tavlo::test
