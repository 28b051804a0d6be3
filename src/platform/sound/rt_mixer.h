#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/sound/rt_block.h"
#include "platform/sound/rt_equalizer.h"
#include "platform/sound/rt_ramp.h"
#include "platform/sound/rt_voice.h"

namespace tavlo::platform {

/// Turns queued blocks into the sound of the device: the document and, beside it, the prompt, under
/// one volume. It knows no device; whoever owns one calls RtRender from the thread that the device
/// asks on. Everything else is called on the loop's thread, save that the loop may render itself
/// while no device does.
///
/// Nothing that starts, ends, is dropped or changes its volume clicks: each is a ramp of 5 ms.
class RtMixer {
 public:
  static constexpr std::size_t kMaxBlocks = RtVoice::kMaxBlocks;
  static constexpr int kRampMilliseconds = 5;

  /// Frames a second. Only while no device renders.
  void SetRate(int framesPerSecond);

  // The document, as RtVoice says it. Heard and peaks are its alone; peaks are before the volume.
  std::uint64_t BeginRun() { return document_.BeginRun(); }
  void Hold() { document_.Hold(); }
  [[nodiscard]] bool Queue(std::unique_ptr<RtBlock> block) {
    return document_.Queue(std::move(block));
  }
  std::unique_ptr<RtBlock> TakeFreed() { return document_.TakeFreed(); }
  std::array<float, 2> TakePeaks() { return document_.TakePeaks(); }
  FrameCount RenderedFrames() const { return document_.RenderedFrames(); }
  double Heard(std::uint64_t run, FrameCount frame) { return document_.Heard(run, frame); }

  /// Sounds a whole prompt, its edges ramped; the one before fades out first. False when so many
  /// are on their way that there is no room, which only a device that renders nothing brings about.
  [[nodiscard]] bool PlayPrompt(std::unique_ptr<RtBlock> prompt);
  /// Fades out what sounds.
  void StopPrompt();
  /// Prompts that are still to be heard or to be faded out. Lets go of the others.
  std::size_t PromptsOnTheirWay();

  /// Whether all that was dropped has faded out.
  bool Settled() const { return document_.Settled() && prompts_.Settled(); }

  // The equalizer shapes the document alone; a prompt passes it by.
  void SetEqualizerCurve(const BandGains& curve) { equalizer_.SetCurve(curve); }
  void SetEqualizerEnabled(bool enabled) { equalizer_.SetEnabled(enabled); }
  bool EqualizerEnabled() const { return equalizer_.Enabled(); }

  /// Amplitude from 0 to 1.
  void SetVolume(float amplitude) { volume_.store(amplitude, std::memory_order_relaxed); }

  /// Writes `frames` frames of both ears, interleaved.
  void RtRender(float* out, FrameCount frames);

 private:
  void RtAimVolume();

  RtVoice document_;
  RtEqualizer equalizer_;
  RtVoice prompts_;
  std::atomic<float> volume_{1};

  // The rendering thread's own.
  int rampFrames_ = 240;
  RtRamp rtVolume_{1};
};

}  // namespace tavlo::platform
