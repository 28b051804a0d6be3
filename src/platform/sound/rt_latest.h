#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace tavlo::platform {

/// Hands the latest of many values from the loop's thread to the rendering thread. Neither waits,
/// and values that were overtaken are never seen.
template <typename Value>
class RtLatest {
 public:
  /// The loop's thread alone.
  void Put(const Value& value) {
    slots_[written_] = value;
    written_ = between_.exchange(written_ | kFresh, std::memory_order_acq_rel) & kSlot;
  }

  /// The value that was put since the last call; null when none was. The rendering thread alone,
  /// which may read it until the next call.
  const Value* RtTake() {
    if ((between_.load(std::memory_order_relaxed) & kFresh) == 0) return nullptr;
    rtRead_ = between_.exchange(rtRead_, std::memory_order_acq_rel) & kSlot;
    return &slots_[rtRead_];
  }

 private:
  static constexpr std::uint8_t kSlot = 3;
  static constexpr std::uint8_t kFresh = 4;

  std::array<Value, 3> slots_{};
  std::uint8_t written_ = 0;
  std::atomic<std::uint8_t> between_{1};
  std::uint8_t rtRead_ = 2;
};

}  // namespace tavlo::platform
