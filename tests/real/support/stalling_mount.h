#pragma once

#include <sys/types.h>

#include <string>

namespace tavlo::test {

/// A folder that a program serves, as the folders of a file server are: what is asked of it may get
/// no answer. Needs the right to mount. The program ends with this object, and with the test.
class StallingMount {
 public:
  /// How answers stay out. To a program that is stopped nothing gets through, and whoever waits for
  /// it can be killed; one that has taken a call and does not answer keeps even the dead.
  enum class Silence { Stopped, Holding };

  /// Shows what stands in `source` at `point`, both of which stand already.
  StallingMount(std::string source, std::string point);
  /// Takes the mount away; who waits for an answer gets none.
  ~StallingMount();
  StallingMount(const StallingMount&) = delete;

  /// Empty when the mount stands, else why it does not.
  const std::string& Fault() const { return fault_; }

  /// From here on nothing is answered. May be called in a process that the test has forked.
  void Stall(Silence how = Silence::Stopped);
  /// All that was asked meanwhile is answered, and whatever comes.
  void GoOn();

 private:
  void Serve(int ready) const;

  const std::string source_;
  const std::string point_;
  pid_t server_ = -1;
  std::string fault_;
};

}  // namespace tavlo::test
