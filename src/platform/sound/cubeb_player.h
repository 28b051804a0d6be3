#pragma once

#include "platform/sound/cubeb_device.h"
#include "platform/sound/queue_player.h"

namespace tavlo::platform {

/// The player of documents on the desktop's sound devices.
class CubebPlayer final : private CubebDevice, public QueuePlayer {
 public:
  explicit CubebPlayer(base::Loop& loop) : QueuePlayer(loop, static_cast<CubebDevice&>(*this)) {}
};

}  // namespace tavlo::platform
