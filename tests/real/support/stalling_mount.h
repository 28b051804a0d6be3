#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <string>

namespace tavlo::test {

/// A folder that a program serves, as the folders of a file server are: what is asked of it may get
/// no answer. The program ends with this object, and with the test.
class StallingMount {
 public:
  /// Shows what stands in `source` at `point`, both of which stand already.
  StallingMount(std::string source, std::string point);
  /// Takes the mount away; who waits for an answer gets none.
  ~StallingMount();
  StallingMount(const StallingMount&) = delete;

  /// Empty when the mount stands, else why it does not.
  const std::string& Fault() const { return fault_; }
  /// Where the mount is, and the folder that it shows.
  const std::string& Path() const { return point_; }
  const std::string& Behind() const { return source_; }

  /// From when one of these returns nothing is answered. To a program that is stopped nothing gets
  /// through, and whoever waits for it can be killed; one that has taken a call and holds it keeps
  /// even the dead. Both may be called in a process that the test has forked.
  void Stop() const;
  void Hold() const;
  /// All that was asked meanwhile is answered, and whatever comes.
  void GoOn() const;
  /// Each answer takes a while longer from here on, as over a long line.
  void BeFarAway() const;
  /// Each call on the mount fails from here on.
  void Kill();
  /// Mounts it again at the same place after it was killed, by a server that answers. That one ends
  /// with the thread that calls this, if not before.
  void ComeBack();

  /// What stands there now, and has not been touched since, looks an hour older from here on. The
  /// clock of the mount is as before for whatever is written later.
  void LetAnHourPass() const;

  /// Counts from here on what this thread, -1 for none, asks of the mount. The kernel keeps nothing
  /// of a mount to answer by itself, so a thread of which nothing is counted can not have waited
  /// for the server.
  void Watch(pid_t thread) const;
  int AskedByTheWatched() const;

 private:
  /// Forks a server and waits until it serves. False when nothing can be mounted.
  bool StartServer();
  [[noreturn]] void Serve(int ready) const;
  /// False, and a failure of the test, when there is no server to be sent a signal.
  bool Send(int signal) const;

  /// What this process has in common with the server and all that the test forks.
  struct Common {
    std::atomic<bool> holds = false;
    std::atomic<bool> isFarAway = false;
    std::atomic<pid_t> watched = -1;
    std::atomic<int> askedByTheWatched = 0;
    /// Whatever has not changed since this moment looks an hour older; nanoseconds since 1970.
    std::atomic<std::int64_t> agedUntil = 0;
  };
  static Common* MakeCommon();

  const std::string source_;
  const std::string point_;
  Common* const common_;
  pid_t server_ = -1;
  std::string fault_;
};

}  // namespace tavlo::test
