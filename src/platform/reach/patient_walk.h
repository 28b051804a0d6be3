#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/disk/posix_walk.h"
#include "platform/reach/place_disk.h"
#include "platform/reach/place_errands.h"
#include "store/folder_walk.h"

namespace tavlo::platform {

/// A walk that the thread of the folder's place walks ahead: it lists the folder and opens, tests
/// and measures the next files, while the loop makes something of those before. Where the place can
/// not stall the loop does not wait for files that the thread has not begun, but looks at them
/// itself. A folder that gives no answer any more ends the walk; what was looked at before is still
/// given out.
class PatientWalk : public store::FolderWalk {
 public:
  /// How many files are looked at ahead. More bridge a slower loop, and what stands in them is
  /// older when it is given out.
  static constexpr std::size_t kAhead = 128;
  /// The same where the place can not stall. The loop frees the rows of the list before, which
  /// takes as long as it takes to look at so many.
  static constexpr std::size_t kFarAhead = 2048;
  /// A loop that may not look itself waits for so many at once: to wake it takes longer than to
  /// look at a file.
  static constexpr std::size_t kBatch = 32;

  /// Where the place can not stall so many are looked at between two hand-overs, of which each
  /// costs as much as a look.
  static constexpr std::size_t kTogether = 8;

  /// What the loop looks at files with, where it may.
  struct Own {
    HeldFileMeter& meter;
    const std::function<void()>& breathe;  ///< Called while a file is measured.
  };

  /// Lists the folder. The errands, and what the loop has of its own, must outlive the walk.
  PatientWalk(PlaceErrands& errands, const Place& place, std::shared_ptr<PlaceDisk> disk,
              const Own& own, const std::string& folder);
  ~PatientWalk() override;
  PatientWalk(const PatientWalk&) = delete;

  bool Started() const override { return started_; }
  bool Next() override;
  store::WalkEnd End() const override { return end_; }

  const std::string& Name() const override;
  const store::HeldFile& Open() override { return held_; }
  store::Readiness TestReadiness() override { return readiness_; }
  store::DiskResult SetAttributesNormal() override;

 private:
  /// A file that was looked at. It has no text of its own: what one thread takes from the memory
  /// and another gives back is slow.
  struct Looked {
    store::Readiness readiness = store::Readiness::Unusable;
    store::DiskResult opened = store::DiskResult::Failed;
    std::uint64_t inode = 0;
    store::FileFacts facts = {};
    store::MeasuredSound sound = {};
  };
  class Ahead;

  /// Some files in a row of the listing, and then what was seen of them.
  struct Slot {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::array<Looked, kTogether> files{};
    bool ready = false;
  };

  static Looked LookAt(PosixWalk& walk, std::size_t index, HeldFileMeter& meter,
                       Errands::Sign& sign);
  static void LookAtAll(Slot& slot, PosixWalk& walk, HeldFileMeter& meter, Errands::Sign& sign);
  /// Takes over what was looked at, and waits until there is something, unless the walk ends.
  void TakeFiles();
  /// Waits for files, or looks at some; false when the folder gives no answer.
  bool AwaitFile();
  void StandAt(const Looked& file);
  /// Looks at files that the thread has not begun; false when there are none.
  bool LookOurselves();
  /// Has the thread go on where it rests though there is room ahead.
  void WalkOn();
  /// Ends the walk where the folder gives no answer.
  bool GiveUp();

  PlaceErrands& errands_;
  const Place place_;
  const Own own_;
  /// What the thread of the place uses and shares with the loop. Null when nothing was opened.
  std::shared_ptr<Ahead> ahead_;
  std::optional<PlaceErrands::Begun> walking_;
  std::unique_ptr<PosixWalk> ownWalk_;  ///< Null until the loop looks itself.
  bool started_ = false;
  bool over_ = false;
  bool givenUp_ = false;  ///< What has been looked at is given out yet.
  store::WalkEnd end_ = store::WalkEnd::OutOfReach;
  /// Looked at, and not given out yet.
  std::deque<Looked> taken_;
  std::size_t given_ = 0;  ///< Files that were given out; the walk stands at the last of them.
  store::Readiness readiness_ = store::Readiness::Unusable;
  store::HeldFile held_;
};

}  // namespace tavlo::platform
