#include "platform/disk/write_all.h"

#include <unistd.h>

#include <cerrno>

namespace tavlo::platform {

bool WriteAll(int handle, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(handle, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace tavlo::platform
