#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/loop.h"
#include "intake/conversion_libraries.h"
#include "support/simulated_disk.h"

namespace tavlo::test {

/// Libraries that make a wave of whatever they are given, which then reads "wave of " and what the
/// source holds. They refuse what the real ones refuse: a source that is not there or changes
/// meanwhile, a folder that takes no file, a full disk. A wave is one operation of the disk, so it
/// appears whole, and a place that gives no answer gives none to a library either.
class SimulatedConversion : public intake::ConversionLibraries {
 public:
  SimulatedConversion(base::Loop& loop, SimulatedDisk& disk) : loop_(loop), disk_(disk) {}

  /// What stands in front of a source's contents in its wave.
  static constexpr std::string_view kWaveOf = "wave of ";

  /// What the calls answer. A failure leaves half a wave behind, which the real ones do not.
  std::int32_t status = 0;
  std::uint8_t result = 0;
  /// The calls give no sign any more.
  bool givesNoAnswer = false;
  /// They say that the wave is there, and have made none.
  bool makesNothing = false;
  base::Duration takes{0};
  /// Runs within a call, once its time has passed.
  std::function<void()> meanwhile = [] {};
  /// How long the loop has breathed for the calls, all in all.
  base::Duration breathed{0};

  struct Call {
    std::string library;
    std::string source;
    std::string destination;
  };
  std::vector<Call> calls;
  /// The sources that were to be prepared, in their order.
  std::vector<std::string> prepared;

  std::optional<std::int32_t> WriteFile(std::string_view rate, const std::string& source,
                                        const std::string& destination) override {
    calls.push_back({"DssCodec" + std::string(rate), source, destination});
    return Convert(source, destination, status, status == 0);
  }
  void Prepare(std::string_view, const std::string& source, const std::string&) override {
    prepared.push_back(source);
  }
  std::optional<std::uint8_t> AddHdr(const std::string& source,
                                     const std::string& destination) override {
    calls.push_back({"MuLawHeader", source, destination});
    const auto answer = Convert(source, destination, result, result == 0 || result == 5);
    if (!answer) return {};
    return static_cast<std::uint8_t>(*answer);
  }

 private:
  // Numbers of the real libraries.
  static constexpr std::int32_t kNotFound = 1;
  static constexpr std::int32_t kNotPermitted = 3;
  static constexpr std::int32_t kSourceChanged = 6;
  static constexpr std::int32_t kCannotCreate = 8;
  static constexpr std::int32_t kWriteFailed = 9;
  static constexpr std::int32_t kDiskFull = 10;
  static constexpr std::int32_t kNoMemory = 12;

  std::optional<std::int32_t> Convert(const std::string& source, const std::string& destination,
                                      std::int32_t answer, bool succeeds) {
    const int held = disk_.NumberOf(source);
    const std::string sound = disk_.Contents(source);
    Work();
    if (givesNoAnswer) return {};
    if (held == 0) return kNotFound;
    // The source stays open, whatever becomes of its name.
    const std::string now = disk_.PathOf(held);
    if (!now.empty() && disk_.Contents(now) != sound) return kSourceChanged;
    if (makesNothing) return answer;
    if (succeeds) return Produce(source, destination, sound, answer);
    if (!disk_.Crashed()) disk_.WithFile(destination, "half a wave of " + sound);
    return answer;
  }

  void Work() {
    const base::MonotonicTime begun = loop_.Now();
    if (takes > base::Duration{0}) loop_.BreatheUntil([] { return false; }, begun + takes);
    breathed += loop_.Now() - begun;
    meanwhile();
  }

  std::optional<std::int32_t> Produce(const std::string& source, const std::string& destination,
                                      const std::string& sound, std::int32_t success) {
    switch (disk_.Produce(source, destination, std::string(kWaveOf) + sound)) {
      case store::DiskResult::Done:
        return success;
      case store::DiskResult::OutOfReach:
        return {};
      case store::DiskResult::NoSpace:
        return kDiskFull;
      case store::DiskResult::ProcessInTrouble:
        return kNoMemory;
      case store::DiskResult::NoAccess:
        return kNotPermitted;
      case store::DiskResult::NotFound:
        return kCannotCreate;
      default:
        return kWriteFailed;
    }
  }

  base::Loop& loop_;
  SimulatedDisk& disk_;
};

}  // namespace tavlo::test
