#pragma once

#include <array>
#include <cstddef>

namespace tavlo::platform {

inline constexpr std::size_t kEqualizerBands = 12;
/// Centres of the bands in hertz, as their sliders are labelled.
inline constexpr std::array<double, kEqualizerBands> kEqualizerCentres{
    31, 62, 125, 252, 500, 1000, 2000, 4000, 6000, 9000, 12000, 16000};

/// A gain in dB for each band.
using BandGains = std::array<double, kEqualizerBands>;

/// One peaking filter as the rendering thread wants it: a state-variable filter, whose states stay
/// small at low frequencies and which may be changed while it sounds.
struct PeakingFilter {
  float g = 0;      ///< Tangent of half the centre's angle; fixed for a rate.
  float k = 1;      ///< Damping.
  float mix = 0;    ///< How much of the band is added to the input. 0 passes it on to the bit.
  bool on = false;  ///< The centre is below half the rate.
};

using EqualizerDesign = std::array<PeakingFilter, kEqualizerBands>;

/// Filters whose response together meets `curve` at the centres. The bands overlap, so a filter for
/// each gain alone misses the curve by up to 14 dB; the twelve gains are solved as one. A band at
/// or above half the rate does nothing. Gains of a filter stay within kMostFilterGain, so a curve
/// that twelve filters cannot follow is met as far as that goes.
EqualizerDesign DesignEqualizer(const BandGains& curve, int framesPerSecond);

inline constexpr double kMostFilterGain = 36;

/// Response of all filters together at a frequency below half the rate, in dB.
double ResponseOf(const EqualizerDesign& design, double hertz, int framesPerSecond);

}  // namespace tavlo::platform
