#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>

#include "base/listener.h"
#include "base/loop.h"
#include "pedals/foot_pedal.h"
#include "pedals/usb_watcher.h"

namespace tavlo::pedals {

/// The USB pedal. It works whichever kind of pedal is chosen. It sends a report for each change,
/// and every report is acted on in the order in which it came, so that a quick press and release
/// between two looks is not lost. Where the watcher tells of reports a tick is due as soon as one
/// comes, and there is none while nothing comes.
class UsbPedal final : private base::Listener {
 public:
  /// The bytes of a report that matter: its number, which must be 0, and the pedals' bits.
  using ReportPair = std::array<std::uint8_t, 2>;

  UsbPedal(base::Loop& loop, FootPedal& pedal, UsbWatcher& watcher);
  /// Ends a watch that still runs.
  virtual ~UsbPedal();
  UsbPedal(const UsbPedal&) = delete;

  /// The watch was looked at, began, or did not begin.
  std::function<void()> OnLook = [] {};

  MonitorHandle MyMonitor = 0;
  /// True from just before a read until every report of it has been handled.
  bool InReadHIDBuffer = false;
  /// Bytes of a report, 2 or 3, once a read has told; below 2 until then. Learnt once.
  std::uint8_t HIDReportSize = 0;

  base::Timer TmrHIDRead;

  /// Starts the watch and the ticks. Nothing is said when it does not start.
  void StartWatch();
  void HandlePedalReport(const ReportPair& report);
  /// Ends the ticks, and waits for a read that is under way.
  void StopReading();
  /// Ends the watch; says so when it cannot be ended.
  void StopWatch();
  /// Ends ticks and watch without a word or a wait.
  void Drop();

  /// Whether a release of its pedals, if it came now, would stop what sounds.
  bool ReleaseStops() const { return pedal_.ReleaseStops(); }

  UsbPresence Presence() { return watcher_.Presence(MyMonitor); }

 private:
  static constexpr std::size_t kBufferSize = 101;

  void Tick();
  /// False when the watch was read and nothing waited.
  bool ReadReports();
  void HandleNews() override;
  void HandleReports(std::span<const std::uint8_t, kBufferSize> buffer, std::int32_t count);
  void LearnReportSize(std::int32_t count);
  /// False when the watch cannot be ended.
  bool EndWatch();

  base::Loop& loop_;
  FootPedal& pedal_;
  UsbWatcher& watcher_;
  bool ticks_ = false;
  bool woken_ = false;  ///< The watcher told; nothing has been read since.
};

}  // namespace tavlo::pedals
