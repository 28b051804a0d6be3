#include "simulation/foot.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavlo::simulation {
namespace {

using base::operator""ms;
using playback::Wind;

constexpr int kLeft = 1;
constexpr int kCenter = 2;
constexpr int kRight = 4;
constexpr int kUnknown = -1;
constexpr int kReportSize = 3;
/// What the program has room for in one read.
constexpr int kMostBytes = 100;
/// What no library may say and one may.
constexpr std::array<std::int32_t, 7> kOddCounts{0, -1, 1, 101, 999, 0x7FFFFFFF, -0x7FFFFFFF};
/// More than two looks at the pedals.
constexpr base::Duration kUntilSeen = 120ms;

/// Presses as feet make them, and heels that come down on two or three at once.
constexpr std::array kPresses{kLeft,
                              kLeft,
                              kCenter,
                              kCenter,
                              kRight,
                              kRight,
                              kLeft | kCenter,
                              kLeft | kRight,
                              kCenter,
                              kCenter | kRight,
                              kLeft | kCenter | kRight};

pedals::Pedal CodeOf(int bits) {
  if ((bits & kRight) != 0) return pedals::Pedal::Right;
  if ((bits & kCenter) != 0) return pedals::Pedal::Center;
  return bits == 0 ? pedals::Pedal::None : pedals::Pedal::Left;
}

}  // namespace

Foot::Foot(Desk& desk, const Conditions& conditions, Chance chance, Trace& trace)
    : desk_(desk), conditions_(conditions), chance_(chance), trace_(trace) {}

void Foot::Act() {
  struct Habit {
    int weight;
    void (Foot::*act)();
  };
  static constexpr std::array kHabits{Habit{6, &Foot::PressUsb},   Habit{6, &Foot::ReleaseUsb},
                                      Habit{3, &Foot::TapUsb},     Habit{2, &Foot::BounceUsb},
                                      Habit{3, &Foot::PressTwice}, Habit{8, &Foot::MoveOnSerial},
                                      Habit{2, &Foot::MoveCables}, Habit{6, &Foot::WatcherFalters}};
  OthersAct();
  (this->*chance_.PickByWeight(kHabits).act)();
}

void Foot::Rest() {
  OthersAct();
  desk_.usbWatcher.Plug(pedals::UsbPresence::Ready);
  desk_.usbWatcher.CanRead = true;
  desk_.serialPort.Plug({1});
  Report(0);
  HoldLines(0);
}

void Foot::PressUsb() { LetUsbBeSeen(Report(static_cast<std::uint8_t>(chance_.Pick(kPresses)))); }

void Foot::ReleaseUsb() { LetUsbBeSeen(Report(0)); }

void Foot::TapUsb() {
  Report(static_cast<std::uint8_t>(chance_.Pick(kPresses)));
  LetUsbBeSeen(Report(0));
}

void Foot::BounceUsb() {
  const auto bits = static_cast<std::uint8_t>(chance_.Pick(kPresses));
  bool told = false;
  for (int bounces = 1 + chance_.Below(20); bounces > 0; --bounces) {
    Report(bits);
    if (chance_.OneIn(4)) desk_.loop.Advance(std::chrono::milliseconds{chance_.Below(30)});
    told = Report(0);
  }
  if (chance_.OneIn(2)) told = Report(bits);
  LetUsbBeSeen(told);
}

void Foot::PressTwice() {
  const std::uint8_t bits = chance_.OneIn(2) ? kLeft : kRight;
  bool told = false;
  for (int press = 0; press < 2; ++press) {
    Report(bits);
    desk_.loop.Advance(std::chrono::milliseconds{30 + chance_.Below(200)});
    told = Report(0);
    desk_.loop.Advance(std::chrono::milliseconds{30 + chance_.Below(200)});
  }
  LetUsbBeSeen(told);
}

void Foot::MoveOnSerial() {
  HoldLines(chance_.OneIn(2) ? 0 : chance_.Pick(kPresses));
  LetLinesBeSeen(LinesAreNews());
}

