#pragma once

#include <string>
#include <string_view>

namespace tavlo::intake {

/// Whether a name ends like this, upper and lower case being one, as the patterns of the passes
/// match.
bool EndsInPattern(std::string_view name, std::string_view ending);

/// The text with every occurrence of `what`, upper and lower case being two, replaced.
std::string WithEachReplaced(std::string_view text, std::string_view what, std::string_view by);

}  // namespace tavlo::intake
