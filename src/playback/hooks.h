#pragma once

#include <functional>
#include <string_view>

#include "playback/prompt_names.h"

namespace tavlo::playback {

/// What playback calls that stands elsewhere: filled when the deck is wired. A hook that nobody
/// filled does nothing.
struct Hooks {
  std::function<void(std::string_view name)> playPrompt;
  std::function<void()> stopPrompt;
  std::function<void()> applyEqualizer;
  std::function<void()> listSources;
  std::function<void()> showConfiguration;

  /// Speaks the prompt of that name.
  void PlayPrompt(PromptName name) const {
    if (playPrompt) playPrompt(name);
  }
  void StopPrompt() const { Call(stopPrompt); }
  /// Clicks the stored equalizer choice again, so that its curve is what plays.
  void ApplyEqualizer() const { Call(applyEqualizer); }
  /// Shows the sources of the selected sound device.
  void ListSources() const { Call(listSources); }
  void ShowConfiguration() const { Call(showConfiguration); }

 private:
  static void Call(const std::function<void()>& hook) {
    if (hook) hook();
  }
};

}  // namespace tavlo::playback
