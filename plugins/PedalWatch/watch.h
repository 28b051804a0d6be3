#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "hid_port.h"
#include "pedal_models.h"
#include "report_queue.h"

namespace tavlo::pedal_watch {

/// The figures that pick a pedal.
struct Picked {
  std::uint16_t product = 0;
  std::uint16_t usagePage = 0;
  std::uint16_t usage = 0;
};

enum class Presence : std::int32_t { NoPedal = 1, NoPermission = 2, Ready = 3 };

/// Looks for a pedal, reads it until it goes, looks again. Somebody else gives it the turns, on one
/// thread; presence and reports may be asked for on another.
class Watch {
 public:
  Watch(const Picked& picked, HidPort& port) : picked_(picked), port_(port) {}

  /// Looks for a pedal when none is open, else waits a short while for one report. True while a
  /// pedal is open; otherwise there is no hurry with the next turn.
  bool Turn();

  Presence State() const { return state_; }
  ReportQueue& Reports() { return reports_; }

 private:
  bool Wanted(const HidDevice& device) const;
  void LookForPedal();
  void ReadReport();
  void Take(std::span<const std::uint8_t> raw);

  const Picked picked_;
  HidPort& port_;
  ReportQueue reports_;
  std::atomic<Presence> state_ = Presence::NoPedal;
  /// Of the open pedal; null for the picked one, whose reports need no translation.
  const PedalModel* model_ = nullptr;
  std::uint8_t lastBits_ = 0;
};

}  // namespace tavlo::pedal_watch
