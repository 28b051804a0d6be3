#pragma once

#include <cstddef>
#include <cstdint>
#include <future>
#include <list>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace tavlo::dss {

/// Waves of short recordings that are likely to be asked for soon, made in memory by threads that
/// take what the processors have to spare. Each is given out once, for the very bytes that it was
/// made of, so it does not matter what has become of their file. Any thread.
class PreparedWaves {
 public:
  /// The most bytes of a recording: five minutes of long play.
  static constexpr std::size_t kMostBytes = 256 * 1024;
  /// The most bytes of its wave. Those five minutes have 7 MB at 11025 Hz, but frames of silence
  /// take a byte each, so that hours of it fit into a short recording.
  static constexpr std::size_t kMostWaveBytes = 16 * 1024 * 1024;
  /// How many are kept: one that is asked for, and two behind it.
  static constexpr std::size_t kMost = 3;

  /// `rate` in samples per second.
  explicit PreparedWaves(int rate) : rate_(rate) {}
  PreparedWaves(const PreparedWaves&) = delete;

  /// Makes a wave of the recording meanwhile. The one that has waited longest makes room for it.
  /// Without a thread or the memory for it nothing is prepared.
  void Begin(std::vector<std::uint8_t> recording);
  /// Whether one of a recording of so many bytes may be there.
  bool MayHold(std::uint64_t bytes) const;
  /// The wave of the recording, once it is made; nothing when it was not begun, or there is no wave
  /// of it or too long a one. They are asked for in the order in which they were begun, so those
  /// before it go, too.
  std::optional<std::vector<std::uint8_t>> Take(std::span<const std::uint8_t> recording);

 private:
  using Wave = std::optional<std::vector<std::uint8_t>>;
  struct Prepared {
    std::vector<std::uint8_t> recording;
    /// Waits for its thread when it goes.
    std::future<Wave> wave;
  };

  const int rate_;
  mutable std::mutex mutex_;
  std::list<Prepared> prepared_;
};

}  // namespace tavlo::dss
