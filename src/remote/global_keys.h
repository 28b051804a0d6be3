#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/listener.h"
#include "remote/afar_action.h"

namespace tavlo::remote {

/// A key that shall run the deck from any window.
struct KeyWish {
  AfarAction action;
  /// Modifiers and the key, as CTRL+SHIFT+F4; see `remote/key_trigger.h`.
  std::string trigger;
  bool operator==(const KeyWish&) const = default;
};

/// What has become of a wish.
enum class KeyState {
  Asked,          ///< The desktop has not answered yet.
  Held,           ///< The key is the deck's.
  OthersHold,     ///< Another program has it.
  NotOnKeyboard,  ///< No key of the keyboard makes it.
  Refused,        ///< The desktop, or whoever sits at it, does not give it.
};

struct KeyGrant {
  AfarAction action;
  KeyState state;
  /// Of a desktop that gives keys itself: how it calls what it gave, which may be another key or
  /// none. Empty elsewhere.
  std::string given = {};
  bool operator==(const KeyGrant&) const = default;
};

/// How keys of other windows come to the deck here.
enum class KeyWay {
  None,           ///< Not at all: there is no display that could tell.
  Grabs,          ///< The deck asks the display for each key.
  Portal,         ///< The desktop gives the keys.
  PortalMissing,  ///< The desktop would have to, and offers nothing for it.
};

struct KeyEvent {
  AfarAction action;
  bool down = false;
  bool operator==(const KeyEvent&) const = default;
};

/// The keys of all windows. Nothing here waits; everything is called on the loop's thread. A key
/// that is held down is one press, however often the keyboard repeats it. Whatever takes a held key
/// away, as another layout, a display or a desktop that goes, counts as its release.
class GlobalKeys {
 public:
  virtual ~GlobalKeys() = default;

  /// Tells the listener whenever an event waits, or `Way`, `Grants` or `CanConfigure` answer
  /// otherwise than before. It must outlive this object or be taken away with `Wish({})` and no
  /// further call.
  virtual void Tell(base::Listener& listener) = 0;
  /// Wishes for these keys and no others. With none, nothing is held and no desktop is asked.
  virtual void Wish(const std::vector<KeyWish>& wishes) = 0;
  /// Tries again what others held, or a desktop refused, at the last wish.
  virtual void TryAgain() = 0;

  virtual KeyWay Way() const = 0;
  /// One for each wish, in its order.
  virtual std::vector<KeyGrant> Grants() const = 0;
  /// The oldest event that waits.
  virtual std::optional<KeyEvent> Next() = 0;

  /// Whether the desktop has a page of its own for the keys of programs, and shows it.
  virtual bool CanConfigure() const = 0;
  virtual void Configure() = 0;
};

}  // namespace tavlo::remote
