#pragma once

#include <cstdint>
#include <string>

#include "simulation/chance.h"
#include "simulation/conditions.h"
#include "simulation/desk.h"
#include "simulation/trace.h"

namespace tavlo::simulation {

/// The typist's foot: over a USB pedal and over a switch box on a serial port, both of which may
/// lie under the desk at once. It also pulls their cables.
class Foot {
 public:
  Foot(Desk& desk, const Conditions& conditions, Chance chance, Trace& trace);

  /// One thing that a foot does. What is pressed may stay down.
  void Act();
  /// Somebody else has acted, so what goes on is no longer the foot's doing alone.
  void OthersAct() {
    ++deeds_;
    expects_ = Expects::Nothing;
  }
  /// Both pedals are plugged in, and up.
  void Rest();
  /// The empty text, or what goes on against what the foot did last.
  std::string Disobeyed();

 private:
  enum class Expects { Nothing, Stillness, Playing, Winding };

  void PressUsb();
  void TapUsb();
  void BounceUsb();
  void PressTwice();
  void ReleaseUsb();
  void MoveOnSerial();
  void MoveCables();
  void WatcherFalters();
  void FailToBeRead();
  void BeReadAgain();
  void DeliverOddly();

  /// False when there is no pedal that could, or no program that would hear of it.
  bool Report(std::uint8_t bits);
  void HoldLines(int lines);
  /// True when the poll of the lines will find that something else holds than what it acted on.
  bool LinesAreNews() const;
  /// Waits until the polls have seen everything and notes what must go on then, which is nothing
  /// certain when the pedal could not tell.
  void LetItBeSeen(bool told, Expects wanted);
  void LetUsbBeSeen(bool told) { LetItBeSeen(told, Wanted(usbDown_, linesDown_)); }
  void LetLinesBeSeen(bool told) { LetItBeSeen(told, Wanted(linesDown_, usbDown_)); }
  /// What must go on after one pedal said this while the other holds that.
  Expects Wanted(int said, int other) const;
  void Note(const std::string& what) { trace_.Note("  foot: " + what); }

  Desk& desk_;
  const Conditions& conditions_;
  Chance chance_;
  Trace& trace_;
  int usbDown_ = 0;    ///< Bits of the last report, or kUnknown.
  int linesDown_ = 0;  ///< The same bits for the serial lines.
  Expects expects_ = Expects::Nothing;
  bool pressedByAFailedRead_ = false;
  /// Grows with everything that anybody does, so that one deed inside another is noticed.
  int deeds_ = 0;
  int ownDeed_ = 0;  ///< The figure after the foot's last one.
};

}  // namespace tavlo::simulation
