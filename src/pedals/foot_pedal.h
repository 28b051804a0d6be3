#pragma once

#include <cstdint>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "playback/transport.h"
#include "window/main_window.h"

namespace tavlo::pedals {

enum class Pedal : std::uint8_t { None, Left, Center, Right };

/// The one model to which every kind of foot pedal is reduced, and what its presses do. Playing and
/// winding last only while the foot is down: every release stops.
class FootPedal {
 public:
  FootPedal(base::Loop& loop, window::MainWindow& window, playback::Transport& transport);

  /// What the pedals say now. Of several that are down it is the last one in the order left,
  /// center, right.
  Pedal PedalEvent = Pedal::None;
  /// What a pedal that is polled dispatched last.
  Pedal LastPedalEvent = Pedal::None;
  /// The pedal of `LastPedalEvent` went up while `MayDispatch` was false: the next event is
  /// dispatched even when it is the same, and no release is.
  bool ReleaseWentUnheard = false;
  bool LeftPedalDown = false;
  bool CenterPedalDown = false;
  bool RightPedalDown = false;

  /// Takes the physical state and lights the pedals of the configuration. Dispatches nothing.
  void Take(bool left, bool center, bool right);
  /// True when a pedal may act: a document is in work, or the center pedal may begin one.
  bool MayDispatch() const;
  /// True when a release of all pedals would be dispatched, and so would stop what sounds. Under a
  /// preview no pedal acts.
  bool ReleaseStops() const;
  /// Acts on `PedalEvent`.
  void DispatchPedalEvent();
  /// The pedal that the player believes to be down, as far as a pedal that is polled has told it.
  Pedal HeldLast() const { return ReleaseWentUnheard ? Pedal::None : LastPedalEvent; }
  /// For a pedal that is polled: dispatches an event that differs from the last one, and remembers
  /// a release that may not be dispatched.
  void DispatchNews();
  /// Forgets every press, as a start does.
  void Reset();

 private:
  bool IsDown(Pedal pedal) const;
  void PressSide(bool isLeft);
  static bool IsDoublePress(double now, double last);

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  window::MainWindow& window_;
  playback::Transport& transport_;
};

}  // namespace tavlo::pedals
