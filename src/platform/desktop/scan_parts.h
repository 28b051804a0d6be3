#pragma once

#include "platform/disk/posix_disk.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"

namespace tavlo::platform::desktop {

/// A scan tests each file and then measures it, so what the test saw serves the measuring too. The
/// disk must outlive what is returned.
inline MeasuredFiles::JustSeen JustTestedBy(const PosixDisk& disk) {
  return [&disk](const std::string& path) -> std::optional<FileIdentity> {
    const auto tested = disk.JustTested(path);
    if (!tested) return std::nullopt;
    return FileIdentity{tested->inode, tested->facts.size, tested->facts.stamp};
  };
}

}  // namespace tavlo::platform::desktop
