#include "platform/sound/rt_mixer.h"

#include <algorithm>

namespace tavlo::platform {

void RtMixer::SetRate(int framesPerSecond) {
  rampFrames_ = std::max(1, framesPerSecond * kRampMilliseconds / 1000);
  equalizer_.SetRate(framesPerSecond);
}

bool RtMixer::PlayPrompt(std::unique_ptr<RtBlock> prompt) {
  PromptsOnTheirWay();
  prompt->run = prompts_.BeginRun();
  return prompts_.Queue(std::move(prompt));
}

void RtMixer::StopPrompt() {
  if (PromptsOnTheirWay() > 0) prompts_.BeginRun();
}

std::size_t RtMixer::PromptsOnTheirWay() {
  while (prompts_.TakeFreed()) {
  }
  return prompts_.OnTheirWay();
}

void RtMixer::RtRender(float* out, FrameCount frames) {
  std::fill(out, out + 2 * frames, 0.0F);
  RtAimVolume();
  document_.RtAdd(out, frames, rampFrames_);
  equalizer_.RtShape(out, frames, document_.RtSilent());
  prompts_.RtAdd(out, frames, rampFrames_);
  for (FrameCount i = 0; i < frames; ++i, out += 2) {
    const float volume = rtVolume_.RtNext();
    out[0] *= volume;
    out[1] *= volume;
  }
}

/// While nothing sounds the volume need not walk.
void RtMixer::RtAimVolume() {
  const float volume = volume_.load(std::memory_order_relaxed);
  if (document_.RtSilent() && prompts_.RtSilent()) {
    rtVolume_ = RtRamp(volume);
  } else {
    rtVolume_.RtAim(volume, rampFrames_);
  }
}

}  // namespace tavlo::platform
