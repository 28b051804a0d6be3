#include "platform/ffmpeg/ahead_reader.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "platform/ffmpeg/sound_limits.h"

namespace tavlo::platform {

using playback::AudioFile;
using playback::SampleArray;
using playback::SampleCount;
using Clock = std::chrono::steady_clock;

/// What both threads share. All of it is under the lock.
struct AheadReader::Desk {
  explicit Desk(std::shared_ptr<const Bell> bell) : ready(std::move(bell)) {}

  const std::shared_ptr<const Bell> ready;
  mutable std::mutex mutex;
  std::condition_variable asked;  ///< The loop wants something.
  std::condition_variable given;  ///< The thread has got something.

  // What the loop wants.
  bool over = false;
  bool change = false;                          ///< `next` takes the place of the file.
  std::unique_ptr<AudioFile> next;              ///< Null for none.
  std::vector<std::unique_ptr<AudioFile>> old;  ///< Never read, and to be closed by the thread.
  /// Counts files and seeks: what is read for an earlier run is dropped.
  std::uint64_t run = 0;
  std::optional<SampleCount> target;  ///< A seek that the thread has not made.
  bool hasFile = false;
  int channels = 1;
  int rate = 0;
  SampleCount ahead = 0;  ///< Samples to be read ahead; 0 before anything is wanted.
  SampleCount late = 0;   ///< Samples of a block that was late; 0 when none is waited for.
  bool firstOfRun = true;

  // What the thread has.
  std::vector<float> values;  ///< From the read position on.
  SampleCount position = 0;
  bool finished = false;  ///< Nothing comes behind `values`,
  bool failed = false;    ///< because it cannot be read.
  bool endsHere = false;  ///< The sound ends behind `values`.
  std::optional<Clock::time_point> callBegan;
  bool gone = false;

  SampleCount Samples() const { return static_cast<SampleCount>(values.size()) / channels; }
  bool Has(SampleCount samples) const { return !change && (finished || Samples() >= samples); }
  bool WantsSound() const { return target || (!finished && Samples() < ahead); }

  void BeginRun(SampleCount from) {
    ++run;
    values.clear();
    position = from;
    finished = failed = endsHere = false;
    late = 0;
    firstOfRun = true;
  }

  /// Waits until `done`, for a moment, unless the thread is in a call that takes longer than that.
  template <typename Done>
  void WaitAMoment(std::unique_lock<std::mutex>& lock, Done done) {
    if (callBegan && Clock::now() - *callBegan >= kMoment) return;
    given.wait_for(lock, kMoment, done);
  }
};

/// What runs on the reader's thread.
class AheadReader::Thread {
 public:
  explicit Thread(std::shared_ptr<Desk> desk) : shared_(std::move(desk)), desk_(*shared_) {}

  void Run() {
    std::unique_lock lock(desk_.mutex);
    while (true) {
      desk_.asked.wait(
          lock, [this] { return desk_.over || desk_.change || (file_ && desk_.WantsSound()); });
      if (desk_.over) break;
      if (desk_.change) {
        ChangeFile(lock);
      } else if (desk_.target) {
        Seek(lock);
      } else {
        ReadStep(lock);
      }
      desk_.given.notify_all();
    }
    // The second one closes what the first one would have begun to read.
    ChangeFile(lock);
    ChangeFile(lock);
    desk_.gone = true;
    desk_.given.notify_all();
  }

 private:
  /// Calls the file without the lock.
  template <typename Body>
  void Call(std::unique_lock<std::mutex>& lock, const Body& call) {
    desk_.callBegan = Clock::now();
    lock.unlock();
    bool thrown = false;
    try {
      call();
    } catch (...) {
      thrown = true;
    }
    lock.lock();
    desk_.callBegan.reset();
    callFailed_ = thrown;
  }

  void ChangeFile(std::unique_lock<std::mutex>& lock) {
    std::vector<std::unique_ptr<AudioFile>> neverRead;
    neverRead.swap(desk_.old);
    std::unique_ptr<AudioFile> before = std::exchange(file_, std::move(desk_.next));
    desk_.change = false;
    Call(lock, [&] {
      neverRead.clear();
      before.reset();
    });
  }

  void Seek(std::unique_lock<std::mutex>& lock) {
    const std::uint64_t run = desk_.run;
    const SampleCount target = *std::exchange(desk_.target, std::nullopt);
    SampleCount reached = target;
    Call(lock, [&] { reached = file_->SeekSample(target); });
    if (run != desk_.run) return;
    desk_.position = reached;
    if (!callFailed_) return;
    Finish(true);
    TellWhatCame();
  }

