#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/disk/posix_disk.h"
#include "platform/reach/held_file_meter.h"
#include "platform/reach/place_disk.h"
#include "platform/reach/place_errands.h"
#include "store/disk.h"

namespace tavlo::platform {

/// The real file system for the loop's thread, which waits for no place that gives no answer. What
/// stands on a local file system is asked at once; all else by errands, while the loop breathes.
class PatientDisk : public store::Disk {
 public:
  /// Whether walks over local folders are walked ahead, too. On pays where a second processor is
  /// free while the loop makes rows, and costs a thread and a hand-over of some microseconds a
  /// document where none is.
  static constexpr bool kWalkAheadOfLocal = true;

  /// Errands and meters must outlive the disk. What takes long on a local file system calls
  /// `breathe` again and again. The last two are as `PosixDisk` takes them.
  PatientDisk(PlaceErrands& errands, HeldFileMeters& meters, std::function<void()> breathe,
              WriterWatch::Clock clock = WriterWatch::SystemClock,
              WriterWatch::LeaseTrust leaseTrust = WriterWatch::TrustInLeasesOf);

  store::Listing ListPlainFiles(const std::string& folder) override;
  store::Listing ListDotFiles(const std::string& folder) override;
  std::optional<store::FolderMark> MarkOf(const std::string& folder) override;
  std::unique_ptr<store::FolderWalk> Walk(const std::string& folder) override;
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
  bool OutOfReach(const std::string& path) override { return errands_.OutOfReach(path); }
  std::uint64_t CallsGivenUp() const override { return errands_.GivenUp(); }

 private:
  /// Asks the disk of the place of `path`; `otherwise` when that is out of reach.
  template <typename Answer>
  Answer Ask(const std::string& path, std::function<Answer(store::Disk&)> call, Answer otherwise) {
    return AskAt<Answer>(errands_.PlaceOf(path), std::move(call), std::move(otherwise));
  }
  /// The same for what does not follow a link at the end of the path.
  template <typename Answer>
  Answer AskOfEntry(const std::string& path, std::function<Answer(store::Disk&)> call,
                    Answer otherwise) {
    return AskAt<Answer>(errands_.PlaceOfEntry(path), std::move(call), std::move(otherwise));
  }
  template <typename Answer>
  Answer AskAt(const Place& place, std::function<Answer(store::Disk&)> call, Answer otherwise);
  std::shared_ptr<PlaceDisk> DiskOf(const Place& place);

  PlaceErrands& errands_;
  HeldFileMeters& meters_;
  const WriterWatch::Clock clock_;
  const WriterWatch::LeaseTrust leaseTrust_;
  const std::function<void()> breathe_;
  std::unique_ptr<HeldFileMeter> meter_;             ///< For what can not stall.
  PosixDisk here_;                                   ///< For what can not stall.
  std::map<int, std::shared_ptr<PlaceDisk>> there_;  ///< By the number of the mount.
};

}  // namespace tavlo::platform
