#pragma once

#include "remote/global_keys.h"

namespace tavlo::platform::desktop {

/// Where nobody gives keys of other windows.
class NoKeys : public remote::GlobalKeys {
 public:
  /// `way` says why.
  explicit NoKeys(remote::KeyWay way) : way_(way) {}

  void Tell(base::Listener&) override {}
  void Wish(const std::vector<remote::KeyWish>& wishes) override {
    grants_.clear();
    for (const remote::KeyWish& wish : wishes) {
      grants_.push_back({.action = wish.action, .state = remote::KeyState::Refused});
    }
  }
  void TryAgain() override {}
  remote::KeyWay Way() const override { return way_; }
  std::vector<remote::KeyGrant> Grants() const override { return grants_; }
  std::optional<remote::KeyEvent> Next() override { return std::nullopt; }
  bool CanConfigure() const override { return false; }
  void Configure() override {}

 private:
  const remote::KeyWay way_;
  std::vector<remote::KeyGrant> grants_;
};

}  // namespace tavlo::platform::desktop
