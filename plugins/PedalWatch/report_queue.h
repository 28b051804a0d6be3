#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <span>

namespace tavlo::pedal_watch {

/// Report number, pedals' bits, one more byte.
using Report = std::array<std::uint8_t, 3>;

/// Reports on their way from the thread that reads the pedal to whoever asks for them.
class ReportQueue {
 public:
  /// More reports than a foot makes between two reads. Past them the oldest goes, so that the last
  /// state of the pedals is always told.
  static constexpr std::size_t kCapacity = 1000;
  static constexpr std::size_t kMostOfATake = 33;

  void Push(const Report& report);
  /// Takes whole reports into `buffer` and returns how many bytes they take. The very first take
  /// that finds a report takes one only, so that its reader can learn how long a report is.
  std::size_t Take(std::span<std::uint8_t> buffer);
  bool IsEmpty();

 private:
  std::mutex mutex_;
  std::deque<Report> reports_;
  bool lengthTold_ = false;
};

}  // namespace tavlo::pedal_watch
