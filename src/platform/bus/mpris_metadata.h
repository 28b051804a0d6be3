#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "remote/media_bus.h"

namespace tavlo::platform {

/// The object that stands for a document on the bus. It tells nothing about it but its number.
std::string TrackPath(std::uint64_t track);
/// The number in such a path; 0 when it is no document's.
std::uint64_t TrackOf(std::string_view path);

/// Appends what is known of the document as the property Metadata has it. Below 0 when the message
/// does not take it.
int AppendMetadata(sd_bus_message& message, const remote::MediaState& state);

}  // namespace tavlo::platform
