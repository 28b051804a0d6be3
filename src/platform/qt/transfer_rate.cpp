#include "platform/qt/transfer_rate.h"

#include <algorithm>
#include <chrono>

namespace tavlo::platform::qt {
namespace {

using namespace std::chrono_literals;

constexpr base::Duration kLookedBack = 3s;
/// Counts over a shorter time say more about the ticks than about the line.
constexpr base::Duration kLeastTime = 500ms;
constexpr double kThousandBytes = 1000;

}  // namespace

void TransferRate::Note(std::int64_t bytes, base::MonotonicTime now) {
  const std::int64_t before = seen_.empty() ? 0 : seen_.back().total;
  const std::int64_t more = seen_.empty() || bytes < lastBytes_ ? bytes : bytes - lastBytes_;
  lastBytes_ = bytes;
  seen_.push_back({now, before + more});
  while (seen_.size() > 2 && now - seen_[1].time >= kLookedBack) seen_.pop_front();
}

std::optional<double> TransferRate::At(base::MonotonicTime now) const {
  if (seen_.empty()) return std::nullopt;
  Count from = seen_.front();
  for (const Count& count : seen_) {
    if (now - count.time >= kLookedBack) from = count;
  }
  if (now - from.time < kLeastTime) return std::nullopt;
  const std::chrono::duration<double> took = std::min(now - from.time, kLookedBack);
  return static_cast<double>(seen_.back().total - from.total) / took.count();
}

QString RateInWords(double bytesASecond) {
  if (bytesASecond < 1) return "waiting for the server";
  if (bytesASecond < kThousandBytes) {
    return QString::number(bytesASecond, 'f', 0) + " bytes a second";
  }
  const double kilobytes = bytesASecond / kThousandBytes;
  if (kilobytes < kThousandBytes) return QString::number(kilobytes, 'f', 0) + " kB a second";
  return QString::number(kilobytes / kThousandBytes, 'f', 1) + " MB a second";
}

}  // namespace tavlo::platform::qt
