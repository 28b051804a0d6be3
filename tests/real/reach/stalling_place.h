#pragma once

#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/reach/foot_gate.h"
#include "platform/reach/place_errands.h"
#include "support/counted_hush.h"
#include "support/held_calls.h"
#include "support/patience.h"
#include "support/simulated_loop.h"

namespace tavlo::test {

/// A loop whose time stands while it waits for an answer that will come, and passes at once when
/// the test says that none will.
class WaitingLoop : public SimulatedLoop, public platform::DescriptorWaits {
 public:
  bool NoAnswerComes = false;
  /// What must have come about before time passes without an answer.
  std::function<void()> BeforeTimePasses = [] {};

  bool BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) override {
    Breathe();
    if (NoAnswerComes) BeforeTimePasses();
    while (!NoAnswerComes && !done()) Sleep();
    const bool came = done();
    if (!came) Busy(limit - Now());
    return came;
  }
  std::unique_ptr<platform::DescriptorWait> WaitFor(int, std::string,
                                                    std::function<void()>) override {
    return {};
  }
  std::unique_ptr<platform::DescriptorWait> WaitInBreathsToo(int descriptor, std::string,
                                                             std::function<void()> call) override {
    descriptor_ = descriptor;
    call_ = std::move(call);
    return {};
  }

 private:
  void Sleep() {
    pollfd news{.fd = descriptor_, .events = POLLIN, .revents = 0};
    constexpr auto kLimit = static_cast<int>(kPatience / std::chrono::milliseconds(1));
    if (::poll(&news, 1, kLimit) > 0) return call_();
    throw std::runtime_error("no answer came");
  }

  int descriptor_ = -1;
  std::function<void()> call_;
};

/// Paths whose first letter behind `Root` says where they stand: small letters can not stall, great
/// ones may.
class LetterPlaces : public platform::Places {
 public:
  std::string Root;

  platform::Place PlaceOf(const std::string& path) override {
    const bool inside = path.starts_with(Root) && path.size() > Root.size();
    const char letter = inside ? path[Root.size()] : 'a';
    return {.mount = letter, .mayStall = letter >= 'A' && letter <= 'Z'};
  }
};

/// A foot that does what the test says whenever it is looked at.
class ScriptedFoot : public platform::WatchedFoot {
 public:
  std::function<bool()> OnLook = [] { return false; };

  bool LetGo() override { return OnLook(); }
};

/// A call that gives no answer until the test lets it. A copy is the same call.
class StuckCall {
 public:
  StuckCall() { calls_->Shut(); }

  std::function<void(platform::Errands::Sign&)> Work() const {
    return [calls = calls_](platform::Errands::Sign&) { calls->Pass(); };
  }
  void AwaitBegin() const {
    if (!calls_->AwaitCalls(1)) throw std::runtime_error("a call has not begun");
  }
  void Answer() const { calls_->Open(); }
  /// Who has a part in the call: each copy, and each work that was not let go of.
  long Owners() const { return calls_.use_count(); }

 private:
  std::shared_ptr<HeldCalls> calls_ = std::make_shared<HeldCalls>();
};

/// Errands for places that stall when a test wants them to.
struct StallingPlaces {
  /// Runs what gives no answer, until it is left behind.
  bool RunInVain(const std::string& path, std::function<void(platform::Errands::Sign&)> work) {
    loop.NoAnswerComes = true;
    const bool ran = errands.Run(path, std::move(work));
    loop.NoAnswerComes = false;
    return ran;
  }
  /// The same for a call that is the first at its place. It has begun before time passes: one that
  /// has not is taken back, and its place owes nothing.
  bool RunInVain(const std::string& path, const StuckCall& call) {
    loop.BeforeTimePasses = [&call] { call.AwaitBegin(); };
    const bool ran = RunInVain(path, call.Work());
    loop.BeforeTimePasses = [] {};
    return ran;
  }
  /// Waits until a stuck call has returned.
  void AwaitReach(const std::string& path) {
    EXPECT_TRUE(Comes([&] { return !errands.OutOfReach(path); })) << path;
  }

  WaitingLoop loop;
  LetterPlaces places;
  CountedHush hush;
  platform::FootGate feet{hush};
  platform::PlaceErrands errands{loop, loop, places, feet};
};

}  // namespace tavlo::test
