#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace tavlo::test {

/// One channel of sound, as it was recorded or rendered.
struct Sound {
  std::vector<float> samples;
  int rate = 48000;

  double Seconds() const { return static_cast<double>(samples.size()) / rate; }
  /// The part between two moments, cut to what there is.
  Sound Between(double fromSeconds, double toSeconds) const;
};

/// A tone of an amplitude.
Sound Tone(double hertz, double seconds, int rate, double amplitude = 0.5);

/// Where the sound is louder than `threshold`: first and last sample; an empty range in silence.
struct Extent {
  std::size_t begin = 0;
  std::size_t end = 0;
};
Extent Audible(const Sound& sound, float threshold = 0.005F);
/// Seconds from the first to the last audible sample, pauses included.
double AudibleSeconds(const Sound& sound, float threshold = 0.005F);

/// The pitch of a steady tone, from its upward zero crossings.
double PitchOf(const Sound& tone);
/// The distance of two pitches in cents; 100 of them are a semitone.
double Cents(double hertz, double reference);

/// The largest step from one sample to the next.
double LargestStep(const Sound& sound);
/// The largest step that a pure tone itself makes.
double SlopeOfTone(double hertz, double amplitude, int rate);

/// Pauses of at least `shortest` seconds between the first and the last audible sample.
std::vector<Extent> Pauses(const Sound& sound, double shortest, float threshold = 0.005F);

}  // namespace tavlo::test
