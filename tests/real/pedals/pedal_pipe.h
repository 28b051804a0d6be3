#pragma once

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tavlo::test {

/// The foot on the stand-in for the watcher library: puts it at a path and feeds its pipe.
class PedalPipe {
 public:
  /// The stand-in is one of the two that there are.
  explicit PedalPipe(const std::string& libraryPath,
                     const std::string& standIn = TAVLO_PEDAL_STAND_IN)
      : path_(libraryPath + ".pipe") {
    // A copy, since a process loads one file once, under the first path that it was given.
    std::filesystem::copy_file(standIn, libraryPath);
    ::mkfifo(path_.c_str(), 0600);
    // A pipe that is open both ways never blocks its opener, and never tells its reader of an end.
    handle_ = ::open(path_.c_str(), O_RDWR | O_CLOEXEC);
  }
  ~PedalPipe() { ::close(handle_); }
  PedalPipe(const PedalPipe&) = delete;

  /// Reports these bits one after the other: 1 left, 2 center, 4 right.
  bool Report(const std::vector<std::uint8_t>& bits) const {
    return ::write(handle_, bits.data(), bits.size()) == static_cast<::ssize_t>(bits.size());
  }
  /// Whether all reports have been taken.
  bool IsRead() const {
    int waiting = 0;
    return ::ioctl(handle_, FIONREAD, &waiting) == 0 && waiting == 0;
  }

 private:
  const std::string path_;
  int handle_ = -1;
};

}  // namespace tavlo::test
