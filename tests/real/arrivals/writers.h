#pragma once

#include <sys/types.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "arrivals/deliveries.h"
#include "arrivals/shared_memory.h"
#include "base/time.h"

namespace tavlo::test {

/// Processes that write files as recorders and downloads do: in chunks of any size, with pauses in
/// which they hold the file open, or under a dot name that they rename when it is whole. Ended with
/// this object, and with the test.
class Writers {
 public:
  static constexpr int kProcesses = 8;
  static constexpr std::size_t kMostFiles = 4096;

  /// Where one of the processes, by its number, finds a drop folder.
  using PathOf = std::function<std::string(DropFolder folder, int process)>;

  /// They take about `pace` for each of their files. The deliveries must outlive them.
  Writers(const std::vector<Delivery>& deliveries, const PathOf& pathOf, base::Duration pace,
          unsigned seed);
  ~Writers();
  Writers(const Writers&) = delete;

  /// True once all of them have ended. One that failed fails the test.
  bool Over();
  /// The machine kept the writer of this file waiting for so long, while it held the file open,
  /// that nobody need have taken it for open.
  bool StoodStill(std::size_t delivery) const { return common_->stoodStill[delivery]; }

 private:
  struct Common {
    std::array<std::atomic<bool>, kMostFiles> stoodStill{};
  };

  void Write(int process, const PathOf& pathOf, base::Duration pace, unsigned seed) const;

  const std::vector<Delivery>& deliveries_;
  const SharedMemory<Common> common_;
  std::vector<pid_t> processes_;
};

}  // namespace tavlo::test
