#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/disk/file_copy.h"
#include "platform/reach/place_errands.h"

namespace tavlo::platform {

/// A copy of which one end at least stands where calls may stall. It goes in pieces, each asked of
/// the place where it is done, so that a place that gives no answer is out of reach and the other
/// one is not. For one run, on the loop's thread, which breathes between the pieces.
class PatientCopy {
 public:
  /// What is flushed at once. A slow line must bring it to its server well within an errand's
  /// patience.
  static constexpr std::size_t kFlushedAtOnce = CopySource::kBlock;

  /// The errands must outlive the copy.
  PatientCopy(PlaceErrands& errands, const Place& source, const Place& target)
      : errands_(errands), sourcePlace_(source), targetPlace_(target) {}
  /// Has each end closed at its place. Nobody waits.
  ~PatientCopy();
  PatientCopy(const PatientCopy&) = delete;

  /// Done: the copy is whole, flushed and closed, with the stamp, the owner and the mode of its
  /// source as far as that may be. OutOfReach: one of the places gave no answer, and the piece that
  /// was asked last may still be done. Anything else is why a piece failed. Without Done, what was
  /// copied so far stays at the target, which may be a whole copy; a file that stood there before
  /// is left as it was (AlreadyThere). The source is never changed.
  store::DiskResult Run(const std::string& from, const std::string& to);

 private:
  /// What one end is and has given. Belongs to the errand as long as one is under way.
  struct Source {
    std::optional<CopySource> file;
    std::vector<char> block;
    store::DiskResult result = store::DiskResult::Done;
  };
  struct Target {
    std::optional<CopyTarget> file;
    store::DiskResult result = store::DiskResult::Done;
  };
  template <typename End>
  store::DiskResult Do(const Place& place, const std::shared_ptr<End>& end,
                       std::function<store::DiskResult(End&)> piece);

  PlaceErrands& errands_;
  const Place sourcePlace_;
  const Place targetPlace_;
  std::shared_ptr<Source> source_ = std::make_shared<Source>();
  std::shared_ptr<Target> target_ = std::make_shared<Target>();
};

}  // namespace tavlo::platform
