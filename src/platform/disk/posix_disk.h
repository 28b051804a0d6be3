#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/disk/writer_watch.h"
#include "store/disk.h"

namespace tavlo::platform {

/// The real file system. Names are bytes. A fifo, a device or a link never blocks an operation.
class PosixDisk : public store::Disk {
 public:
  /// A copy calls `breathe` again and again, for a long recording can take long to copy.
  explicit PosixDisk(WriterWatch::Clock clock = WriterWatch::SystemClock,
                     WriterWatch::LeaseTrust leaseTrust = WriterWatch::TrustInLeasesOf,
                     std::function<void()> breathe = {});

  store::Listing ListPlainFiles(const std::string& folder) override;
  std::unique_ptr<store::FolderWalk> Walk(const std::string& folder) override;
  std::optional<store::FileFacts> Facts(const std::string& path) override;
  store::Entry Look(const std::string& path) override;
  store::Readiness TestReadiness(const std::string& path) override;
  store::DiskResult SetAttributesNormal(const std::string& path) override;
  store::DiskResult Copy(const std::string& from, const std::string& to) override;
  store::DiskResult Rename(const std::string& from, const std::string& to) override;
  store::DiskResult Delete(const std::string& path) override;
  store::DiskResult Append(const std::string& path, std::string_view text) override;
  store::DiskResult MakeLink(const std::string& target, const std::string& path) override;
  store::DiskResult MakeFolder(const std::string& path) override;
  store::DiskResult RemoveFolder(const std::string& path) override;
  store::DiskResult FlushFolder(const std::string& folder) override;

 private:
  WriterWatch writers_;
  std::function<void()> breathe_;
};

}  // namespace tavlo::platform
