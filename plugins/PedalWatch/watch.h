#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "hid_port.h"
#include "pedal_models.h"
#include "platform/wake/bell.h"
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
  /// Throws std::system_error when the process has no descriptor left.
  Watch(const Picked& picked, HidPort& port) : picked_(picked), port_(port) {}

  /// Looks for a pedal when none is open, else waits for one report. True while a pedal is open;
  /// otherwise the next turn finds nothing before there is news of the port.
  bool Turn();

  Presence State() const { return state_; }
  /// Takes whole reports, as `ReportQueue::Take` does.
  std::size_t TakeReports(std::span<std::uint8_t> buffer);
  /// It can be read while reports wait or the state is another than at the last `TakeReports`.
  int NewsDescriptor() const { return news_.Descriptor(); }

 private:
  bool Wanted(const HidDevice& device) const;
  void LookForPedal();
  void ReadReport();
  void Take(std::span<const std::uint8_t> raw);
  void Push(const Report& report);
  void Become(Presence state);

  const Picked picked_;
  HidPort& port_;
  ReportQueue reports_;
  platform::Bell news_;
  std::atomic<Presence> state_ = Presence::NoPedal;
  /// Of the open pedal; null for the picked one, whose reports need no translation.
  const PedalModel* model_ = nullptr;
  std::uint8_t lastBits_ = 0;
};

}  // namespace tavlo::pedal_watch
