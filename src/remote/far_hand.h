#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "forms/main_form.h"
#include "playback/transport.h"
#include "remote/afar_action.h"
#include "window/main_window.h"

namespace tavlo::remote {

/// A hand that is at another window: it presses the very keys of the deck that a hand at them would
/// press, and where those can not be pressed it does nothing. What a held key began ends with its
/// release whatever stands in the way, as it does when a foot lets go of a pedal; what somebody
/// else has begun meanwhile goes on.
class FarHand {
 public:
  FarHand(window::MainWindow& window, playback::Transport& transport);
  ~FarHand();
  FarHand(const FarHand&) = delete;

  /// A key went down. One that is down already was not pressed.
  void Press(AfarAction action);
  /// It went up. One that is not down was not let go.
  void Release(AfarAction action);
  /// All keys are up.
  void LetGo();
  bool IsDown(AfarAction action) const { return holds_[IndexOf(action)].down; }
  /// True when the release of all keys would stop what sounds or winds now.
  bool ReleaseStops() const;

  void Play();
  /// Ends what sounds or winds; a preview, too.
  void Stop();
  /// Play where a document stands, is selected or is previewed; Stop while it sounds or winds, and
  /// where a preview is all that there is.
  void PlayOrStop();
  /// One jump of a wind, as a foot makes it that is up again at once.
  void Jump(forms::Command& windKey);
  /// Moves the slider of the speed to so many percent off normal, as far as it goes.
  void SetSpeedOffset(int percent);
  /// The slider of the volume.
  void SetVolume(int value);

 private:
  struct Hold {
    bool down = false;
    /// What its press has begun.
    std::optional<playback::RunNumber> began;
  };

  bool InWork() const { return form_.cmdSkip.Enabled; }
  void PressHeld(Hold& hold, forms::Command& key);
  /// Something begins, by whomever.
  void NoteRun();
  void StopWhatItBegan(Hold& hold);
  void Drag(forms::Range& slider, int value);

  forms::MainForm& form_;
  playback::Transport& transport_;
  window::MainWindow& window_;
  std::array<Hold, kAfarActions.size()> holds_;
  Hold* pressing_ = nullptr;  ///< Its key is just being pressed.
};

}  // namespace tavlo::remote