  void ReadStep(std::unique_lock<std::mutex>& lock) {
    const std::uint64_t run = desk_.run;
    const SampleCount step = std::max(1, desk_.rate / kStepsInASecond);
    SampleArray part;
    bool failed = false;
    Call(lock, [&] {
      part = file_->ReadArray(step);
      failed = file_->ReadFailed();
    });
    if (run != desk_.run) return;
    Append(part, callFailed_);
    if (callFailed_ || part.Samples() < step) Finish(callFailed_ || failed);
    TellWhatCame();
  }

  void TellWhatCame() {
    if (desk_.late == 0 || !desk_.Has(desk_.late)) return;
    desk_.late = 0;
    desk_.ready->Ring();
  }

  void Append(const SampleArray& part, bool lost) {
    if (lost || part.values.empty()) return;
    try {
      desk_.values.insert(desk_.values.end(), part.values.begin(), part.values.end());
      desk_.endsHere = part.last;
    } catch (const std::bad_alloc&) {
      callFailed_ = true;
    }
  }

  void Finish(bool failed) {
    desk_.finished = true;
    desk_.failed = failed;
  }

  const std::shared_ptr<Desk> shared_;
  Desk& desk_;
  std::unique_ptr<AudioFile> file_;
  bool callFailed_ = false;  ///< The last call has thrown.
};

AheadReader::AheadReader(std::shared_ptr<const Bell> ready)
    : desk_(std::make_shared<Desk>(std::move(ready))),
      thread_([desk = desk_] { Thread(desk).Run(); }) {}

AheadReader::~AheadReader() {
  std::unique_lock lock(desk_->mutex);
  desk_->over = true;
  desk_->asked.notify_one();
  const bool gone = desk_->given.wait_for(lock, kFarewell, [this] { return desk_->gone; });
  lock.unlock();
  gone ? thread_.join() : thread_.detach();
}

void AheadReader::Open(std::unique_ptr<AudioFile> file) {
  const std::lock_guard lock(desk_->mutex);
  desk_->BeginRun(0);
  desk_->target.reset();
  desk_->ahead = 0;
  desk_->hasFile = file != nullptr;
  desk_->channels = file ? std::max(file->ChannelCount(), 1) : 1;
  desk_->rate = file ? file->SampleRate() : 0;
  if (desk_->next) desk_->old.push_back(std::move(desk_->next));
  desk_->next = std::move(file);
  desk_->change = true;
  desk_->asked.notify_one();
}

void AheadReader::Close() {
  Open(nullptr);
  std::unique_lock lock(desk_->mutex);
  desk_->WaitAMoment(lock, [this] { return !desk_->change && !desk_->callBegan; });
}

void AheadReader::Seek(SampleCount target) {
  const std::lock_guard lock(desk_->mutex);
  if (!desk_->hasFile) return;
  desk_->BeginRun(target);
  desk_->target = target;
  desk_->ahead = SampleCount{kAheadSeconds} * desk_->rate;
  desk_->asked.notify_one();
}

SampleArray AheadReader::Take(SampleCount samples) {
  Desk& desk = *desk_;
  std::unique_lock lock(desk.mutex);
  takeFailed_ = false;
  SampleArray block;
  block.channels = desk.channels;
  block.sourceBegin = block.sourceEnd = static_cast<double>(desk.position);
  samples = std::min(samples, kMostSamplesAtOnce);
  if (samples <= 0 || !desk.hasFile) return block;
  const auto had = [&] { return !desk.target && desk.Has(samples); };
  desk.ahead = std::max(SampleCount{kAheadSeconds} * desk.rate, samples);
  desk.asked.notify_one();
  if (!had() && std::exchange(desk.firstOfRun, false)) desk.WaitAMoment(lock, had);
  block.late = !had();
  if (block.late) {
    desk.late = samples;
    return block;
  }
  const SampleCount taken = std::min(samples, desk.Samples());
  const auto end = desk.values.begin() + static_cast<std::ptrdiff_t>(taken * desk.channels);
  block.values.assign(desk.values.begin(), end);
  desk.values.erase(desk.values.begin(), end);
  block.sourceBegin = static_cast<double>(desk.position);
  desk.position += taken;
  // The thread may have come to rest while this waited for it, and there is room ahead again.
  desk.asked.notify_one();
  block.sourceEnd = static_cast<double>(desk.position);
  block.last = desk.endsHere && desk.values.empty() && taken > 0;
  takeFailed_ = desk.failed && taken < samples;
  return block;
}

bool AheadReader::AtRest() const {
  const std::lock_guard lock(desk_->mutex);
  return !desk_->hasFile && !desk_->change && !desk_->callBegan;
}

AheadReader::Duration AheadReader::InCallFor() const {
  const std::lock_guard lock(desk_->mutex);
  return desk_->callBegan ? Clock::now() - *desk_->callBegan : Duration{0};
}

}  // namespace tavlo::platform
