#pragma once

#include "platform/sound/queue_player.h"
#include "platform/sound/soundtouch_transform.h"
#include "support/simulated_loop.h"
#include "support/sound_pump.h"
#include "support/stand_in_device.h"

namespace tavlo::test {

/// The player on a device that renders in virtual time, fed as the program feeds it.
struct PlayerBench {
  PlayerBench() {
    // The device renders ahead of each feed of the player.
    clock.OnTick = [this] { device.CatchUp(); };
    clock.Start();
  }

  SimulatedLoop loop;
  StandInDevice device{loop};
  base::Timer clock{loop, "device", std::chrono::milliseconds(5), base::TimerKind::Feed};
  platform::QueuePlayer player{loop, device};
  platform::SoundTouchTransform transform;
  SoundPump pump{player, transform};
};

}  // namespace tavlo::test
