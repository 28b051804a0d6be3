#pragma once

#include <deque>
#include <functional>
#include <initializer_list>
#include <optional>
#include <set>
#include <vector>

#include "pedals/serial_port.h"
#include "pedals/usb_watcher.h"

namespace tavlo::test {

/// A switch box on a serial port, with a foot that the test moves. As strict as the real port: its
/// lines can be read only while a port that exists is open, and each wait is told of once.
class SimulatedSerialPort : public pedals::SerialPort {
 public:
  std::set<int> Existing{1};  ///< Numbers of the ports that can be opened.
  pedals::SerialLines Lines;  ///< What the foot holds down; written here, the change goes untold.
  std::vector<int> Opened;    ///< Every number that was asked for, in order.
  int Reads = 0;
  bool CanTell = true;      ///< False: a port that cannot wait for its lines.
  bool TellsAtOnce = true;  ///< False: what there is to tell waits for `Tell`.

  /// The foot moves.
  void Hold(pedals::SerialLines lines);
  /// The ports are there from now on, and no others.
  void Plug(std::set<int> ports);
  /// Tells of what has come, if somebody waits for that.
  void Tell();

  bool Open(int portNumber) override;
  void Close() override;
  std::optional<pedals::SerialLines> ReadLines() override;
  bool TellOnce(base::Listener& listener) override;

  std::optional<int> OpenPort() const { return open_; }
  bool IsAwaited() const { return listener_ != nullptr; }

 private:
  bool IsThere() const { return open_ && Existing.contains(*open_); }
  void Come();

  std::optional<int> open_;
  base::Listener* listener_ = nullptr;
  bool news_ = false;  ///< Something has come since the lines were read.
};

/// The watcher library with a pedal that the test plugs in, presses and unplugs. As strict as the
/// real one: it answers only to the handle that it gave, hands over whole reports, one at the first
/// read and 33 at most later, and nothing to a caller without room for them.
class SimulatedUsbWatcher : public pedals::UsbWatcher {
 public:
  bool CanStart = true;
  bool CanStop = true;
  /// False: reads fail and leave a press of the center pedal in the buffer that was never made.
  bool CanRead = true;
  bool CanTell = true;  ///< False: a library that must be polled.
  pedals::UsbPresence Pedal = pedals::UsbPresence::Ready;
  std::vector<int> Picked;  ///< The figures that the last watch was started with.
  int Starts = 0;
  int Stops = 0;
  std::function<void()> OnStart = [] {};
  std::function<void()> OnStop = [] {};
  int Reads = 0;

  /// The pedal reports these bits: 1 left, 2 center, 4 right.
  void Press(std::initializer_list<std::uint8_t> bits);
  void Report(std::uint8_t bits) { Press({bits}); }
  /// The next read hands over exactly these bytes, as another library would, and counts them as
  /// `told` when that is given.
  void Deliver(std::vector<std::uint8_t> bytes, std::optional<std::int32_t> told = {});
  /// A pedal is plugged in, one that may be read or not.
  void Plug(pedals::UsbPresence found);
  /// The cable is pulled; what was down counts as up.
  void Unplug();

  bool StartWatch(int product, int usagePage, int usage, pedals::MonitorHandle& monitor) override;
  bool GetData(pedals::MonitorHandle& monitor, std::span<std::uint8_t> buffer,
               std::int32_t& count) override;
  bool StopWatch(pedals::MonitorHandle& monitor) override;
  pedals::UsbPresence Presence(pedals::MonitorHandle monitor) override;
  bool TellOnce(pedals::MonitorHandle monitor, base::Listener& listener) override;

  bool Watching() const { return running_ != 0; }
  bool IsAwaited() const { return listener_ != nullptr; }
  bool HasReports() const { return !reports_.empty() || !delivered_.empty(); }

 private:
  void Come();

  std::deque<std::uint8_t> reports_;
  struct Delivery {
    std::vector<std::uint8_t> bytes;
    std::optional<std::int32_t> told;
  };
  std::deque<Delivery> delivered_;
  pedals::MonitorHandle running_ = 0;
  pedals::MonitorHandle lastHandle_ = 0;
  bool readBefore_ = false;
  base::Listener* listener_ = nullptr;
  bool presenceIsNews_ = false;  ///< It has changed since the last read.
};

}  // namespace tavlo::test
