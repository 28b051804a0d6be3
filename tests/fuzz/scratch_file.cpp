#include "fuzz/scratch_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include "fuzz/promise.h"

namespace tavlo::fuzz {

ScratchFile::ScratchFile(const std::string& ending) : path_("/dev/shm/tavlo-fuzz-XXXXXX" + ending) {
  handle_ = ::mkostemps(path_.data(), static_cast<int>(ending.size()), O_CLOEXEC);
  Promise(handle_ >= 0, "there is a file system in memory");
}

ScratchFile::~ScratchFile() {
  ::close(handle_);
  ::unlink(path_.c_str());
}

void ScratchFile::Hold(std::span<const std::uint8_t> bytes) const {
  const bool held =
      ::ftruncate(handle_, 0) == 0 &&
      ::pwrite(handle_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
  Promise(held, "the file in memory takes the input");
}

}  // namespace tavlo::fuzz
