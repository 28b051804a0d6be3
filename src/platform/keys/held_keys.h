#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "platform/keys/key_chord.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// Tells presses of the deck's keys from what else a keyboard does meanwhile, and says of each
/// event whose it is. Plain state without a display, for one thread.
///
/// The keyboard of the whole session stands still from each event that comes here until it is
/// answered. What is none of the deck's keys goes on to whoever has the keyboard, so while a key is
/// held others can be typed; from the first of those on the display tells nothing of the held key,
/// and somebody must look at the keyboard (`Look`) until it is up.
class HeldKeys {
 public:
  using Moment = std::chrono::steady_clock::time_point;
  using Reported = std::function<void(remote::KeyEvent)>;

  /// A press so soon after a release of the same key is a repeat on a display that repeats by
  /// letting go, as those inside of another display do. No finger is so quick.
  static constexpr std::chrono::milliseconds kRepeatsWithin{2};

  enum class Answer {
    Keep,              ///< It was the deck's, and so is the keyboard for now.
    GiveBack,          ///< It was the deck's, and nothing is held any more.
    LetThrough,        ///< It goes to whoever has the keyboard, as all else from here on.
    LetThroughAndStay  ///< It goes there, and the next event comes here again.
  };

  explicit HeldKeys(Reported report) : report_(std::move(report)) {}

  /// Takes other chords from here on. A key that is held and means the same as before stays held;
  /// any other counts as released. Keys that are `down` now are no press until they have been up.
  /// `repeating` keys press themselves again and again while they are held.
  void Become(std::map<KeyChord, remote::AfarAction> chords, const KeyBits& down,
              const KeyBits& repeating);
  /// All counts as released.
  void Forget();

  Answer Press(KeyChord pressed);
  Answer Release(std::uint8_t keycode, Moment now);
  /// The keyboard as it is, looked at while its events do not come here.
  void Look(const KeyBits& down);
  /// Reports releases that no press has followed.
  void Settle(Moment now);

  /// Something is down that was once the deck's.
  bool Any() const { return !held_.empty() || waitsForUp_.any(); }
  /// All that is so.
  KeyBits Keys() const;
  /// When `Settle` has something to do.
  std::optional<Moment> NextSettling() const;

 private:
  struct Held {
    remote::AfarAction action;
    std::optional<Moment> releasedAt = {};
  };

  bool IsDown() const;
  /// Reports the releases up to that moment, in their order.
  void ReportReleases(Moment upTo);
  Answer ForOthers(bool stops) const;

  const Reported report_;
  std::map<KeyChord, remote::AfarAction> chords_;
  KeyBits repeating_;
  std::map<std::uint8_t, Held> held_;
  KeyBits waitsForUp_;  ///< They are down, and that is no press.
};

}  // namespace tavlo::platform
