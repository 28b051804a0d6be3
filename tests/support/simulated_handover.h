#pragma once

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "shell/file_handover.h"
#include "support/simulated_loop.h"

namespace tavlo::test {

/// The way between two starts. What another start hands over comes as an event of its own. A deck
/// that starts anew on this machine listens in the place of the one before, which has ended.
class SimulatedHandover : public shell::FileHandover {
 public:
  explicit SimulatedHandover(SimulatedLoop& loop) : loop_(loop) {}

  /// The deck that runs already takes what it is handed; otherwise it gives no answer.
  bool answers = true;
  /// Runs while the answer of a deck that gives none is waited for.
  std::function<void()> OnWait;
  /// What it has taken, each list as it came.
  std::vector<Paths> taken;

  bool Listens() const { return came_ != nullptr; }

  /// Another start hands files over. False when nobody takes them.
  bool Come(const Paths& paths) {
    if (!Listens()) return false;
    untold_.push_back(paths);
    loop_.Post([this] { Tell(); });
    return true;
  }

  /// The process is gone, and with it what it had not been told of.
  void ForgetProcess() {
    untold_.clear();
    came_ = nullptr;
  }

  void Listen(std::function<void(const Paths& paths)> came) override {
    ForgetProcess();
    came_ = std::move(came);
  }
  void Close() override {
    Tell();
    came_ = nullptr;
  }
  bool HandOver(const Paths& paths) override {
    const bool full = std::ranges::all_of(paths, [](const auto& path) { return !path.empty(); });
    if (paths.empty() || !full) throw std::logic_error("nothing to hand over");
    if (answers) {
      taken.push_back(paths);
      return true;
    }
    loop_.BreatheUntil([] { return false; }, loop_.Now() + std::chrono::seconds(5));
    if (OnWait) OnWait();
    return false;
  }

 private:
  void Tell() {
    for (const Paths& paths : std::exchange(untold_, {})) came_(paths);
  }

  SimulatedLoop& loop_;
  std::function<void(const Paths& paths)> came_;
  std::vector<Paths> untold_;
};

}  // namespace tavlo::test
