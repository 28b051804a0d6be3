#include "platform/reach/patient_walk.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <mutex>
#include <utility>

namespace tavlo::platform {

using store::DiskResult;

namespace {

/// A sign that was given so long ago is given again, whatever has come.
constexpr std::chrono::milliseconds kLongestUntold{200};

/// Lets the loop breathe.
class Breath : public Errands::Sign {
 public:
  explicit Breath(const std::function<void()>& breathe) : breathe_(breathe) {}

  void Give() override { breathe_(); }

 private:
  const std::function<void()>& breathe_;
};

/// Says when the loop is to be told of files that were looked at.
class Telling {
 public:
  explicit Telling(Errands::Sign& sign) : sign_(sign) {}

  void Count(bool awaited) {
    const auto now = std::chrono::steady_clock::now();
    if (!awaited && ++untold_ < PatientWalk::kBatch && now - told_ < kLongestUntold) return;
    sign_.Tell();
    untold_ = 0;
    told_ = now;
  }

 private:
  Errands::Sign& sign_;
  std::size_t untold_ = 0;
  std::chrono::steady_clock::time_point told_ = std::chrono::steady_clock::now();
};

}  // namespace

class PatientWalk::Ahead {
 public:
  Ahead(std::shared_ptr<PlaceDisk> itsDisk, bool loopLooks)
      : disk(std::move(itsDisk)),
        loopLooks_(loopLooks),
        together_(loopLooks ? kTogether : 1),
        mostAhead_(loopLooks ? kFarAhead : kAhead) {}

  /// There once it was opened, and not changed any more.
  std::shared_ptr<const ListedFolder> folder;
  /// Its calls are made on the thread of the place, save for those that cannot stall.
  const std::shared_ptr<PlaceDisk> disk;

  // On the thread of the place.
  void List(const std::string& path, Errands::Sign& sign);
  void WalkOn(Errands::Sign& sign);
  DiskResult SetAttributesNormalOf(const std::string& name, std::uint64_t inode) {
    return walk_->SetAttributesNormalOf(name, inode);
  }

  // By any thread.

  enum class By { Thread, Loop };
  /// Hands in what was looked at, if anything, and takes the next file to be looked at. Null when
  /// there is none, or none is wanted for now. Nobody else touches a slot until it is handed in.
  Slot* GoOn(By by, Slot* done);
  void HandIn(Slot& slot);
  /// Takes what was looked at, in order.
  void TakeTo(std::deque<Looked>& files);
  /// Each file was looked at and taken.
  bool IsAtItsEnd();
  /// The next file, and as many behind it as are awaited, were looked at.
  bool HasFiles();
  /// Wakes the thread's walk where it rests though there is room ahead; false where it need not go
  /// on.
  bool Resume();
  void Abandon();

 private:
  bool AllBegun() const { return next_ == folder->listing.names.size(); }
  std::size_t FilesAhead() const { return slots_.size() * together_; }

  const bool loopLooks_;
  const std::size_t together_;
  const std::size_t mostAhead_;
  std::unique_ptr<PosixWalk> walk_;  ///< Of the thread.

