#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "conversion_code.h"

struct SwrContext;

namespace tavlo::dss {

/// Brings samples of one rate to another, both in samples per second. What goes in comes out as
/// long as it was, to the nearest sample. One thread at a time.
class RateConverter {
 public:
  RateConverter(int from, int to) : from_(from), to_(to) {}

  /// Makes it ready: Done or NoMemory. Once, before the first sample.
  conversion::ConversionCode Open();

  /// Appends to `target` what is ready: Done or DecodeFailed.
  conversion::ConversionCode Convert(std::span<const std::int16_t> samples,
                                     std::vector<std::int16_t>& target);
  /// Appends what it still holds. Nothing is converted afterwards.
  conversion::ConversionCode End(std::vector<std::int16_t>& target);

 private:
  struct Free {
    void operator()(SwrContext* context) const;
  };

  conversion::ConversionCode Run(const std::uint8_t* input, int count,
                                 std::vector<std::int16_t>& target);

  const int from_;
  const int to_;
  std::unique_ptr<SwrContext, Free> context_;
  std::int64_t taken_ = 0;
  std::int64_t given_ = 0;
};

}  // namespace tavlo::dss
