#pragma once

#include <string>
#include <vector>

#include "playback/source_mixer.h"

namespace tavlo::test {

struct SimulatedSource {
  std::string name;
  int volume = 65535;
  int balance = 50;
  bool mute = false;
  bool hasVolume = true;
  bool hasBalance = true;
  bool hasMute = true;
  int advanced = -1;
};

/// The mixer of a desktop whose devices and sources a test lays out. As strict as the real one: the
/// list stands still between two calls of SelectDevice, and nothing can be selected that is not in
/// it.
class SimulatedMixer : public playback::SourceMixer {
 public:
  /// The sources of each device; a device that is not here has those of the first. A source is
  /// known by its name, on whichever device it stands.
  std::vector<std::vector<SimulatedSource>> Devices;
  /// What the desktop calls the devices that are plugged in; by default it tells none, so that the
  /// player's list is the one that the test laid out.
  std::vector<std::string> Plugged;
  /// Names of the sources that were written to, and what: "Output volume 100".
  std::vector<std::string> Writes;
  std::string DeviceName;
  int Looks = 0;

  /// Another program has changed what stands in Devices.
  void TellChange() {
    if (OnChange) OnChange();
  }

  void SelectDevice(int index, const std::string& name) override;
  std::vector<std::string> DevicesNow() const override { return Plugged; }
  int SourceCount() const override { return static_cast<int>(listed_.size()); }
  void SelectSource(int index) override { selected_ = index; }
  std::string SourceName() const override { return Selected().name; }
  bool SourceHasVolume() const override { return Selected().hasVolume; }
  int SourceVolume() const override { return Selected().volume; }
  bool SourceHasBalance() const override { return Selected().hasBalance; }
  int SourceBalance() const override { return Selected().balance; }
  bool SourceHasMute() const override { return Selected().hasMute; }
  bool SourceMute() const override { return Selected().mute; }
  int SourceHasAdvanced() const override { return Selected().advanced; }
  void SetSourceVolume(int volume) override;
  void SetSourceBalance(int balance) override;
  void SetSourceMute(bool mute) override;

 private:
  bool Exists() const { return selected_ >= 0 && selected_ < SourceCount(); }
  const SimulatedSource& Selected() const;
  template <typename T>
  void Write(T SimulatedSource::*value, T to, const std::string& what);

  std::vector<SimulatedSource> listed_;
  int device_ = 0;
  int selected_ = -1;
};

}  // namespace tavlo::test
