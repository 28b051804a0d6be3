#pragma once

#include <cstdint>
#include <span>

#include "base/listener.h"

namespace tavlo::pedals {

/// Names a running watch; 0 is none.
using MonitorHandle = std::int32_t;

/// What a watch knows of the pedal that it waits for.
enum class UsbPresence {
  NotWatched,    ///< No such watch runs.
  NoPedal,       ///< None is plugged in.
  NoPermission,  ///< One is plugged in, and this user may not read it.
  Ready,         ///< One is being read.
};

/// The watcher library of USB pedals. It reads reports on its own and keeps them until they are
/// asked for, so nothing here blocks; everything is called on the loop's thread.
class UsbWatcher {
 public:
  virtual ~UsbWatcher() = default;

  /// Starts to watch for the pedals that the three figures pick and writes the handle. A pedal need
  /// not be plugged in yet. False, and no handle, when watching is impossible here.
  virtual bool StartWatch(int product, int usagePage, int usage, MonitorHandle& monitor) = 0;
  /// Hands over waiting reports, whole ones in the order in which they came, and says in `count`
  /// how many bytes that were. False when the watch could not be read.
  virtual bool GetData(MonitorHandle& monitor, std::span<std::uint8_t> buffer,
                       std::int32_t& count) = 0;
  /// Ends the watch and sets the handle to 0. False when it does not end; it is not asked again.
  virtual bool StopWatch(MonitorHandle& monitor) = 0;

  virtual UsbPresence Presence(MonitorHandle monitor) = 0;

  /// Tells the listener, once, as soon as a report waits or `Presence` may answer otherwise than at
  /// the last `GetData`, also where that is so already. The end of the watch ends this. False when
  /// the library cannot tell: then it must be looked at again and again.
  virtual bool TellOnce(MonitorHandle monitor, base::Listener& listener) = 0;
};

}  // namespace tavlo::pedals