  std::mutex mutex_;
  // Under the lock.
  std::deque<Slot> slots_;  ///< In order, from the next one to be taken.
  std::size_t next_ = 0;    ///< The first file that nobody has begun to look at.
  bool wanted_ = true;      ///< The loop's walk goes on.
  bool rests_ = true;       ///< No errand is walking.
};

void PatientWalk::Ahead::List(const std::string& path, Errands::Sign& sign) {
  const AtHand atHand(*disk, sign);
  folder = disk->disk.ListFolder(path);
  walk_ = disk->disk.WalkOver(folder);
}

void PatientWalk::Ahead::WalkOn(Errands::Sign& sign) {
  const AtHand atHand(*disk, sign);
  Telling telling(sign);
  Slot* slot = GoOn(By::Thread, nullptr);
  while (slot) {
    LookAtAll(*slot, *walk_, *disk->meter, sign);
    slot = GoOn(By::Thread, slot);
    telling.Count(loopLooks_);
  }
}

PatientWalk::Slot* PatientWalk::Ahead::GoOn(By by, Slot* done) {
  const std::lock_guard hold(mutex_);
  if (done) done->ready = true;
  const bool wanted = wanted_ && !AllBegun() && FilesAhead() < mostAhead_;
  if (by == By::Thread) rests_ = !wanted;
  if (!wanted) return nullptr;
  Slot& slot = slots_.emplace_back();
  slot.begin = next_;
  slot.end = next_ = std::min(next_ + together_, folder->listing.names.size());
  return &slot;
}

void PatientWalk::Ahead::HandIn(Slot& slot) {
  const std::lock_guard hold(mutex_);
  slot.ready = true;
}

void PatientWalk::Ahead::TakeTo(std::deque<Looked>& files) {
  const std::lock_guard hold(mutex_);
  for (; !slots_.empty() && slots_.front().ready; slots_.pop_front()) {
    const Slot& slot = slots_.front();
    files.insert(files.end(), slot.files.begin(), slot.files.begin() + (slot.end - slot.begin));
  }
}

bool PatientWalk::Ahead::IsAtItsEnd() {
  const std::lock_guard hold(mutex_);
  return AllBegun() && slots_.empty();
}

bool PatientWalk::Ahead::HasFiles() {
  const std::lock_guard hold(mutex_);
  if (slots_.empty()) return AllBegun();
  return slots_.front().ready && (loopLooks_ || rests_ || AllBegun() || FilesAhead() > kBatch);
}

bool PatientWalk::Ahead::Resume() {
  const std::lock_guard hold(mutex_);
  if (!rests_ || AllBegun() || FilesAhead() > mostAhead_ / 2) return false;
  rests_ = false;
  return true;
}

void PatientWalk::Ahead::Abandon() {
  const std::lock_guard hold(mutex_);
  wanted_ = false;
}

PatientWalk::PatientWalk(PlaceErrands& errands, const Place& place, std::shared_ptr<PlaceDisk> disk,
                         const Own& own, const std::string& folder)
    : errands_(errands),
      place_(place),
      own_(own),
      ahead_(std::make_shared<Ahead>(std::move(disk), !place.mayStall)) {
  const auto list = [ahead = ahead_, folder](Errands::Sign& sign) { ahead->List(folder, sign); };
  const auto begun = errands_.Begin(place_, list);
  if (!begun || !errands_.Await(*begun, [] { return false; })) {
    // Nothing was opened, so nothing has to be closed there.
    if (!begun) ahead_.reset();
    GiveUp();
    return;
  }
  started_ = ahead_->folder->listing.started;
  over_ = !started_;
  if (over_) {
    end_ = ahead_->folder->End();
  } else {
    WalkOn();
  }
}

PatientWalk::~PatientWalk() {
  if (!ahead_) return;
  ahead_->Abandon();
  walking_.reset();
  errands_.LetGo(place_, std::move(ahead_));
}

PatientWalk::Looked PatientWalk::LookAt(PosixWalk& walk, std::size_t index, HeldFileMeter& meter,
                                        Errands::Sign& sign) {
  walk.MoveTo(index);
  const store::Readiness readiness = walk.TestReadiness();
  const store::HeldFile& held = walk.Open();
  Looked file{.readiness = readiness,
              .opened = held.opened,
              .inode = held.inode,
              .facts = held.facts,
              .sound = {}};
  // A document with a saved position is listed though it is not ready.
  if (held.opened == DiskResult::Done) file.sound = meter.Measure(held, sign);
  walk.CloseFile();
  return file;
}

void PatientWalk::LookAtAll(Slot& slot, PosixWalk& walk, HeldFileMeter& meter,
                            Errands::Sign& sign) {
  for (std::size_t i = 0; slot.begin + i < slot.end; ++i) {
    slot.files[i] = LookAt(walk, slot.begin + i, meter, sign);
  }
}

void PatientWalk::WalkOn() {
  if (!ahead_->Resume()) return;
  walking_ = errands_.Begin(place_, [ahead = ahead_](Errands::Sign& sign) { ahead->WalkOn(sign); });
}

bool PatientWalk::GiveUp() {
  over_ = true;
  end_ = store::WalkEnd::OutOfReach;
  return false;
}

bool PatientWalk::Next() {
  if (over_) return false;
  if (taken_.empty()) TakeFiles();
  if (!taken_.empty()) {
    StandAt(taken_.front());
    taken_.pop_front();
    return true;
  }
  if (givenUp_) return GiveUp();
  over_ = true;
  end_ = ahead_->folder->End();
  return false;
}

void PatientWalk::TakeFiles() {
  ahead_->TakeTo(taken_);
  while (taken_.empty() && !givenUp_ && !ahead_->IsAtItsEnd()) {
    givenUp_ = !AwaitFile();
    ahead_->TakeTo(taken_);
  }
  if (!givenUp_) WalkOn();
}

void PatientWalk::StandAt(const Looked& file) {
  ++given_;
  readiness_ = file.readiness;
  held_.path.assign(ahead_->folder->path).append(Name());
  held_.opened = file.opened;
  held_.inode = file.inode;
  held_.facts = file.facts;
  held_.measured = file.sound;
}

const std::string& PatientWalk::Name() const { return ahead_->folder->listing.names[given_ - 1]; }

bool PatientWalk::AwaitFile() {
  // The thread may have come to rest since it was last told to go on.
  WalkOn();
  if (ahead_->HasFiles()) return true;
  if (LookOurselves()) return true;
  return walking_ && errands_.Await(*walking_, [this] { return ahead_->HasFiles(); });
}

bool PatientWalk::LookOurselves() {
  if (place_.mayStall) return false;
  Slot* const slot = ahead_->GoOn(Ahead::By::Loop, nullptr);
  if (!slot) return false;
  if (!ownWalk_) ownWalk_ = ahead_->disk->disk.WalkOver(ahead_->folder);
  Breath breath(own_.breathe);
  LookAtAll(*slot, *ownWalk_, own_.meter, breath);
  ahead_->HandIn(*slot);
  return true;
}

DiskResult PatientWalk::SetAttributesNormal() {
  if (held_.opened != DiskResult::Done) return held_.opened;
  const auto result = std::make_shared<DiskResult>(DiskResult::Failed);
  const auto work = [result, ahead = ahead_, name = Name(), inode = held_.inode](Errands::Sign&) {
    *result = ahead->SetAttributesNormalOf(name, inode);
  };
  const auto begun = errands_.Begin(place_, work);
  if (begun && errands_.Await(*begun, [] { return false; })) return *result;
  GiveUp();
  return DiskResult::OutOfReach;
}

}  // namespace tavlo::platform
