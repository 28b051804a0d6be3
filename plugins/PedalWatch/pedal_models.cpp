#include "pedal_models.h"

#include <algorithm>

namespace tavlo::pedal_watch {

const PedalModel* FindModel(std::uint16_t vendor, std::uint16_t product) {
  const auto found = std::ranges::find_if(kPedalModels, [&](const PedalModel& model) {
    return model.vendor == vendor && model.product == product;
  });
  return found == kPedalModels.end() ? nullptr : &*found;
}

std::optional<std::uint8_t> PedalBits(const PedalModel& model,
                                      std::span<const std::uint8_t> report) {
  if (report.size() <= model.byte) return {};
  const std::uint8_t raw = report[model.byte];
  const int left = (raw & model.left) != 0 ? 1 : 0;
  const int center = (raw & model.center) != 0 ? 2 : 0;
  const int right = (raw & model.right) != 0 ? 4 : 0;
  return static_cast<std::uint8_t>(left + center + right);
}

}  // namespace tavlo::pedal_watch
