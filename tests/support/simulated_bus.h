#pragma once

#include <optional>
#include <vector>

#include "remote/media_bus.h"

namespace tavlo::test {

/// The desktop's bus for media players, and whoever is on it. As strict as the real one: nobody
/// reaches a player that is not offered, or without a bus, and each change is told once.
class SimulatedMediaBus : public remote::MediaBus {
 public:
  /// What was told of the player since it was offered, each state once.
  std::vector<remote::MediaState> Told;
  int JumpsTold = 0;

  /// The bus comes or goes.
  void SetThere(bool there) {
    const bool was = IsLive();
    there_ = there;
    if (IsLive() != was && listener_) listener_->HandleNews();
  }
  /// The process is gone.
  void ForgetProcess() {
    source_ = nullptr;
    listener_ = nullptr;
    Told.clear();
  }

  /// Somebody on the bus asks for this. False when nobody hears it.
  bool Ask(const remote::MediaCommand& command) {
    if (!IsLive()) return false;
    source_->Take(command);
    return true;
  }
  bool Ask(remote::MediaCommand::What what) { return Ask({.what = what}); }
  /// What the bus would be told now, after a pass of the loop.
  remote::MediaState Look() {
    if (!source_) return {};
    const remote::MediaState state = source_->State();
    if (Told.empty() || Told.back() != state) Told.push_back(state);
    if (source_->TakeJump()) ++JumpsTold;
    return state;
  }
  remote::Microseconds Position() const { return source_ ? source_->Position() : 0; }
  bool IsThere() const { return there_; }
  bool Offered() const { return source_ != nullptr; }

  void Offer(remote::MediaSource& source, base::Listener& listener) override {
    source_ = &source;
    listener_ = &listener;
    if (there_) listener.HandleNews();
  }
  void Withdraw() override { ForgetProcess(); }
  bool IsLive() const override { return there_ && source_; }

 private:
  bool there_ = true;
  remote::MediaSource* source_ = nullptr;
  base::Listener* listener_ = nullptr;
};

}  // namespace tavlo::test
