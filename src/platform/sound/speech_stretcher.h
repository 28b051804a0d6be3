#pragma once

#include <memory>
#include <span>
#include <vector>

#include "platform/sound/stream_resampler.h"

namespace soundtouch {
class SoundTouch;
}

namespace tavlo::platform {

/// Stretches one unbroken stretch of sound, tuned for speech. What goes in comes out a little
/// later; it says how much it holds back. A frame is one moment of all channels.
class SpeechStretcher {
 public:
  /// The library takes no more frames a second. Sound of a higher rate is stretched at a whole part
  /// of it, which still holds more than an ear hears, and comes out at its own rate again.
  static constexpr int kMostFramesPerSecond = 192'000;
  /// Length of the pieces that the sound is cut into. Longer sounds smoother in vowels and doubles
  /// consonants at slow speeds; shorter hums.
  static constexpr int kSequenceMilliseconds = 40;
  /// How far a piece may be moved so that it fits the one before. Longer finds low voices' periods,
  /// and lets the position waver by half of it.
  static constexpr int kSeekMilliseconds = 15;
  /// Crossfade from piece to piece.
  static constexpr int kOverlapMilliseconds = 8;

  SpeechStretcher(int framesPerSecond, int channels);
  ~SpeechStretcher();

  int Channels() const { return channels_; }

  /// Takes frames in and returns all that are ready. `speed` is 0.5 to 1.5; a new one reaches also
  /// what is held back.
  std::vector<float> Process(std::span<const float> in, double speed);
  /// Returns the rest, as long as what is held back has to be. Nothing may be processed after it.
  std::vector<float> Finish();
  /// The rest, and behind it the stretched beginning of `next`, `overlap` frames long, to fade
  /// from.
  struct Ending {
    std::vector<float> rest;
    std::vector<float> beyond;
  };
  Ending FinishInto(std::span<const float> next, int overlap);

  /// Frames of the source that are in and have not come out.
  double HeldBack() const { return heldBack_; }

 private:
  /// At most what the library takes.
  static int RateOfLibrary(int framesPerSecond);
  /// Puts frames in and collects all that come out.
  void Push(std::span<const float> in);
  std::vector<float> Take(int frames);
  int Ready() const { return static_cast<int>(ready_.size()) / channels_; }

  std::unique_ptr<soundtouch::SoundTouch> library_;
  int framesPerSecond_;
  int channels_;
  /// Before and behind the library; none at a rate that it takes.
  std::unique_ptr<StreamResampler> toLibrary_;
  std::unique_ptr<StreamResampler> fromLibrary_;
  std::vector<float> ready_;
  double speed_ = 1;
  double heldBack_ = 0;
};

}  // namespace tavlo::platform
