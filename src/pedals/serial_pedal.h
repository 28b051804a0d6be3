#pragma once

#include <functional>

#include "base/listener.h"
#include "base/loop.h"
#include "forms/configuration_form.h"
#include "pedals/foot_pedal.h"
#include "pedals/serial_port.h"
#include "window/settings_choices.h"

namespace tavlo::pedals {

/// The pedal on a serial port: a switch box of which each pedal closes one status line. Its lines
/// are read by ticks, and only a change is dispatched; one that comes while a pedal may not act
/// stays pending. Where the port tells of changes a tick is due as soon as one comes, and there is
/// none while no pedal is down and nothing comes.
class SerialPedal : public window::PedalChoice, private base::Listener {
 public:
  SerialPedal(base::Loop& loop, forms::ConfigurationForm& config, FootPedal& pedal,
              SerialPort& port);
  /// Gives the port back.
  ~SerialPedal() override;
  SerialPedal(const SerialPedal&) = delete;

  /// The port was opened, not opened, or lost.
  std::function<void()> OnChange = [] {};

  base::Timer tmrSerialFootPedal;

  /// Opens the port that the configuration names and starts the ticks, when the serial pedal is
  /// chosen. A port that does not open leaves the pedal dead, without a message.
  void OpenPort();
  /// A user has chosen the kind of pedal: the serial port is opened, or given back. A pedal that is
  /// held on a port that goes out of use counts as released.
  void FollowChoice() override;
  /// Ends the ticks and gives the port back.
  void Stop();

  /// Whether a release of its pedals, if it came now, would stop what sounds.
  bool ReleaseStops() const;

  bool IsChosen() const;
  /// The port is open and has not gone.
  bool Reads() const { return reads_; }

 private:
  void TakePort();
  void Release();
  void Tick();
  /// True when they are not what they were at the read before.
  bool TakeLines();
  void HandleNews() override;

  forms::ConfigurationForm& config_;
  FootPedal& pedal_;
  SerialPort& port_;
  SerialLines held_;
  bool ticks_ = false;
  bool reads_ = false;
  bool listens_ = false;  ///< The port will tell.
};

}  // namespace tavlo::pedals
