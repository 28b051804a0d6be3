#pragma once

#include <sys/types.h>

#include <string>

#include "support/temporary_folder.h"

namespace tavlo::test {

/// A mount that shows a folder of this machine by a program of its own, which gives no answer while
/// it is stopped, as a server does whose line is cut.
class MirrorMount {
 public:
  /// Mounts. `daemon` is the path of mirror_mount_daemon.
  explicit MirrorMount(const std::string& daemon);
  /// Lets the daemon go on and unmounts.
  ~MirrorMount();
  MirrorMount(const MirrorMount&) = delete;

  /// False where this machine lets nobody mount: there is no /dev/fuse, or no right to use it.
  bool Stands() const { return stands_; }
  /// Where the mount is, and the folder that it shows.
  std::string Path() const { return place_ / "mount"; }
  std::string Behind() const { return place_ / "folder"; }

  /// From when it returns until `GoOn` no call on the mount has an answer.
  void Stop() const;
  void GoOn() const;
  /// Each call on the mount fails from here on.
  void Kill();

 private:
  bool AwaitMount() const;

  const TemporaryFolder place_;
  pid_t daemon_ = -1;
  bool stands_ = false;
};

}  // namespace tavlo::test
