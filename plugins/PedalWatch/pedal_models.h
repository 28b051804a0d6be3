#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tavlo::pedal_watch {

/// Vendor of the pedal that is picked by product and usage.
inline constexpr std::uint16_t kPickedVendor = 0x05F3;

/// A pedal of another make: where in its reports the three pedals stand.
struct PedalModel {
  std::uint16_t vendor;
  std::uint16_t product;
  std::size_t byte;  ///< Of the report, from 0.
  std::uint8_t left;
  std::uint8_t center;
  std::uint8_t right;
};

/// A fourth pedal, where there is one, has no part in the transport.
inline constexpr std::array kPedalModels{
    PedalModel{0x0911, 0x1844, 0, 0x01, 0x02, 0x04},
    PedalModel{0x0911, 0x091A, 0, 0x01, 0x02, 0x04},
    PedalModel{0x15D8, 0x0024, 0, 0x01, 0x02, 0x04},
    PedalModel{0x07B4, 0x0202, 2, 0x08, 0x02, 0x04},
};

/// The model of that make, or null.
const PedalModel* FindModel(std::uint16_t vendor, std::uint16_t product);

/// The bits of the picked pedal (1 left, 2 center, 4 right) for a report of another model; nothing
/// when the report is too short to tell.
std::optional<std::uint8_t> PedalBits(const PedalModel& model,
                                      std::span<const std::uint8_t> report);

}  // namespace tavlo::pedal_watch
