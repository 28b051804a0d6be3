#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace tavlo::test {

/// A pipe in the place of a file, without a writer. Who opens it as a file waits for a
/// writer, and is let go after a while so that the test can say so.
class UnreadPipe {
 public:
  explicit UnreadPipe(std::string path) : path_(std::move(path)) {
    std::filesystem::remove(path_);
    if (::mkfifo(path_.c_str(), 0600) != 0) std::abort();
    writer_ = std::thread([this] {
      std::unique_lock lock(mutex_);
      if (!ended_.wait_for(lock, kPatience, [this] { return over_; })) LetGo();
    });
  }
  ~UnreadPipe() {
    {
      const std::lock_guard lock(mutex_);
      over_ = true;
    }
    ended_.notify_all();
    writer_.join();
  }
  UnreadPipe(const UnreadPipe&) = delete;

  /// Somebody waited at the pipe until he was let go.
  bool HeldSomebody() const { return held_; }

 private:
  static constexpr std::chrono::seconds kPatience{15};

  void LetGo() {
    const int writer = ::open(path_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (writer < 0) return;
    held_ = true;
    ::close(writer);
  }

  const std::string path_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool over_ = false;
  std::atomic<bool> held_ = false;
  std::thread writer_;
};

}  // namespace tavlo::test
