#include "pedals/serial_pedal.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "base/text.h"
#include "pedals/poll.h"

namespace tavlo::pedals {
namespace {

constexpr std::int64_t kHighestPort = 9999;

}  // namespace

SerialPedal::SerialPedal(base::Loop& loop, forms::ConfigurationForm& config, FootPedal& pedal,
                         SerialPort& port)
    : tmrSerialFootPedal(loop, "tmrSerialFootPedal", kPollInterval),
      config_(config),
      pedal_(pedal),
      port_(port) {
  tmrSerialFootPedal.OnTick = [this] { Tick(); };
  config_.txtSerialFootPedalComPort.OnChange = [this] { TakePort(); };
}

SerialPedal::~SerialPedal() { Stop(); }

bool SerialPedal::ReleaseStops() const {
  // Only a change is dispatched.
  return pedal_.HeldLast() != Pedal::None && pedal_.ReleaseStops();
}

bool SerialPedal::IsChosen() const { return config_.txtUSBorSerialFootPedal.Value.Get() == "S"; }

void SerialPedal::TakePort() {
  config_.frmConfiguration.FocusOn(config_.txtFocus);
  if (!IsChosen()) return;
  const std::string number =
      base::NumberText(base::NumberValue(config_.txtSerialFootPedalComPort.Value.Get()));
  if (number != config_.txtSerialFootPedalComPort.Value.Get()) {
    // The handler runs again for this write and opens the port there.
    config_.txtSerialFootPedalComPort.Value = number;
    return;
  }
  OpenPort();
}

void SerialPedal::OpenPort() {
  if (!IsChosen()) return;
  Stop();
  const std::int64_t number = config_.txtSerialFootPedalComPort.WholeNumber();
  ticks_ = number >= 1 && number <= kHighestPort && port_.Open(static_cast<int>(number));
  reads_ = ticks_;
  if (ticks_) {
    tmrSerialFootPedal.Start();
  } else {
    Release();
  }
  OnChange();
}

void SerialPedal::FollowChoice() {
  if (IsChosen()) {
    OpenPort();
    return;
  }
  Stop();
  Release();
  OnChange();
}

void SerialPedal::Stop() {
  tmrSerialFootPedal.Stop();
  ticks_ = false;
  reads_ = false;
  listens_ = false;
  port_.Close();
}

/// The port is not read any more, so a pedal that is down counts as released.
void SerialPedal::Release() {
  const bool held = std::exchange(held_, {}) != SerialLines{};
  const bool heard = pedal_.HeldLast() != Pedal::None;
  if (held || heard) pedal_.Take(false, false, false);
  pedal_.LastPedalEvent = Pedal::None;
  pedal_.ReleaseWentUnheard = false;
  if (heard && pedal_.MayDispatch()) pedal_.DispatchPedalEvent();
}

void SerialPedal::HandleNews() {
  listens_ = false;
  if (ticks_) tmrSerialFootPedal.StartDue();
}

void SerialPedal::Tick() {
  OneShot tick(tmrSerialFootPedal, ticks_);
  const bool listened = std::exchange(listens_, false);
  const bool changed = TakeLines();
  pedal_.DispatchNews();
  // A contact bounces after a change, so what follows it waits for the next tick.
  if (changed || !ticks_) return;
  listens_ = port_.TellOnce(*this);
  // A change just before the port began to listen goes untold, so it listens for a whole interval
  // before the ticks rest.
  if (listened && listens_ && held_ == SerialLines{}) tick.Rest();
}

bool SerialPedal::TakeLines() {
  const std::optional<SerialLines> lines = port_.ReadLines();
  const bool readBefore = std::exchange(reads_, lines.has_value());
  if (reads_ != readBefore) OnChange();
  const SerialLines before = std::exchange(held_, lines.value_or(SerialLines{}));
  pedal_.Take(held_.CDHolding, held_.DSRHolding, held_.CTSHolding);
  return held_ != before;
}

}  // namespace tavlo::pedals
