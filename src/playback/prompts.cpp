#include "playback/prompts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <tuple>

namespace tavlo::playback {
namespace {

/// A wind jump must be heard and gone before the next, however long its recording is.
constexpr std::int64_t kToneMilliseconds = 50;

bool IsTone(std::string_view name) { return name == "RewindTone" || name == "ForwardTone"; }

}  // namespace

Prompts::Prompts(const forms::ConfigurationForm& config, const window::SettingsBinding& settings,
                 const store::WorkFolders& folders, AudioPlayer& player,
                 PromptMediaControl& control)
    : config_(config), settings_(settings), folders_(folders), player_(player), control_(control) {}

void Prompts::PlayPrompt(PromptName name) {
  if (!settings_.AudioPromptsOn) return;
  control_.Close();
  control_.SetDeviceType("WaveAudio");
  control_.SetFileName(folders_.PromptsPath() + std::string(name) + ".wav");
  // A recording that is missing must not keep the steps behind it from being made.
  std::ignore = control_.Open();
  const double volume = config_.txtPromptVolume.Number();
  if (IsTone(name)) {
    control_.SetFrom(0);
    control_.SetTo(kToneMilliseconds);
    PromptVolumeHalf = volume / 2 >= 0 ? volume / 2 : 0.0;
    player_.SetVolume(MasterVolume(PromptVolumeHalf));
  } else {
    player_.SetVolume(MasterVolume(volume));
  }
  std::ignore = control_.Play();
}

void Prompts::StopPrompt() { control_.Stop(); }

void Prompts::Close() { control_.Close(); }

int Prompts::MasterVolume(double volume) const {
  const forms::Span& bounds = config_.sldPromptVol.Bounds;
  return static_cast<int>(std::nearbyint(std::clamp(volume, static_cast<double>(bounds.minimum),
                                                    static_cast<double>(bounds.maximum))));
}

}  // namespace tavlo::playback
