#pragma once

#include "forms/configuration_form.h"
#include "playback/audio_objects.h"
#include "playback/source_mixer.h"
#include "window/configuration_page.h"

namespace tavlo::playback {

/// The mixer page: which sound device plays, and what its sources are set to.
class MixerPage : public window::ConfigurationPage {
 public:
  MixerPage(forms::ConfigurationForm& config, AudioPlayer& player, SourceMixer& mixer);
  ~MixerPage() override;
  MixerPage(const MixerPage&) = delete;

  /// Lists the player's devices and selects the stored one, or the first where it is not listed.
  void ListDevices();
  /// Shows the sources of the player's device as they are now.
  void SetSrcDevice();

  forms::Pane& Frame() override { return config_.frameConfigMixer; }
  void ComesToFront() override;

 private:
  void BindStrip(int source);
  void ChooseDevice();
  void ShowSource(int source);
  void LetGo();
  void FollowChange();
  void ListNewDevices();

  forms::ConfigurationForm& config_;
  AudioPlayer& player_;
  SourceMixer& mixer_;
  /// A hand holds a slider. The page stands still meanwhile, so that the slider does not jump and
  /// its strip keeps its source.
  bool held_ = false;
  bool changedWhileHeld_ = false;
};

}  // namespace tavlo::playback
