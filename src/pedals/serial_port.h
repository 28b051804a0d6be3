#pragma once

#include <optional>

#include "base/listener.h"

namespace tavlo::pedals {

/// The status lines of a serial port that pedals close. True is a line that is held.
struct SerialLines {
  bool CDHolding = false;   ///< Carrier detect: the left pedal.
  bool DSRHolding = false;  ///< Data set ready: the center pedal.
  bool CTSHolding = false;  ///< Clear to send: the right pedal.
  bool operator==(const SerialLines&) const = default;
};

/// The serial port of a foot pedal. No byte ever travels over it. Nothing here blocks; everything
/// is called on the loop's thread.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  /// Opens the port of that number, counted from 1, and closes the one that was open. False when
  /// there is no such port or it may not be used; then none is open.
  virtual bool Open(int portNumber) = 0;
  virtual void Close() = 0;
  /// The lines as they are now; nothing when no port is open or the open one has gone. A port that
  /// comes back is found again without another `Open`.
  virtual std::optional<SerialLines> ReadLines() = 0;
  /// Tells the listener, once, that a line has changed since the last `ReadLines` or that the port
  /// has gone. `ReadLines`, `Open` and `Close` end this. False when the port cannot tell, or not
  /// yet: then its lines must be read again and again. A change that comes within moments of
  /// another may go untold, also where this was true.
  virtual bool TellOnce(base::Listener& listener) = 0;
};

}  // namespace tavlo::pedals
