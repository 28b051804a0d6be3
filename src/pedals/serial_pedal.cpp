#include "pedals/serial_pedal.h"

#include <cstdint>
#include <optional>
#include <string>

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
  tmrSerialFootPedal.OnTick = [this] { Poll(); };
  config_.txtSerialFootPedalComPort.OnChange = [this] { TakePort(); };
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
  polls_ = number >= 1 && number <= kHighestPort && port_.Open(static_cast<int>(number));
  reads_ = polls_;
  if (polls_) {
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
  polls_ = false;
  reads_ = false;
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

void SerialPedal::Poll() {
  const OneShot tick(tmrSerialFootPedal, polls_);
  const std::optional<SerialLines> lines = port_.ReadLines();
  if (std::exchange(reads_, lines.has_value()) != reads_) OnChange();
  held_ = lines.value_or(SerialLines{});
  pedal_.Take(held_.CDHolding, held_.DSRHolding, held_.CTSHolding);
  pedal_.DispatchNews();
}

}  // namespace tavlo::pedals
