#include "platform/desktop/hang_up.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace tavlo::platform::desktop {

void HangUp() {
  namespace fs = std::filesystem;
  std::error_code failed;
  // What a handle leads to is asked of the kernel's list. Asked of the handle itself, one on a disk
  // that gives no answer would give none either.
  for (fs::directory_iterator handle("/proc/self/fd", failed), end; handle != end;
       handle.increment(failed)) {
    const std::string leadsTo = fs::read_symlink(*handle, failed).string();
    if (!leadsTo.starts_with("socket:")) continue;
    // Only this process's end of it: others may hold the same one, as of a journal.
    ::close(std::atoi(handle->path().filename().c_str()));
  }
}

}  // namespace tavlo::platform::desktop
