#pragma once

#include <memory>
#include <span>
#include <vector>

#include "platform/sound/speech_stretcher.h"
#include "playback/audio_objects.h"

namespace tavlo::platform {

/// Stretches documents with SoundTouch. Between 100 percent and any other speed it changes over
/// without a click: into the stretch the sound simply goes on, out of it the stretched sound fades
/// into the plain one where the two are most alike.
class SoundTouchTransform : public playback::AudioTransform {
 public:
  SoundTouchTransform();
  ~SoundTouchTransform() override;

  void Reset(int sampleRate) override;
  void ChangeSpeed(playback::SampleArray& block, float speedPercent) override;
  playback::SampleArray SplitLeft(const playback::SampleArray& interleaved) override;
  playback::SampleArray SplitRight(const playback::SampleArray& interleaved) override;
  playback::SampleArray JoinChannels(const playback::SampleArray& left,
                                     const playback::SampleArray& right) override;

 private:
  void ChangeLeft(playback::SampleArray& left, float speedPercent);
  void ChangeWhole(playback::SampleArray& block, float speedPercent);
  std::vector<float> Stretch(const playback::SampleArray& block, double speed);
  std::vector<float> ReturnToPlain(const playback::SampleArray& block);
  void Remember(std::span<const float> values, int channels);
  double StretchLag(double speed) const;

  int sampleRate_ = 44100;
  std::unique_ptr<SpeechStretcher> stretcher_;  ///< None while the sound passes plainly.
  double lag_ = 0;  ///< Document samples by which the output's end trails the input's end.
  std::vector<float> before_;  ///< The last plain frames that were taken in.
  /// The right channel of the pair whose left one comes next, and then its stretched form.
  playback::SampleArray right_;
};

}  // namespace tavlo::platform
