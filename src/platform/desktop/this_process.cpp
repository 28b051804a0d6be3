#include "platform/desktop/this_process.h"

#include <unistd.h>

#include <array>
#include <climits>

namespace tavlo::platform::desktop {

intake::ClaimOwner ThisProcess() {
  // One more than the call may fill, so that a name that it cuts ends all the same.
  std::array<char, HOST_NAME_MAX + 2> host{};
  const bool known = ::gethostname(host.data(), host.size() - 1) == 0 && host[0] != '\0';
  return {.host = known ? host.data() : "localhost", .process = ::getpid()};
}

}  // namespace tavlo::platform::desktop
