#pragma once

#include <string>
#include <vector>

#include "platform/sound/rt_mixer.h"

namespace tavlo::platform {

/// A sound device that asks a mixer for frames, on a thread of its own, from Open to Close.
/// Everything here is called on the loop's thread. A machine without sound answers with an empty
/// list and a refused Open, and nothing else happens.
class OutputDevice {
 public:
  virtual ~OutputDevice() = default;

  /// The names of the devices that are present now. The first is the system's default device,
  /// wherever the desktop moves it. Empty without any.
  virtual std::vector<std::string> FindDevices() = 0;
  /// The names by now, when those of `present` are there: what FindDevices gave, and behind it what
  /// has come since. No index changes. Asks no server.
  virtual std::vector<std::string> LearnDevices(const std::vector<std::string>& present) = 0;

  /// Frames a second at which the default device is at ease.
  virtual int PreferredRate() = 0;
  /// Opens the device of that index of those names, or the default one when that device is
  /// gone, and plays what `mixer` renders, silence included; closes what was open. False when the
  /// device cannot be had.
  [[nodiscard]] virtual bool Open(int index, int framesPerSecond, RtMixer& mixer) = 0;
  /// After it nothing renders any more.
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;
  /// The open device has died and will ask for nothing more.
  virtual bool HasFailed() const = 0;

  /// Whether the open device has run out of frames since the last call, because the machine was
  /// busy, and would keep more of them on their way if it were opened again.
  virtual bool TakeRanDry() = 0;

  /// Frames that have been heard since Open. Negative when the device cannot say.
  virtual FrameCount HeardFrames() = 0;
  /// Waits about a millisecond, in which the device may render.
  virtual void LetRender() = 0;
};

}  // namespace tavlo::platform
