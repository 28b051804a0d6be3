#pragma once

#include "remote/global_keys.h"

namespace tavlo::platform::desktop {

/// Where there is no display that could tell of keys.
class NoKeys : public remote::GlobalKeys {
 public:
  void Tell(base::Listener&) override {}
  void Wish(const std::vector<remote::KeyWish>& wishes) override {
    grants_.clear();
    for (const remote::KeyWish& wish : wishes) {
      grants_.push_back({.action = wish.action, .state = remote::KeyState::Refused});
    }
  }
  void TryAgain() override {}
  remote::KeyWay Way() const override { return remote::KeyWay::None; }
  std::vector<remote::KeyGrant> Grants() const override { return grants_; }
  std::optional<remote::KeyEvent> Next() override { return std::nullopt; }
  bool CanConfigure() const override { return false; }
  void Configure() override {}

 private:
  std::vector<remote::KeyGrant> grants_;
};

}  // namespace tavlo::platform::desktop
