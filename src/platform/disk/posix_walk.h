#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/disk/file_handle.h"
#include "platform/disk/open_folder.h"
#include "platform/disk/writer_watch.h"
#include "store/folder_walk.h"

namespace tavlo::platform {

/// A walk over a real folder. It keeps the folder open, and asks for each file by its name in it.
class PosixWalk : public store::FolderWalk {
 public:
  /// The watch must outlive the walk. Listing the folder calls `goesOn` at each name.
  PosixWalk(const std::string& folder, WriterWatch& writers, const std::function<void()>& goesOn);

  bool Started() const override { return listing_.started; }
  bool Next() override;
  store::WalkEnd End() const override;

  const std::string& Name() const override { return listing_.names[next_ - 1]; }
  const store::HeldFile& Open() override;
  store::Readiness TestReadiness() override;
  store::DiskResult SetAttributesNormal() override;
  /// Lets go of the file before the walk goes on.
  void CloseFile() { file_.reset(); }
  /// As SetAttributesNormal, for a file at which the walk stood before.
  store::DiskResult SetAttributesNormalOf(const std::string& name, std::uint64_t inode) const;

 private:
  const std::string path_;
  const OpenFolder folder_;
  const store::Listing listing_;
  WriterWatch& writers_;
  std::size_t next_ = 0;
  std::optional<FileHandle> file_;  ///< Nothing until the file is opened; below 0 when that failed.
  struct stat status_ {};
  store::HeldFile held_;
};

}  // namespace tavlo::platform
