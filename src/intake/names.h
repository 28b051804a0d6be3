#pragma once

#include <string>
#include <string_view>

namespace tavlo::intake {

/// The text with every occurrence of `what`, upper and lower case being two, replaced.
std::string WithEachReplaced(std::string_view text, std::string_view what, std::string_view by);

}  // namespace tavlo::intake
