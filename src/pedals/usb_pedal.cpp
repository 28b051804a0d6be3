#include "pedals/usb_pedal.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "pedals/poll.h"

namespace tavlo::pedals {
namespace {

/// They pick the pedal; the watcher knows what they mean.
constexpr int kProduct = 255;
constexpr int kUsagePage = 12;
constexpr int kUsage = 3;

constexpr std::size_t kMostBytesOfARead = 100;

constexpr std::uint8_t kLeftBit = 1;
constexpr std::uint8_t kCenterBit = 2;
constexpr std::uint8_t kRightBit = 4;

constexpr base::Duration kLookAgainAtRead = 200ms;
/// Bounds the wait for a read: where the rule that waits was called by that read, the read can not
/// end first.
constexpr base::Duration kLongestWaitForRead = 2000ms;

}  // namespace

UsbPedal::UsbPedal(base::Loop& loop, FootPedal& pedal, UsbWatcher& watcher)
    : TmrHIDRead(loop, "TmrHIDRead", kPollInterval), loop_(loop), pedal_(pedal), watcher_(watcher) {
  TmrHIDRead.OnTick = [this] { Tick(); };
}

UsbPedal::~UsbPedal() {
  if (MyMonitor != 0) watcher_.StopWatch(MyMonitor);
}

void UsbPedal::StartWatch() {
  MyMonitor = 0;
  InReadHIDBuffer = false;
  ticks_ = watcher_.StartWatch(kProduct, kUsagePage, kUsage, MyMonitor);
  if (ticks_) TmrHIDRead.Start();
  OnLook();
}

void UsbPedal::HandleNews() {
  if (!ticks_) return;
  woken_ = true;
  TmrHIDRead.StartDue();
}

void UsbPedal::Tick() {
  OneShot tick(TmrHIDRead, ticks_);
  const bool woken = std::exchange(woken_, false);
  // What follows within an interval waits for the next tick.
  if (ReadReports() || woken || !ticks_) return;
  if (watcher_.TellOnce(MyMonitor, *this)) tick.Rest();
}

bool UsbPedal::ReadReports() {
  const window::Raised reading(InReadHIDBuffer);
  std::array<std::uint8_t, kBufferSize> buffer{};
  std::int32_t count = 0;
  const bool read =
      watcher_.GetData(MyMonitor, std::span(buffer).first<kMostBytesOfARead>(), count);
  OnLook();
  if (!read) return true;
  if (count > 0) HandleReports(buffer, count);
  return count > 0;
}

void UsbPedal::HandleReports(std::span<const std::uint8_t, kBufferSize> buffer,
                             std::int32_t count) {
  count = std::min(count, static_cast<std::int32_t>(kMostBytesOfARead));
  if (HIDReportSize < 2) LearnReportSize(count);
  if (HIDReportSize < 2) return;
  const auto reports = static_cast<std::size_t>(std::nearbyint(1.0 * count / HIDReportSize));
  for (std::size_t report = 0; report < reports; ++report) {
    const std::size_t at = report * HIDReportSize;
    HandlePedalReport({buffer[at], buffer[at + 1]});
  }
}

void UsbPedal::LearnReportSize(std::int32_t count) {
  if (count % 2 != 0) {
    HIDReportSize = 3;
  } else if (count % 3 != 0) {
    HIDReportSize = 2;
  }
}

void UsbPedal::HandlePedalReport(const ReportPair& report) {
  const auto [number, bits] = report;
  if (number != 0) return;
  pedal_.Take((bits & kLeftBit) != 0, (bits & kCenterBit) != 0, (bits & kRightBit) != 0);
  if (pedal_.MayDispatch()) pedal_.DispatchPedalEvent();
}

void UsbPedal::StopReading() {
  ticks_ = false;
  TmrHIDRead.Stop();
  if (!InReadHIDBuffer) return;
  loop_.Show({.title = "Tavlo Deck - USB", .text = "Waiting for USB foot pedal read to complete"});
  const base::MonotonicTime givenUp = loop_.Now() + kLongestWaitForRead;
  while (InReadHIDBuffer && loop_.Now() < givenUp) loop_.Wait(kLookAgainAtRead);
}

void UsbPedal::StopWatch() {
  if (EndWatch()) return;
  loop_.Show({.title = "Tavlo Deck - USB", .text = "Cannot close USB (HID) monitor"});
}

void UsbPedal::Drop() {
  ticks_ = false;
  TmrHIDRead.Stop();
  EndWatch();
}

bool UsbPedal::EndWatch() {
  if (MyMonitor == 0) return true;
  const bool stopped = watcher_.StopWatch(MyMonitor);
  MyMonitor = 0;
  return stopped;
}

}  // namespace tavlo::pedals
