#pragma once

#include <string_view>

#include "platform/access/access_rows.h"

namespace tavlo::platform {

/// The rows that the reading program has told of, as far as they came whole. Tables and fields that
/// are none of ours, and values that are longer than ours may be, are left out; so are rows beyond
/// those that any of our tables could have had. Servers and authors come in the order of their
/// numbers where each has one, else as the file has them.
AccessTables ReadTables(std::string_view output);

}  // namespace tavlo::platform
