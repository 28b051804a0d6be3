#pragma once

#include <QString>
#include <cstdint>
#include <deque>
#include <optional>

#include "base/time.h"

namespace tavlo::platform::qt {

/// How fast bytes come, from counts that were seen now and then. Files that follow each other count
/// as one stream.
class TransferRate {
 public:
  void Forget() { seen_.clear(); }
  /// Bytes of the file that is being fetched; a smaller count than the one before is another file.
  void Note(std::int64_t bytes, base::MonotonicTime now);
  /// Bytes a second over the last few seconds; nothing before there is enough to tell.
  std::optional<double> At(base::MonotonicTime now) const;

 private:
  struct Count {
    base::MonotonicTime time;
    std::int64_t total = 0;
  };

  std::deque<Count> seen_;  ///< The last seconds, and the last count before them.
  std::int64_t lastBytes_ = 0;
};

/// "1.8 MB a second", and in words when nothing comes any more.
QString RateInWords(double bytesASecond);

}  // namespace tavlo::platform::qt
