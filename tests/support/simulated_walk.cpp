#include <utility>

#include "store/folder_walk.h"
#include "support/simulated_disk.h"

namespace tavlo::test {

using store::DiskResult;
using store::Readiness;

/// A walk over a folder of the simulated disk. What it holds open stays what it was when another
/// program removes it or puts something else in its place.
class SimulatedDisk::Walking : public store::FolderWalk {
 public:
  Walking(SimulatedDisk& disk, const std::string& folder)
      : disk_(disk), folder_(folder), listing_(disk.ListPlainFiles(folder)) {
    if (listing_.started) ++disk_.heldByWalks_;
  }
  ~Walking() override {
    LetGo();
    if (listing_.started) --disk_.heldByWalks_;
  }

  bool Started() const override { return listing_.started; }

  bool Next() override {
    LetGo();
    if (outOfReach_ || next_ == listing_.names.size()) return false;
    outOfReach_ = !disk_.LetsOpen(folder_);
    if (outOfReach_) return false;
    ++next_;
    return true;
  }

  store::WalkEnd End() const override {
    if (outOfReach_) return store::WalkEnd::OutOfReach;
    if (listing_.processInTrouble) return store::WalkEnd::ProcessInTrouble;
    return listing_.finished ? store::WalkEnd::Whole : store::WalkEnd::OutOfReach;
  }

  const std::string& Name() const override { return listing_.names.at(next_ - 1); }

  const store::HeldFile& Open() override {
    if (std::exchange(asked_, true)) return held_;
    held_ = {.path = folder_ + Name()};
    const std::string absolute = disk_.Absolute(held_.path);
    held_.opened = OpenNode(absolute);
    if (held_.opened == DiskResult::Done) {
      ++disk_.heldByWalks_;
      const Node& node = disk_.entries_.at(absolute);
      atOpening_ = node;
      held_.inode = static_cast<std::uint64_t>(node.number);
      held_.facts = {.size = node.contents.size(), .stamp = node.stamp};
    }
    return held_;
  }

  Readiness TestReadiness() override {
    switch (Open().opened) {
      case DiskResult::Done:
        return ReadinessOf(Held());
      case DiskResult::ProcessInTrouble:
        return Readiness::ProcessInTrouble;
      case DiskResult::OutOfReach:
        return Readiness::OutOfReach;
      default:
        return Readiness::Unusable;
    }
  }

  DiskResult SetAttributesNormal() override {
    if (Open().opened != DiskResult::Done) return held_.opened;
    const std::string absolute = disk_.Absolute(held_.path);
    const auto fault = disk_.Begin("SetAttributesNormal " + absolute, {absolute});
    outOfReach_ = fault == DiskResult::OutOfReach;
    if (fault) return *fault;
    Held().readOnly = false;
    return DiskResult::Done;
  }

 private:
  DiskResult OpenNode(const std::string& absolute) {
    const auto fault = disk_.BeginToOpen("Open " + absolute, {absolute});
    outOfReach_ = fault == DiskResult::OutOfReach;
    if (fault) return *fault;
    const auto found = disk_.entries_.find(absolute);
    if (found == disk_.entries_.end()) return DiskResult::NotFound;
    if (found->second.kind != Kind::File) return DiskResult::Failed;
    return found->second.unreadable ? DiskResult::NoAccess : DiskResult::Done;
  }

  /// The file that was opened; as it was then, when its name leads to another one by now.
  Node& Held() {
    const auto found = disk_.entries_.find(disk_.Absolute(held_.path));
    const bool same = found != disk_.entries_.end() && found->second.number == atOpening_.number;
    return same ? found->second : atOpening_;
  }

  void LetGo() {
    if (asked_ && held_.opened == DiskResult::Done) --disk_.heldByWalks_;
    asked_ = false;
  }

  SimulatedDisk& disk_;
  const std::string folder_;
  const store::Listing listing_;
  std::size_t next_ = 0;
  bool outOfReach_ = false;
  bool asked_ = false;  ///< The file at which the walk stands was opened, or could not be.
  store::HeldFile held_;
  Node atOpening_;
};

std::unique_ptr<store::FolderWalk> SimulatedDisk::Walk(const std::string& folder) {
  return std::make_unique<Walking>(*this, folder);
}

}  // namespace tavlo::test
