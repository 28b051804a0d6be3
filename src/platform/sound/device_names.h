#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace tavlo::platform {

/// The known names, and behind them those of `present` that are not among them. Of several devices
/// of one name each counts. What is known stays where it is, so an index keeps its meaning.
inline std::vector<std::string> WithNewNames(std::vector<std::string> known,
                                             const std::vector<std::string>& present) {
  std::vector<std::string> unmatched = known;
  for (const std::string& name : present) {
    const auto match = std::ranges::find(unmatched, name);
    if (match != unmatched.end()) {
      unmatched.erase(match);
    } else {
      known.push_back(name);
    }
  }
  return known;
}

}  // namespace tavlo::platform