void Foot::MoveCables() {
  if (!conditions_.cablesGo) return;
  if (chance_.OneIn(2)) {
    const bool plugged = desk_.usbWatcher.Pedal == pedals::UsbPresence::Ready;
    Note(plugged ? "pulls the USB cable" : "plugs the USB pedal in");
    const bool told = plugged && desk_.usbWatcher.Watching();
    if (plugged) {
      desk_.usbWatcher.Unplug();
    } else {
      desk_.usbWatcher.Plug(pedals::UsbPresence::Ready);
    }
    usbDown_ = 0;
    LetUsbBeSeen(told);
  } else {
    const bool plugged = desk_.serialPort.Existing.contains(1);
    Note(plugged ? "pulls the serial adapter" : "plugs the serial adapter in");
    desk_.serialPort.Plug(plugged ? std::set<int>{} : std::set<int>{1});
    HoldLines(0);
    LetLinesBeSeen(plugged && LinesAreNews());
  }
}

void Foot::WatcherFalters() {
  if (!conditions_.watcherFalters || !desk_.usbWatcher.Watching()) return;
  if (chance_.OneIn(2)) {
    desk_.usbWatcher.CanRead ? FailToBeRead() : BeReadAgain();
  } else if (!desk_.usbWatcher.HasReports() && desk_.Rooms()) {
    DeliverOddly();
  }
}

void Foot::FailToBeRead() {
  Note("can not be read");
  const bool quiet = desk_.Rooms() && !LinesAreNews();
  const pedals::Pedal before = quiet ? desk_.Rooms()->footPedal.PedalEvent : pedals::Pedal::None;
  ownDeed_ = ++deeds_;
  desk_.usbWatcher.CanRead = false;
  LetUsbBeSeen(/*told=*/false);
  if (!quiet || ownDeed_ != deeds_ || !desk_.AtWork()) return;
  const pedals::Pedal now = desk_.Rooms()->footPedal.PedalEvent;
  // The poll of the lines takes up what they hold, though they have not changed.
  const bool onSerial = desk_.Rooms()->serialPedal.Reads() && now == CodeOf(linesDown_);
  pressedByAFailedRead_ = now != before && now != pedals::Pedal::None && !onSerial;
}

void Foot::BeReadAgain() {
  Note("can be read again");
  ownDeed_ = ++deeds_;
  desk_.usbWatcher.CanRead = true;
  // What came meanwhile is not lost.
  const bool understood = !desk_.Rooms() || desk_.Rooms()->usbPedal.HIDReportSize != 2;
  LetUsbBeSeen(desk_.usbWatcher.HasReports() && understood);
}

void Foot::DeliverOddly() {
  const std::uint8_t size = desk_.Rooms()->usbPedal.HIDReportSize;
  // A library whose first count misleads is misunderstood until the program ends.
  if (size != kReportSize && !chance_.OneIn(20)) return;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(chance_.Below(kMostBytes + 1)));
  for (std::size_t at = 0; at + 1 < bytes.size(); at += kReportSize) {
    bytes[at] = chance_.OneIn(8) ? 1 : 0;
    bytes[at + 1] = static_cast<std::uint8_t>(chance_.OneIn(2) ? 0 : chance_.Pick(kPresses));
  }
  const auto delivered = static_cast<std::int32_t>(bytes.size());
  const std::int32_t told = chance_.OneIn(2) ? delivered : chance_.Pick(kOddCounts);
  Note("delivers " + std::to_string(delivered) + " bytes as " + std::to_string(told));
  ownDeed_ = ++deeds_;
  desk_.usbWatcher.Deliver(bytes, told);
  // Counted by thirds to the nearest whole, of what the program has room for.
  const int reports = told > 0 ? (std::min(told, kMostBytes) + 1) / kReportSize : 0;
  bytes.resize(kMostBytes + 1);
  bool understood = false;
  for (int report = 0; report < reports; ++report) {
    const auto at = static_cast<std::size_t>(report * kReportSize);
    if (bytes[at] != 0) continue;
    usbDown_ = bytes[at + 1];
    understood = true;
  }
  if (size != kReportSize) usbDown_ = kUnknown;
  LetUsbBeSeen(understood && size == kReportSize);
}

