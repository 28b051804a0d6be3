#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "simulation/chance.h"
#include "simulation/desk.h"
#include "simulation/trace.h"

namespace tavlo::simulation {

/// The typist's hand on the mixer page: it chooses the device and turns what its sources are set
/// to. Whatever it does there, the document that plays goes on, and one that stands stays where it
/// is.
class MixerHand {
 public:
  MixerHand(Desk& desk, Chance chance, Trace& trace);

  /// What somebody else does while the hand holds a slider.
  std::function<void()> OnMeanwhile;

  /// One thing that a hand does on the page. Nothing when the page does not show.
  void Act();
  /// The typist has done something else, so what the page shows is no longer this hand's doing
  /// alone.
  void OthersAct() { ++deeds_; }
  /// The empty text, or the first thing since the last call that went against the hand.
  std::string Disobeyed();

 private:
  /// What of the document the mixer has no business to touch.
  struct Sound {
    bool plays = false;
    bool runs = false;
    bool winds = false;
    double position = 0;
    std::string document;
    bool operator==(const Sound&) const = default;
  };

  void ChooseDevice();
  void MoveVolume();
  void MoveBalance();
  void ClickMute();

  /// Takes the slider, moves it about while the world goes on, and lets it go. `onMoved` runs right
  /// after each move that the slider followed. Gives the value at which it was let go; nothing when
  /// it could not be taken, or when the typist's other hand did something meanwhile.
  std::optional<int> Drag(forms::Range& slider, int strip, const std::function<void()>& onMoved);
  void LetTimePass();
  Sound SoundNow() const;
  /// Does something that takes no time and looks whether the document was touched.
  void Do(const std::function<void()>& act);
  /// From now on the source that the strip shows may be written to.
  std::string Touch(int strip);
  /// The source as the desktop has it, or null when it has gone.
  const test::SimulatedSource* Find(const std::string& name) const;
  void Complain(const std::string& what) {
    if (wrong_.empty()) wrong_ = what;
  }
  void Note(const std::string& what) { trace_.Note("  typist: " + what); }

  Desk& desk_;
  Chance chance_;
  Trace& trace_;
  int deeds_ = 0;
  std::set<std::string> touched_;
  std::string wrong_;
};

}  // namespace tavlo::simulation
