#include "platform/sound/equalizer_design.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace tavlo::platform {
namespace {

/// Bandwidth follows the distance to the neighbours: an octave up to 4 kHz, about half of one
/// above.
constexpr std::array<double, kEqualizerBands> kQuality{1.4, 1.4, 1.4, 1.4, 1.4, 1.4,
                                                       1.4, 1.8, 2.4, 2.8, 3.2, 3.2};
constexpr int kMostRounds = 40;
constexpr double kCloseEnough = 0.01;
/// Change of a gain by which the slope of the response is measured, in dB.
constexpr double kNudge = 0.5;

using Matrix = std::array<BandGains, kEqualizerBands>;

double Tangent(double hertz, int framesPerSecond) {
  return std::tan(std::numbers::pi * hertz / framesPerSecond);
}

PeakingFilter DesignFilter(std::size_t band, double gain, int framesPerSecond) {
  PeakingFilter filter;
  filter.on = 2 * kEqualizerCentres[band] < framesPerSecond;
  if (!filter.on) return filter;
  const double amplitude = std::pow(10, gain / 40);
  const double damping = 1 / (kQuality[band] * amplitude);
  filter.g = static_cast<float>(Tangent(kEqualizerCentres[band], framesPerSecond));
  filter.k = static_cast<float>(damping);
  filter.mix = static_cast<float>(damping * (amplitude * amplitude - 1));
  return filter;
}

double FilterResponse(const PeakingFilter& filter, double tangent) {
  if (!filter.on) return 0;
  const double w = tangent / filter.g;
  const double distance = (1 - w * w) * (1 - w * w);
  const double damping = filter.k * w;
  const double boost = (static_cast<double>(filter.k) + filter.mix) * w;
  return 10 * std::log10((distance + boost * boost) / (distance + damping * damping));
}

/// Solves `matrix` * x = `right` by elimination with the largest pivot; a row without one is left
/// at 0.
BandGains Solve(Matrix matrix, BandGains right) {
  for (std::size_t column = 0; column < kEqualizerBands; ++column) {
    std::size_t pivot = column;
    for (std::size_t row = column + 1; row < kEqualizerBands; ++row) {
      if (std::abs(matrix[row][column]) > std::abs(matrix[pivot][column])) pivot = row;
    }
    std::swap(matrix[column], matrix[pivot]);
    std::swap(right[column], right[pivot]);
    if (std::abs(matrix[column][column]) < 1e-9) continue;
    for (std::size_t row = 0; row < kEqualizerBands; ++row) {
      if (row == column) continue;
      const double factor = matrix[row][column] / matrix[column][column];
      for (std::size_t k = column; k < kEqualizerBands; ++k) {
        matrix[row][k] -= factor * matrix[column][k];
      }
      right[row] -= factor * right[column];
    }
  }
  for (std::size_t i = 0; i < kEqualizerBands; ++i) {
    right[i] = std::abs(matrix[i][i]) < 1e-9 ? 0 : right[i] / matrix[i][i];
  }
  return right;
}

/// The gains of the filters at one rate, walked towards a curve.
class GainSearch {
 public:
  GainSearch(const BandGains& curve, int framesPerSecond) : curve_(curve), rate_(framesPerSecond) {
    for (std::size_t band = 0; band < kEqualizerBands; ++band) {
      tangents_[band] = Tangent(kEqualizerCentres[band], rate_);
    }
  }

  EqualizerDesign Run() {
    gains_ = curve_;
    for (int round = 0; round < kMostRounds; ++round) {
      const BandGains missing = Missing();
      const double worst =
          *std::max_element(missing.begin(), missing.end(),
                            [](double a, double b) { return std::abs(a) < std::abs(b); });
      if (std::abs(worst) < kCloseEnough) break;
      const BandGains step = Solve(Slopes(), missing);
      for (std::size_t band = 0; band < kEqualizerBands; ++band) {
        gains_[band] = std::clamp(gains_[band] + step[band], -kMostFilterGain, kMostFilterGain);
      }
    }
    return Filters();
  }

 private:
  EqualizerDesign Filters() const {
    EqualizerDesign design;
    for (std::size_t band = 0; band < kEqualizerBands; ++band) {
      design[band] = DesignFilter(band, gains_[band], rate_);
    }
    return design;
  }

  /// What the response lacks at each centre. A band that is off lacks nothing.
  BandGains Missing() const {
    const EqualizerDesign design = Filters();
    BandGains missing{};
    for (std::size_t centre = 0; centre < kEqualizerBands; ++centre) {
      if (!design[centre].on) continue;
      missing[centre] = curve_[centre];
      for (const PeakingFilter& filter : design) {
        missing[centre] -= FilterResponse(filter, tangents_[centre]);
      }
    }
    return missing;
  }

  /// By how many dB each centre moves with each gain.
  Matrix Slopes() const {
    Matrix slopes{};
    for (std::size_t band = 0; band < kEqualizerBands; ++band) {
      const PeakingFilter less = DesignFilter(band, gains_[band] - kNudge, rate_);
      const PeakingFilter more = DesignFilter(band, gains_[band] + kNudge, rate_);
      for (std::size_t centre = 0; centre < kEqualizerBands; ++centre) {
        slopes[centre][band] =
            (FilterResponse(more, tangents_[centre]) - FilterResponse(less, tangents_[centre])) /
            (2 * kNudge);
      }
      // A band that is off moves nothing; the one keeps the matrix solvable.
      if (!less.on) {
        slopes[band] = {};
        slopes[band][band] = 1;
      }
    }
    return slopes;
  }

  const BandGains& curve_;
  int rate_;
  std::array<double, kEqualizerBands> tangents_{};
  BandGains gains_{};
};

}  // namespace

EqualizerDesign DesignEqualizer(const BandGains& curve, int framesPerSecond) {
  return GainSearch(curve, framesPerSecond).Run();
}

double ResponseOf(const EqualizerDesign& design, double hertz, int framesPerSecond) {
  double decibels = 0;
  for (const PeakingFilter& filter : design) {
    decibels += FilterResponse(filter, Tangent(hertz, framesPerSecond));
  }
  return decibels;
}

}  // namespace tavlo::platform
