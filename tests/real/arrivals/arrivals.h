#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "arrivals/deliveries.h"

namespace tavlo::test {

/// What stands in folders, by its bytes: how often, and where.
class Arrivals {
 public:
  /// All files of these folders, hidden ones too, but for a wave that a library was making when
  /// its deck gave it up: no list shows it, and a later deck deletes it. A folder that is missing
  /// holds nothing.
  explicit Arrivals(const std::vector<std::string>& folders);

  /// How many files there are.
  int Count() const { return count_; }
  /// The files that hold these bytes.
  const std::vector<std::string>& Of(const std::string& bytes) const;

 private:
  std::map<std::string, std::vector<std::string>> pathsByBytes_;
  int count_ = 0;
};

/// Each delivery stands once in these folders, whole, and nothing else does. What `mayDiffer` says
/// yes to need not be whole.
void ExpectEachOnce(
    const std::vector<Delivery>& deliveries, const std::vector<std::string>& folders,
    const std::function<bool(std::size_t)>& mayDiffer = [](std::size_t) { return false; });

/// How many names stand in the folders, hidden ones too.
int NamesIn(const std::vector<std::string>& folders);

}  // namespace tavlo::test
