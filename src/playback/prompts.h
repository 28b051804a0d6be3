#pragma once

#include "forms/configuration_form.h"
#include "playback/audio_objects.h"
#include "playback/voice.h"
#include "store/work_folders.h"
#include "window/settings_binding.h"

namespace tavlo::playback {

/// The deck's voice: spoken prompts that confirm what was done, and the tones of a wind. A prompt
/// is one-shot and the last one wins. One that cannot be played is passed over in silence.
class Prompts : public Voice {
 public:
  Prompts(const forms::ConfigurationForm& config, const window::SettingsBinding& settings,
          const store::WorkFolders& folders, AudioPlayer& player, PromptMediaControl& control);

  /// The volume of the tones, half of what is spoken.
  double PromptVolumeHalf = 15000.0;

  /// Speaks the recording of that name, at the prompts' volume; does not wait for its end. The
  /// player's master volume is the prompts' until it is set again.
  void PlayPrompt(PromptName name) override;
  void StopPrompt() override;
  /// Lets go of the recording that was played last.
  void Close();

 private:
  int MasterVolume(double volume) const;

  const forms::ConfigurationForm& config_;
  const window::SettingsBinding& settings_;
  const store::WorkFolders& folders_;
  AudioPlayer& player_;
  PromptMediaControl& control_;
};

}  // namespace tavlo::playback
