#include "platform/reach/patient_walk.h"

#include <chrono>
#include <deque>
#include <mutex>
#include <utility>

#include "platform/disk/posix_walk.h"

namespace tavlo::platform {

using store::DiskResult;
using store::Readiness;

namespace {

/// A sign that was given so long ago is given again, whatever has come.
constexpr std::chrono::milliseconds kLongestUntold{200};

}  // namespace

struct PatientWalk::Ahead {
  /// A file that was looked at.
  struct Looked {
    std::string name;
    Readiness readiness;
    store::HeldFile held;
  };

  explicit Ahead(std::shared_ptr<PlaceDisk> itsDisk) : disk(std::move(itsDisk)) {}

  // On the thread of the place.
  const std::shared_ptr<PlaceDisk> disk;
  std::unique_ptr<PosixWalk> walk;

  // By anybody, under the lock.
  std::mutex mutex;
  std::deque<Looked> looked;
  bool wanted = true;  ///< The loop's walk goes on.
  bool rests = true;   ///< No errand is walking.
  bool started = false;
  std::optional<store::WalkEnd> end;  ///< There once there is nothing more to look at.

  void Start(const std::string& folder, Errands::Sign& sign);
  void WalkOn(Errands::Sign& sign);
  Looked LookAtFile(Errands::Sign& sign);
  /// Takes over a file; false when that is enough for now.
  bool Add(Looked file);
  bool HasFiles() {
    const std::lock_guard hold(mutex);
    return !looked.empty() || end;
  }
  bool HasBatch() {
    const std::lock_guard hold(mutex);
    return looked.size() >= kBatch || rests || end;
  }
};

void PatientWalk::Ahead::Start(const std::string& folder, Errands::Sign& sign) {
  const AtHand atHand(*disk, sign);
  walk = disk->disk.WalkFolder(folder);
  const std::lock_guard hold(mutex);
  started = walk->Started();
  if (!started) end = walk->End();
}

PatientWalk::Ahead::Looked PatientWalk::Ahead::LookAtFile(Errands::Sign& sign) {
  Looked file{.name = walk->Name(), .readiness = walk->TestReadiness()};
  file.held = walk->Open();
  // A document with a saved position is listed though it is not ready.
  const bool opened = file.held.opened == store::DiskResult::Done;
  file.held.measured = opened ? disk->meter->Measure(walk->Open(), sign) : store::MeasuredSound{};
  file.held.handle = -1;
  walk->CloseFile();
  return file;
}

bool PatientWalk::Ahead::Add(Looked file) {
  const std::lock_guard hold(mutex);
  looked.push_back(std::move(file));
  rests = looked.size() >= kAhead || !wanted;
  return !rests;
}

void PatientWalk::Ahead::WalkOn(Errands::Sign& sign) {
  const AtHand atHand(*disk, sign);
  std::size_t untold = 0;
  auto told = std::chrono::steady_clock::now();
  while (walk->Next()) {
    const bool goesOn = Add(LookAtFile(sign));
    const auto now = std::chrono::steady_clock::now();
    if (++untold >= kBatch || now - told >= kLongestUntold) {
      sign.Give();
      untold = 0;
      told = now;
    }
    // The end of the errand is told, too.
    if (!goesOn) return;
  }
  const std::lock_guard hold(mutex);
  rests = true;
  end = walk->End();
}

PatientWalk::PatientWalk(PlaceErrands& errands, const Place& place, std::shared_ptr<PlaceDisk> disk,
                         const std::string& folder)
    : errands_(errands), place_(place), ahead_(std::make_shared<Ahead>(std::move(disk))) {
  const auto start = [ahead = ahead_, folder](Errands::Sign& sign) { ahead->Start(folder, sign); };
  const auto begun = errands_.Begin(place_, start);
  if (!begun || !errands_.Await(*begun, [] { return false; })) {
    GiveUp();
    return;
  }
  {
    const std::lock_guard hold(ahead_->mutex);
    started_ = ahead_->started;
    over_ = !started_;
    if (over_) end_ = *ahead_->end;
  }
  if (started_) WalkOn();
}

PatientWalk::~PatientWalk() {
  {
    const std::lock_guard hold(ahead_->mutex);
    ahead_->wanted = false;
  }
  walking_.reset();
  errands_.LetGo(place_, std::move(ahead_));
}

void PatientWalk::WalkOn() {
  {
    const std::lock_guard hold(ahead_->mutex);
    if (!ahead_->rests || ahead_->end || ahead_->looked.size() > kAhead / 2) return;
    ahead_->rests = false;
  }
  walking_ = errands_.Begin(place_, [ahead = ahead_](Errands::Sign& sign) { ahead->WalkOn(sign); });
}

bool PatientWalk::GiveUp() {
  over_ = true;
  end_ = store::WalkEnd::OutOfReach;
  return false;
}

bool PatientWalk::Next() {
  if (over_) return false;
  if (!givenUp_ && !ahead_->HasFiles()) givenUp_ = !AwaitFiles();
  {
    const std::lock_guard hold(ahead_->mutex);
    over_ = ahead_->looked.empty();
    if (over_ && givenUp_) return GiveUp();
    if (over_) {
      end_ = *ahead_->end;
      return false;
    }
    Ahead::Looked& next = ahead_->looked.front();
    name_ = std::move(next.name);
    readiness_ = next.readiness;
    held_ = std::move(next.held);
    ahead_->looked.pop_front();
  }
  if (!givenUp_) WalkOn();
  return true;
}

bool PatientWalk::AwaitFiles() {
  return walking_ && errands_.Await(*walking_, [this] { return ahead_->HasBatch(); });
}

DiskResult PatientWalk::SetAttributesNormal() {
  if (held_.opened != DiskResult::Done) return held_.opened;
  const auto result = std::make_shared<DiskResult>(DiskResult::Failed);
  const auto work = [result, ahead = ahead_, name = name_, inode = held_.inode](Errands::Sign&) {
    *result = ahead->walk->SetAttributesNormalOf(name, inode);
  };
  const auto begun = errands_.Begin(place_, work);
  if (begun && errands_.Await(*begun, [] { return false; })) return *result;
  GiveUp();
  return DiskResult::OutOfReach;
}

}  // namespace tavlo::platform
