#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavlo::intake {

/// What a call is answered with whose library is not in the root, or cannot be loaded or lacks the
/// call. The libraries themselves use neither number.
inline constexpr std::int32_t kLibraryMissing = 40;
inline constexpr std::int32_t kLibraryBroken = 41;

/// The calls of the conversion libraries that stand in the root. They are told nothing but full
/// paths, the source first. The loop breathes until those that answer return, so nothing
/// interleaves. Nothing is answered when a call gives no sign any more; it is left behind and may
/// still write its destination, so nobody uses that name again. On the loop's thread.
class ConversionLibraries {
 public:
  virtual ~ConversionLibraries() = default;

  /// `_WriteFile` of the library of one output rate, one of `store::kDssCodecRates`. 0: the wave
  /// stands at the destination. Anything else is a failure code of the library.
  virtual std::optional<std::int32_t> WriteFile(std::string_view rate, const std::string& source,
                                                const std::string& destination) = 0;
  /// `_Prepare` of that library, which nobody waits for: the source is likely to be converted soon,
  /// into a wave at the destination, which is told by its folder. `WriteFile` may have less to do
  /// then, and nothing else follows from it.
  virtual void Prepare(std::string_view rate, const std::string& source,
                       const std::string& destination) = 0;
  /// `AddHdr`. 0 and 5 are successes.
  virtual std::optional<std::uint8_t> AddHdr(const std::string& source,
                                             const std::string& destination) = 0;
};

}  // namespace tavlo::intake
