#include "report_queue.h"

#include <algorithm>

namespace tavlo::pedal_watch {

void ReportQueue::Push(const Report& report) {
  const std::lock_guard lock(mutex_);
  if (reports_.size() == kCapacity) reports_.pop_front();
  reports_.push_back(report);
}

std::size_t ReportQueue::Take(std::span<std::uint8_t> buffer) {
  constexpr std::size_t kSize = std::tuple_size_v<Report>;
  const std::lock_guard lock(mutex_);
  const std::size_t most = lengthTold_ ? kMostOfATake : 1;
  const std::size_t taken = std::min({most, reports_.size(), buffer.size() / kSize});
  for (std::size_t report = 0; report < taken; ++report) {
    std::ranges::copy(reports_.front(),
                      buffer.begin() + static_cast<std::ptrdiff_t>(report * kSize));
    reports_.pop_front();
  }
  lengthTold_ = lengthTold_ || taken > 0;
  return taken * kSize;
}

bool ReportQueue::IsEmpty() {
  const std::lock_guard lock(mutex_);
  return reports_.empty();
}

}  // namespace tavlo::pedal_watch
