#pragma once

#include <systemd/sd-bus.h>

#include <string>

namespace tavlo::test {

/// What a message says behind its head, values parted by commas: `"Playing", 1.5, true, [1, 2]`.
/// A value that may be of any type has its type in front: `{"Rate": d 1.5}`.
std::string TextOf(sd_bus_message* message);

}  // namespace tavlo::test
