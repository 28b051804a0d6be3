#pragma once

#include <poll.h>

#include <chrono>
#include <functional>
#include <memory>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "platform/reach/foot_gate.h"
#include "platform/reach/place_errands.h"
#include "support/counted_hush.h"
#include "support/simulated_loop.h"

namespace tavlo::test {

/// How long an answer may take on a busy machine.
inline constexpr std::chrono::seconds kAnswerLimit{120};

/// A loop whose time stands while it waits for an answer that will come, and passes at once when
/// the test says that none will.
class WaitingLoop : public SimulatedLoop, public platform::DescriptorWaits {
 public:
  bool NoAnswerComes = false;

  bool BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) override {
    Breathe();
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
    constexpr int kLimit = std::chrono::milliseconds(kAnswerLimit).count();
    if (::poll(&news, 1, kLimit) > 0) return call_();
    throw std::runtime_error("no answer came");
  }

  int descriptor_ = -1;
  std::function<void()> call_;
};

/// Paths whose first letter says where they stand: small letters can not stall, great ones may.
class LetterPlaces : public platform::Places {
 public:
  platform::Place PlaceOf(const std::string& path) override {
    const char letter = path.empty() ? 'a' : path.front();
    return {.mount = letter, .mayStall = letter >= 'A' && letter <= 'Z'};
  }
};

/// A foot that does what the test says whenever it is looked at.
class ScriptedFoot : public platform::WatchedFoot {
 public:
  std::function<bool()> OnLook = [] { return false; };

  bool LetGo() override { return OnLook(); }
};

/// A call that gives no answer until the test lets it.
class StuckCall {
 public:
  std::function<void(platform::Errands::Sign&)> Work() const {
    return [shared = shared_](platform::Errands::Sign&) {
      shared->begun.release();
      shared->answer.acquire();
    };
  }
  void AwaitBegin() const { shared_->begun.acquire(); }
  void Answer() const { shared_->answer.release(); }

 private:
  struct Shared {
    std::counting_semaphore<> begun{0};
    std::counting_semaphore<> answer{0};
  };
  std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
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
  /// Waits until a stuck call has returned.
  void AwaitReach(const std::string& path) {
    while (errands.OutOfReach(path)) std::this_thread::yield();
  }

  WaitingLoop loop;
  LetterPlaces places;
  CountedHush hush;
  platform::FootGate feet{hush};
  platform::PlaceErrands errands{loop, loop, places, feet};
};

}  // namespace tavlo::test
