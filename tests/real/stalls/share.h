#pragma once

#include <filesystem>
#include <string>

#include "support/home.h"
#include "support/stalling_mount.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

/// A folder of a home that stands on a share.
class Share {
 public:
  /// What stands at the path below the home moves to the share.
  Share(const Home& home, const std::string& below)
      : source_(aside_ / "share"), mount_(source_, Move(home.Path() + below)) {}

  StallingMount& Mount() { return mount_; }
  const StallingMount& Mount() const { return mount_; }

 private:
  const std::string& Move(const std::string& point) {
    std::filesystem::rename(point, source_);
    std::filesystem::create_directory(point);
    return point_ = point;
  }

  TemporaryFolder aside_;
  const std::string source_;
  std::string point_;
  StallingMount mount_;
};

}  // namespace tavlo::test
