#pragma once

#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/listener.h"
#include "platform/bus/bus_connection.h"
#include "platform/bus/mpris_service.h"
#include "remote/media_bus.h"
#include "support/patience.h"
#include "support/plain_loop.h"

namespace tavlo::test {

/// Buses are given up and looked for again soon, since tests wait for it.
inline constexpr platform::BusPatience kShortPatience{.greeting = std::chrono::milliseconds(100),
                                                      .firstTry = std::chrono::milliseconds(10),
                                                      .lastTry = std::chrono::milliseconds(80)};

/// A player without a deck: it says what the test has it say, and keeps what others want of it.
class StandInPlayer : public remote::MediaSource {
 public:
  remote::MediaState State() override {
    ++looks;
    return state;
  }
  remote::Microseconds Position() const override { return position; }
  bool TakeJump() override { return std::exchange(jumped, false); }
  void Take(const remote::MediaCommand& command) override { taken.push_back(command); }

  remote::MediaState state;
  remote::Microseconds position = 0;
  bool jumped = false;
  std::vector<remote::MediaCommand> taken;
  int looks = 0;
};

/// A player that is offered on the bus of that address by a loop that the test turns.
class OfferedPlayer : public base::Listener {
 public:
  explicit OfferedPlayer(const std::string& address,
                         const platform::BusPatience& patience = kShortPatience)
      : connection(loop, loop, address, patience) {}
  ~OfferedPlayer() { service.Withdraw(); }

  void HandleNews() override { ++news; }
  /// Turns the loop as the program's does; false when the condition never holds.
  bool Until(const std::function<bool()>& condition) {
    return loop.WaitUntil(
        [&] {
          service.TellChanges();
          return condition();
        },
        kPatience);
  }
  /// Offers the player and waits for its name.
  bool Offer() {
    service.Offer(source, *this);
    return Until([this] { return service.IsLive(); });
  }

  PlainLoop loop;
  StandInPlayer source;
  platform::BusConnection connection;
  platform::MprisService service{connection};
  int news = 0;
};

}  // namespace tavlo::test
