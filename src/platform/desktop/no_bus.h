#pragma once

#include "remote/media_bus.h"

namespace tavlo::platform::desktop {

/// A desktop without a bus for media players.
class NoBus : public remote::MediaBus {
 public:
  void Offer(remote::MediaSource&, base::Listener&) override {}
  void Withdraw() override {}
  bool IsLive() const override { return false; }
};

}  // namespace tavlo::platform::desktop
