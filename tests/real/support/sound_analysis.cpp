#include "support/sound_analysis.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tavlo::test {

Sound Sound::Between(double fromSeconds, double toSeconds) const {
  const auto place = [&](double at) {
    const double last = static_cast<double>(samples.size());
    return samples.begin() + static_cast<std::ptrdiff_t>(std::clamp(at * rate, 0.0, last));
  };
  return {.samples = {place(fromSeconds), place(std::max(fromSeconds, toSeconds))}, .rate = rate};
}

Sound Tone(double hertz, double seconds, int rate, double amplitude) {
  Sound tone{.rate = rate};
  const auto count = static_cast<std::size_t>(std::llround(seconds * rate));
  tone.samples.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double phase = 2 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
    tone.samples.push_back(static_cast<float>(amplitude * std::sin(phase)));
  }
  return tone;
}

Extent Audible(const Sound& sound, float threshold) {
  const auto loud = [threshold](float value) { return std::abs(value) > threshold; };
  const auto first = std::find_if(sound.samples.begin(), sound.samples.end(), loud);
  if (first == sound.samples.end()) return {};
  const auto last = std::find_if(sound.samples.rbegin(), sound.samples.rend(), loud);
  return {.begin = static_cast<std::size_t>(first - sound.samples.begin()),
          .end = static_cast<std::size_t>(last.base() - sound.samples.begin())};
}

double AudibleSeconds(const Sound& sound, float threshold) {
  const Extent extent = Audible(sound, threshold);
  return static_cast<double>(extent.end - extent.begin) / sound.rate;
}

double PitchOf(const Sound& tone) {
  // A straight line through the moments of all crossings averages out what a single one is off.
  std::vector<double> crossings;
  for (std::size_t i = 1; i < tone.samples.size(); ++i) {
    const double before = tone.samples[i - 1];
    const double after = tone.samples[i];
    if (before < 0 && after >= 0) {
      crossings.push_back(static_cast<double>(i - 1) + before / (before - after));
    }
  }
  if (crossings.size() < 2) return 0;
  const auto count = static_cast<double>(crossings.size());
  double sumMoments = 0;
  for (const double moment : crossings) sumMoments += moment;
  double covariance = 0;
  double variance = 0;
  for (std::size_t i = 0; i < crossings.size(); ++i) {
    const double number = static_cast<double>(i) - (count - 1) / 2;
    covariance += number * (crossings[i] - sumMoments / count);
    variance += number * number;
  }
  return tone.rate / (covariance / variance);
}

double Cents(double hertz, double reference) {
  return hertz > 0 ? 1200 * std::log2(hertz / reference) : -1e9;
}

double LargestStep(const Sound& sound) {
  double largest = 0;
  for (std::size_t i = 1; i < sound.samples.size(); ++i) {
    largest = std::max<double>(largest, std::abs(sound.samples[i] - sound.samples[i - 1]));
  }
  return largest;
}

double SlopeOfTone(double hertz, double amplitude, int rate) {
  return 2 * amplitude * std::sin(std::numbers::pi * hertz / rate);
}

std::vector<Extent> Pauses(const Sound& sound, double shortest, float threshold) {
  std::vector<Extent> pauses;
  const Extent audible = Audible(sound, threshold);
  std::size_t lastLoud = audible.begin;
  for (std::size_t i = audible.begin; i < audible.end; ++i) {
    if (std::abs(sound.samples[i]) <= threshold) continue;
    if (static_cast<double>(i - lastLoud) >= shortest * sound.rate) {
      pauses.push_back({.begin = lastLoud + 1, .end = i});
    }
    lastLoud = i;
  }
  return pauses;
}

}  // namespace tavlo::test
