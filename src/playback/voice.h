#pragma once

#include "playback/prompt_names.h"

namespace tavlo::playback {

/// What the deck says: the spoken prompts, and the tones of a wind.
class Voice {
 public:
  virtual ~Voice() = default;

  /// Speaks the prompt of that name; does not wait for its end.
  virtual void PlayPrompt(PromptName name) = 0;
  virtual void StopPrompt() = 0;
};

}  // namespace tavlo::playback
