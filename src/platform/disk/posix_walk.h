#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/disk/file_handle.h"
#include "platform/disk/listed_folder.h"
#include "platform/disk/writer_watch.h"
#include "store/folder_walk.h"

namespace tavlo::platform {

/// A walk over a real folder. It keeps the folder open, and asks for each file by its name in it.
/// Several may go over one folder, each on its own thread and each at files of its own.
class PosixWalk : public store::FolderWalk {
 public:
  /// The watch must outlive the walk.
  PosixWalk(std::shared_ptr<const ListedFolder> folder, WriterWatch& writers);

  bool Started() const override { return folder_->listing.started; }
  bool Next() override;
  /// Stands at a file by its place in the listing.
  void MoveTo(std::size_t index);
  store::WalkEnd End() const override { return folder_->End(); }

  const std::string& Name() const override { return folder_->listing.names[next_ - 1]; }
  const store::HeldFile& Open() override;
  store::Readiness TestReadiness() override;
  store::DiskResult SetAttributesNormal() override;
  /// Lets go of the file before the walk goes on.
  void CloseFile() { file_.reset(); }
  /// As SetAttributesNormal, for a file at which the walk stood before.
  store::DiskResult SetAttributesNormalOf(const std::string& name, std::uint64_t inode) const;

 private:
  void OpenFile();
  /// Takes over what the file is, and lets go of what is no plain file.
  void TakeStatus(bool known);

  const std::shared_ptr<const ListedFolder> folder_;
  WriterWatch& writers_;
  std::size_t next_ = 0;
  std::optional<FileHandle> file_;  ///< Nothing until the file is opened; below 0 when that failed.
  struct stat status_ {};
  store::HeldFile held_;
};

}  // namespace tavlo::platform
