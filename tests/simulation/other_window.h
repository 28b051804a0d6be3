#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "playback/transport.h"
#include "remote/afar_action.h"
#include "remote/media_bus.h"
#include "simulation/chance.h"
#include "simulation/desk.h"
#include "simulation/takings.h"
#include "simulation/trace.h"

namespace tavlo::simulation {

/// The typist in another window: presses keys that are the deck's, holds them over everything, and
/// uses media keys. Programs on the bus and the desktop around act here, too.
class OtherWindow {
 public:
  OtherWindow(Desk& desk, Takings& takings, Chance chance, Trace& trace);

  /// One thing that is done there. What is pressed may stay down.
  void Act();
  /// Somebody chooses a key on the page of the configuration, or clears one. Nothing where the page
  /// does not show.
  void ChooseAKey();
  /// All keys are up, and the desktop and its bus work.
  void Rest();
  /// Somebody else has acted, so what goes on is no longer this hand's doing alone.
  void OthersAct() { ++deeds_; }
  /// The empty text, or the first thing since the last call that went against the hand.
  std::string Disobeyed() { return std::exchange(wrong_, ""); }

 private:
  using Run = std::optional<playback::RunNumber>;

  void PressAKey();
  void ReleaseAKey();
  void TapAKey();
  void UseTheBus();
  void Flood();
  void ChangeTheDesktop();
  void ChangeTheBus();

  void Down(remote::AfarAction action);
  void Up(remote::AfarAction action);
  remote::MediaCommand SomeCommand();
  /// Does it and lets the program hear of it.
  void LetBeHeard(const std::function<void()>& act);
  Run RunNow() const;
  void Complain(const std::string& what) {
    if (wrong_.empty()) wrong_ = what;
  }
  void Note(const std::string& what) { trace_.Note("  other window: " + what); }

  Desk& desk_;
  Takings& takings_;
  Chance chance_;
  Trace& trace_;
  /// What each key that is down has begun.
  std::array<Run, remote::kAfarActions.size()> began_;
  /// Grows with everything that anybody does, so that one deed inside another is noticed.
  int deeds_ = 0;
  std::string wrong_;
};

/// The empty text, or what the keys and the bus hold or tell against what stands on the forms. The
/// program must be at work.
std::string BrokenAfar(Desk& desk);

}  // namespace tavlo::simulation
