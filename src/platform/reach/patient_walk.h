#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "platform/reach/place_disk.h"
#include "platform/reach/place_errands.h"
#include "store/folder_walk.h"

namespace tavlo::platform {

/// A walk that the thread of the folder's place walks ahead: it lists the folder and opens, tests
/// and measures the next files, while the loop makes something of those before. A folder that gives
/// no answer any more ends the walk; what was looked at before is still given out.
class PatientWalk : public store::FolderWalk {
 public:
  /// How many files are looked at ahead. More bridge a slower loop, and what stands in them is
  /// older when it is given out.
  static constexpr std::size_t kAhead = 128;
  /// The loop waits for so many at once: to wake it takes longer than to look at a file.
  static constexpr std::size_t kBatch = 32;

  /// Lists the folder. The errands must outlive the walk.
  PatientWalk(PlaceErrands& errands, const Place& place, std::shared_ptr<PlaceDisk> disk,
              const std::string& folder);
  ~PatientWalk() override;
  PatientWalk(const PatientWalk&) = delete;

  bool Started() const override { return started_; }
  bool Next() override;
  store::WalkEnd End() const override { return end_; }

  const std::string& Name() const override { return name_; }
  const store::HeldFile& Open() override { return held_; }
  store::Readiness TestReadiness() override { return readiness_; }
  store::DiskResult SetAttributesNormal() override;

 private:
  struct Ahead;

  /// Waits for the next files; false when the folder gives no answer.
  bool AwaitFiles();
  /// Has the thread go on where it rests though there is room ahead.
  void WalkOn();
  /// Ends the walk where the folder gives no answer.
  bool GiveUp();

  PlaceErrands& errands_;
  const Place place_;
  /// What the thread of the place uses and shares with the loop.
  std::shared_ptr<Ahead> ahead_;
  std::optional<PlaceErrands::Begun> walking_;
  bool started_ = false;
  bool over_ = false;
  bool givenUp_ = false;  ///< What has been looked at is handed over yet.
  store::WalkEnd end_ = store::WalkEnd::OutOfReach;

  std::string name_;
  store::Readiness readiness_ = store::Readiness::Unusable;
  store::HeldFile held_;
};

}  // namespace tavlo::platform
