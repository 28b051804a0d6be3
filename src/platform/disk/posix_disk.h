#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/disk/writer_watch.h"
#include "store/disk.h"

namespace tavlo::platform {

class PosixWalk;
struct ListedFolder;

/// The real file system. Names are bytes. A fifo, a device or a link never blocks an operation.
class PosixDisk : public store::Disk {
 public:
  /// What can take long calls `breathe` again and again: each block of a copy, each name of a
  /// listing, each thing that goes with its folder.
  explicit PosixDisk(
      WriterWatch::Clock clock = WriterWatch::SystemClock,
      WriterWatch::LeaseTrust leaseTrust = WriterWatch::TrustInLeasesOf,
      std::function<void()> breathe = [] {});

  store::Listing ListPlainFiles(const std::string& folder) override;
  store::Listing ListDotFiles(const std::string& folder) override;
  std::optional<store::FolderMark> MarkOf(const std::string& folder) override;
  std::unique_ptr<store::FolderWalk> Walk(const std::string& folder) override;
  std::shared_ptr<const ListedFolder> ListFolder(const std::string& folder);
  /// Walks over one folder may go on in several threads.
  std::unique_ptr<PosixWalk> WalkOver(std::shared_ptr<const ListedFolder> folder);
  std::optional<store::FileFacts> Facts(const std::string& path) override;
  std::optional<std::int64_t> ChangedAt(const std::string& path) override;
  store::Entry Look(const std::string& path) override;
  store::Readiness TestReadiness(const std::string& path) override;
  store::DiskResult SetAttributesNormal(const std::string& path) override;
  store::DiskResult Renew(const std::string& path) override;
  store::DiskResult Copy(const std::string& from, const std::string& to) override;
  store::DiskResult Rename(const std::string& from, const std::string& to) override;
  store::DiskResult Delete(const std::string& path) override;
  store::DiskResult Append(const std::string& path, std::string_view text) override;
  store::DiskResult MakeLink(const std::string& target, const std::string& path) override;
  store::DiskResult MakeFolder(const std::string& path) override;
  store::DiskResult RemoveFolder(const std::string& path) override;
  store::DiskResult FlushFolder(const std::string& folder) override;
  /// A call here waits for its answer, so none is owed once it has returned.
  bool OutOfReach(const std::string& /*path*/) override { return false; }
  std::uint64_t CallsGivenUp() const override { return 0; }

 private:
  WriterWatch writers_;
  std::function<void()> breathe_;
};

}  // namespace tavlo::platform
