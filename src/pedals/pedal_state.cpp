#include "pedals/pedal_state.h"

namespace tavlo::pedals {

PedalState::PedalState(forms::ConfigurationForm& config, SerialPedal& serial, UsbPedal& usb)
    : config_(config), serial_(serial), usb_(usb) {
  serial.OnChange = [this] { Show(); };
  usb.OnLook = [this] { Show(); };
}

void PedalState::Show() {
  config_.lblPedalState.Value = serial_.IsChosen() ? SerialText() : UsbText();
  OnShow();
}

std::string PedalState::SerialText() const {
  const std::string port = "Port " + config_.txtSerialFootPedalComPort.Value.Get();
  return port + (serial_.Reads() ? " is being read." : " can not be read.");
}

std::string PedalState::UsbText() {
  switch (usb_.Presence()) {
    case UsbPresence::Ready:
      return "A USB pedal is ready.";
    case UsbPresence::NoPedal:
      return "No USB pedal is plugged in.";
    case UsbPresence::NoPermission:
      return "A USB pedal is plugged in, but you may not read it. The udev rule of Tavlo Deck "
             "allows it to whoever sits at the desk: install it, then plug the pedal in again.";
    case UsbPresence::NotWatched:
      break;
  }
  return "USB pedals can not be read: the library PedalWatch did not start.";
}

}  // namespace tavlo::pedals
