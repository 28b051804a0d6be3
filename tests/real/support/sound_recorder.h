#pragma once

#include <atomic>
#include <mutex>
#include <thread>

#include "support/sound_analysis.h"
#include "support/sound_server.h"

namespace tavlo::test {

/// Records what the silent device plays. It must run before the first sound: without a reader the
/// device renders ahead of the clock.
class SoundRecorder {
 public:
  ~SoundRecorder();

  /// Starts and waits until the recording keeps pace with the clock; false when it never does.
  bool Start();
  /// Seconds recorded so far.
  double Seconds() const;
  /// Lets so many seconds more be recorded: what sounds when it is called is in the recording then,
  /// however late the recording runs. False when it does not go on.
  bool Pass(double seconds) const;
  /// What was recorded since that moment, the left channel.
  Sound Since(double seconds) const;

 private:
  void Read();

  ChildProcess recorder_;
  int pipe_ = -1;
  std::thread reader_;
  mutable std::mutex lock_;
  Sound sound_;
};

}  // namespace tavlo::test