bool Foot::Report(std::uint8_t bits) {
  if (desk_.usbWatcher.Pedal != pedals::UsbPresence::Ready || !desk_.usbWatcher.Watching()) {
    return false;
  }
  Note("reports " + std::to_string(bits));
  ownDeed_ = ++deeds_;
  usbDown_ = bits;
  desk_.usbWatcher.Report(bits);
  // By a program that takes it for reports of two bytes it is misread.
  return !desk_.Rooms() || desk_.Rooms()->usbPedal.HIDReportSize != 2;
}

void Foot::HoldLines(int lines) {
  Note("holds lines " + std::to_string(lines));
  ownDeed_ = ++deeds_;
  linesDown_ = lines;
  desk_.serialPort.Hold({.CDHolding = (lines & kLeft) != 0,
                         .DSRHolding = (lines & kCenter) != 0,
                         .CTSHolding = (lines & kRight) != 0});
}

void Foot::LetItBeSeen(bool told, Expects wanted) {
  const int deed = ownDeed_;
  desk_.loop.Advance(kUntilSeen);
  const bool alone = deed == deeds_ && desk_.AtWork() && !desk_.loop.MessageBoxOpen();
  const bool seen = !desk_.usbWatcher.HasReports() && !LinesAreNews();
  expects_ = told && alone && seen ? wanted : Expects::Nothing;
}

Foot::Expects Foot::Wanted(int said, int other) const {
  if (!desk_.AtWork() || !desk_.Main().cmdStop.Enabled) return Expects::Nothing;
  const window::Guards& guards = desk_.Rooms()->mainWindow.guards;
  if (!guards.MayPlay()) return Expects::Nothing;
  // What the other pedal holds may be news as soon as this one has been heard.
  if (other != 0) return Expects::Nothing;
  switch (CodeOf(said)) {
    case pedals::Pedal::None:
      return Expects::Stillness;
    case pedals::Pedal::Center:
      return Expects::Playing;
    default:
      return Expects::Winding;
  }
}

bool Foot::LinesAreNews() const {
  const shell::Rooms* const rooms = desk_.Rooms();
  return rooms && rooms->serialPedal.Reads() && CodeOf(linesDown_) != rooms->footPedal.HeldLast();
}

std::string Foot::Disobeyed() {
  if (std::exchange(pressedByAFailedRead_, false)) return "A read that failed has pressed a pedal.";
  if (expects_ == Expects::Nothing || !desk_.AtWork()) return "";
  const shell::Rooms& rooms = *desk_.Rooms();
  const bool plays = rooms.engine.IsPlaying;
  const bool winds = rooms.transport.WindDirection != Wind::None;
  const double position = rooms.documentInWork.CurrentSamplePosition;
  const bool atAnEnd = position == 0 || position == rooms.documentInWork.FileLength;
  // Somebody cut the file off while it was open.
  const test::SimulatedSound* const open = desk_.file.Open();
  const bool brokeOff = open && position + 1 >= static_cast<double>(open->readable);
  switch (expects_) {
    case Expects::Stillness:
      if (plays) return "It plays though the foot is up.";
      if (winds) return "It winds though the foot is up.";
      break;
    case Expects::Playing:
      if (winds) return "It winds under the center pedal.";
      // A sound device that fails and a document that was heard out end it before the foot does.
      if (!plays && !conditions_.soundFails && rooms.engine.HoldsDocument() && !atAnEnd &&
          !brokeOff) {
        return "It does not play under the center pedal.";
      }
      break;
    case Expects::Winding:
      if (plays) return "It plays under a side pedal.";
      if (!winds && !atAnEnd) return "It stands between the ends under a side pedal.";
      break;
    case Expects::Nothing:
      break;
  }
  return "";
}

}  // namespace tavlo::simulation
