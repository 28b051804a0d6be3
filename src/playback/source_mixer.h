#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tavlo::playback {

/// The sources of a sound device as the desktop's mixer has them: the device's own output, what
/// this program plays, the device's inputs. Without a sound server there is none, and nothing
/// fails. Everything here is called, and the event arrives, on the loop's thread; nothing blocks
/// it.
class SourceMixer {
 public:
  virtual ~SourceMixer() = default;

  /// Lists the sources of the player's device of that index and name, as far as they are known now.
  /// The list stands still until the next call. A device that has gone, and index 0, are the
  /// system's default device. No source is selected then.
  virtual void SelectDevice(int index, const std::string& name) = 0;
  virtual int SourceCount() const = 0;
  /// The names of the devices that can play now, as the player calls them.
  virtual std::vector<std::string> DevicesNow() const = 0;

  /// What follows speaks of the selected source. An index that does not exist selects nothing: no
  /// name, volume 0, balance 50, not mute, and none of them to be had; writes are dropped.
  virtual void SelectSource(int index) = 0;
  virtual std::string SourceName() const = 0;
  virtual bool SourceHasVolume() const = 0;
  /// 0 to 65535. A source that is amplified beyond its full volume tells 65535.
  virtual int SourceVolume() const = 0;
  virtual bool SourceHasBalance() const = 0;
  /// 0 (left) to 100 (right), 50 in the middle.
  virtual int SourceBalance() const = 0;
  virtual bool SourceHasMute() const = 0;
  virtual bool SourceMute() const = 0;
  /// Negative: the source has no panel of its own.
  virtual int SourceHasAdvanced() const = 0;

  /// Each is told at once by its question and reaches the device soon after. A write to a source
  /// that has gone meanwhile does nothing; a value that the source has already changes nothing.
  virtual void SetSourceVolume(int volume) = 0;
  virtual void SetSourceBalance(int balance) = 0;
  virtual void SetSourceMute(bool mute) = 0;

  /// Devices or sources came, went, or were changed by another program: SelectDevice lists the
  /// sources anew.
  std::function<void()> OnChange;
};

}  // namespace tavlo::playback
