#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/loop.h"
#include "intake/conversion_libraries.h"
#include "support/simulated_disk.h"

namespace tavlo::test {

/// Libraries that make a wave of whatever they are given, which then reads "wave of " and what the
/// source holds. A source that is not there they cannot convert.
class SimulatedConversion : public intake::ConversionLibraries {
 public:
  SimulatedConversion(base::Loop& loop, SimulatedDisk& disk) : loop_(loop), disk_(disk) {}

  /// What the calls answer. A failure leaves half a wave behind.
  std::int32_t status = 0;
  std::uint8_t result = 0;
  /// The calls give no sign any more.
  bool givesNoAnswer = false;
  /// They say that the wave is there, and have made none.
  bool makesNothing = false;
  base::Duration takes{0};
  /// Runs within a call, once its time has passed.
  std::function<void()> meanwhile = [] {};

  struct Call {
    std::string library;
    std::string source;
    std::string destination;
  };
  std::vector<Call> calls;

  std::optional<std::int32_t> WriteFile(std::string_view rate, const std::string& source,
                                        const std::string& destination) override {
    calls.push_back({"DssCodec" + std::string(rate), source, destination});
    const bool readable = disk_.Has(source);
    if (!Work(source, destination, status == 0)) return {};
    return readable ? status : kSourceIsMissing;
  }
  std::optional<std::uint8_t> AddHdr(const std::string& source,
                                     const std::string& destination) override {
    calls.push_back({"MuLawHeader", source, destination});
    const bool readable = disk_.Has(source);
    if (!Work(source, destination, result == 0 || result == 5)) return {};
    return readable ? result : static_cast<std::uint8_t>(kSourceIsMissing);
  }

 private:
  static constexpr std::int32_t kSourceIsMissing = 2;

  /// The source stays open, whatever becomes of its name.
  bool Work(const std::string& source, const std::string& destination, bool whole) {
    const bool readable = disk_.Has(source);
    const std::string sound = disk_.Contents(source);
    if (takes > base::Duration{0}) loop_.BreatheUntil([] { return false; }, loop_.Now() + takes);
    meanwhile();
    if (givesNoAnswer) return false;
    if (readable && !makesNothing) {
      disk_.WithFile(destination, (whole ? "wave of " : "half a wave of ") + sound);
    }
    return true;
  }

  base::Loop& loop_;
  SimulatedDisk& disk_;
};

}  // namespace tavlo::test
