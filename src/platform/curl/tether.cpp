#include "platform/curl/tether.h"

#include <poll.h>

#include <algorithm>

namespace tavlo::platform {

Tether::Waited Tether::Await(int descriptor, short events, Deadline deadline, int second) {
  GiveSign();
  while (!IsCut()) {
    // A descriptor below 0 is passed over.
    pollfd descriptors[] = {{.fd = bell_.Descriptor(), .events = POLLIN, .revents = 0},
                            {.fd = descriptor, .events = events, .revents = 0},
                            {.fd = second, .events = POLLIN, .revents = 0}};
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    const auto milliseconds = std::clamp<std::int64_t>(left.count(), 0, 1'000'000);
    ::poll(descriptors, std::size(descriptors), static_cast<int>(milliseconds));
    if (descriptors[0].revents != 0) break;
    if (descriptors[1].revents != 0 || descriptors[2].revents != 0) return Waited::Ready;
    if (milliseconds == 0) return Waited::TimedOut;
  }
  return Waited::Cut;
}

}  // namespace tavlo::platform
