#pragma once

#include "base/listener.h"
#include "forms/configuration_form.h"
#include "pedals/pedal_state.h"
#include "pedals/serial_pedal.h"
#include "pedals/usb_pedal.h"
#include "remote/far_keys.h"
#include "remote/media_bus.h"

namespace tavlo::remote {

/// Says on the settings page what runs the deck now while another window has the keyboard, and on
/// the page of the keys whether media keys do.
class WaysFromAfar final : private base::Listener {
 public:
  /// All of them must outlive it. Follows them from here on.
  struct Parts {
    base::Loop& loop;
    forms::ConfigurationForm& config;
    pedals::PedalState& pedalState;
    const pedals::SerialPedal& serialPedal;
    pedals::UsbPedal& usbPedal;
    FarKeys& keys;
    MediaBus& bus;
  };
  explicit WaysFromAfar(const Parts& parts);
  virtual ~WaysFromAfar() { Withdraw(); }
  WaysFromAfar(const WaysFromAfar&) = delete;

  /// Offers the player to the desktop's media keys.
  void Offer(MediaSource& player);
  void Withdraw();

 private:
  void HandleNews() override;
  void Show();

  const Parts parts_;
  base::Timer tmrWaysFromAfar_;
};

}  // namespace tavlo::remote
