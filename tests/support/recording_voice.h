#pragma once

#include <functional>
#include <string>
#include <vector>

#include "playback/voice.h"

namespace tavlo::test {

/// Writes down what is spoken.
class RecordingVoice : public playback::Voice {
 public:
  std::vector<std::string> spoken;
  /// Something is spoken, or what was spoken is cut off.
  std::function<void()> OnUse = [] {};

  void PlayPrompt(playback::PromptName name) override {
    spoken.emplace_back(std::string_view(name));
    OnUse();
  }
  void StopPrompt() override { OnUse(); }
};

}  // namespace tavlo::test
