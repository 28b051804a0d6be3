#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "base/loop.h"
#include "platform/reach/errand_desk.h"
#include "platform/reach/errands.h"
#include "platform/reach/foot_gate.h"
#include "platform/reach/places.h"
#include "platform/wake/descriptor_waits.h"

namespace tavlo::platform {

/// The errands of each place on a thread of its own. A call that gives no answer keeps the thread
/// of its place and nothing else; until it has returned nothing more is asked of that place. All
/// but `Run` is called on the loop's thread.
class PlaceErrands : public Errands {
 public:
  /// How often a loop that waits looks at the pedals, and at whether the work goes on.
  static constexpr base::Duration kLook = std::chrono::milliseconds(50);
  /// How long the loop stands still for an answer before it breathes: most come sooner, and a
  /// breath takes longer than they do.
  static constexpr std::chrono::milliseconds kGlance{2};

  /// After so long without an errand the thread of a place ends.
  static constexpr std::chrono::milliseconds kIdle{30'000};

  /// All of them must outlive the errands. The feet are looked at as long as the loop waits.
  PlaceErrands(base::Loop& loop, DescriptorWaits& waits, Places& places, FootGate& feet,
               std::chrono::milliseconds idle = kIdle);
  /// Waits for no call that gives no answer: its thread is left behind.
  ~PlaceErrands() override;
  PlaceErrands(const PlaceErrands&) = delete;

  bool Run(const std::string& path, std::function<void(Sign&)> work) override;
  bool OutOfReach(const std::string& path) override;

  Place PlaceOf(const std::string& path) { return places_.PlaceOf(path); }
  Place PlaceOfEntry(const std::string& path) { return places_.PlaceOfEntry(path); }
  /// The same for a place that was asked for before.
  bool Run(const Place& place, std::function<void(Sign&)> work);
  bool OutOfReach(const Place& place);

  /// Work that goes on while the loop does something else.
  class Begun {
   private:
    friend class PlaceErrands;
    Place place_;
    std::shared_ptr<ErrandDesk> desk_;
    std::shared_ptr<Errand> errand_;
  };
  /// Begins work on the thread of a place, of any kind, behind what was begun there before. Nothing
  /// when the place is out of reach. Work that is not awaited, and stalls, keeps its place busy:
  /// the next that is awaited there finds it out of reach.
  std::optional<Begun> Begin(const Place& place, std::function<void(Sign&)> work);
  /// Breathes until begun work has returned or `enough`, which is asked on this thread at each
  /// sign that tells. False: the place is out of reach, and the work is left behind or has not
  /// begun.
  bool Await(const Begun& begun, const std::function<bool()>& enough);
  static bool HasReturned(const Begun& begun) { return begun.errand_->returned; }
  /// Lets go of something on the thread of its place, since that may stall as well. Nobody waits.
  /// The caller keeps no share of it. Where the place owes an answer it waits there until that has
  /// come, so what no errand was begun with, and so has nothing open, is not brought here.
  void LetGo(const Place& place, std::shared_ptr<void> thing);

  /// The loop is not turned any more: the screen may be gone, and the toolkit with it. What waits
  /// stands still, for kPatience at most.
  void StopBreathing() { breathes_ = false; }

  /// Places that owe an answer.
  int LeftBehind() const;
  /// How many errands were left behind so far.
  std::uint64_t GivenUp() const { return givenUp_; }
  /// Errands that have not begun, at all places.
  std::size_t Waiting() const;

 private:
  ErrandDesk& DeskOf(const Place& place);
  bool OnTheLoop() const { return std::this_thread::get_id() == loopThread_; }
  /// Stands still or breathes for `kLook` at most; true when `done`.
  bool WaitABit(ErrandDesk& desk, const std::function<bool()>& done);
  bool WaitPatiently(const Begun& begun, const std::function<bool()>& done);

  base::Loop& loop_;
  Places& places_;
  FootGate& feet_;
  const std::chrono::milliseconds idle_;
  const std::thread::id loopThread_ = std::this_thread::get_id();
  const std::shared_ptr<Answers> answers_ = std::make_shared<Answers>();
  const std::unique_ptr<DescriptorWait> answersWait_;
  std::map<int, std::shared_ptr<ErrandDesk>> desks_;  ///< By the number of the mount.
  bool breathes_ = true;
  std::uint64_t givenUp_ = 0;
};

}  // namespace tavlo::platform
