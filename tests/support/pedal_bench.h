#pragma once

#include "pedals/foot_pedal.h"
#include "pedals/pedal_state.h"
#include "pedals/serial_pedal.h"
#include "pedals/usb_pedal.h"
#include "support/playback_bench.h"

namespace tavlo::test {

/// The pedals under the player, with one document of ten seconds selected: Play may begin it, and
/// nothing is in work yet.
struct PedalBench : PlaybackBench {
  SimulatedSerialPort& port = serialPort;
  SimulatedUsbWatcher& watcher = usbWatcher;
  pedals::FootPedal pedal{loop, window, transport};
  pedals::SerialPedal serial{loop, config, pedal, port};
  pedals::UsbPedal usb{loop, pedal, watcher};
  int stateShown = 0;

  PedalBench() {
    serial.OnChange = usb.OnLook = [this] { ++stateShown; };
    form.cmdPlay.Enabled = true;
    config.txtSwapRewFwdPedals.Value = "N";
    config.txtSkipBegEnd.Value = "Y";
    config.txtUSBorSerialFootPedal.Value = "U";
  }

  /// In seconds.
  static constexpr int kNoon = 20 * 3600;
  /// Lays forty hours under the player and puts them in work at their noon: more than any test
  /// winds and plays, so that no end of the document cuts in.
  void WorkInTheMiddleOfHours() {
    Lay({.samples = playback::SampleCount{2} * kNoon * 8000, .rate = 8000, .channels = 1});
    WorkAt(kNoon);
  }
  /// A document is in work and stopped at this second.
  void WorkAt(double second) {
    Play();
    transport.StopCommand();
    documentInWork.CurrentSamplePosition = second * 8000;
    prompts.clear();
  }
  double Second() const { return documentInWork.CurrentSamplePosition / 8000; }
  bool Winds() const { return transport.tmrRewindForward.Enabled(); }
  bool Still() const { return !engine.IsPlaying && !player.IsRunning() && !Winds(); }

  void Dispatch(pedals::Pedal code) {
    pedal.PedalEvent = code;
    pedal.DispatchPedalEvent();
  }
  /// A press and a release some time after it, straight into the dispatcher.
  void Tap(pedals::Pedal code,
           base::Duration held = base::Duration{std::chrono::milliseconds{50}}) {
    Dispatch(code);
    loop.Advance(held);
    Dispatch(pedals::Pedal::None);
  }
  void ChooseSerial() {
    config.txtUSBorSerialFootPedal.Value = "S";
    config.txtSerialFootPedalComPort.Value = "1";
  }
};

}  // namespace tavlo::test
