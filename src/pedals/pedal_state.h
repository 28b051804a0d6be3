#pragma once

#include <functional>
#include <string>

#include "forms/configuration_form.h"
#include "pedals/serial_pedal.h"
#include "pedals/usb_pedal.h"

namespace tavlo::pedals {

/// Says on the settings page how the chosen pedal is doing, since nothing else reports a pedal that
/// is dead.
class PedalState {
 public:
  /// Follows both pedals from here on.
  PedalState(forms::ConfigurationForm& config, SerialPedal& serial, UsbPedal& usb);

  /// Either pedal was looked at again.
  std::function<void()> OnShow = [] {};

  void Show();

 private:
  std::string SerialText() const;
  std::string UsbText();

  forms::ConfigurationForm& config_;
  const SerialPedal& serial_;
  UsbPedal& usb_;
};

}  // namespace tavlo::pedals
