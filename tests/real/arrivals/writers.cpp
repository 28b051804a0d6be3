#include "arrivals/writers.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <thread>

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

/// A pause with the file open stays far below what counts as standing still where nobody can tell
/// that a file is open, which is two seconds.
constexpr auto kLongestPause = 400ms;
constexpr auto kStandsStill = 1500ms;

/// Writes one file, and knows the longest time for which it held it open and did nothing.
class Pen {
 public:
  Pen(std::mt19937& random, base::Duration pace) : random_(random), pace_(pace) {}

  void WriteInPlace(const std::string& path, const std::string& bytes) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0) throw std::runtime_error(path);
    last_ = SteadyClock::now();
    WriteChunks(file, bytes);
    // Whoever asks the kernel sees the file open up to here.
    if (::close(file) != 0) throw std::runtime_error(path);
    longest_ = std::max(longest_, SteadyClock::now() - last_);
  }
  void WriteAside(const std::string& folder, const std::string& name, const std::string& bytes) {
    WriteInPlace(folder + "." + name, bytes);
    longest_ = {};
    if (::rename((folder + "." + name).c_str(), (folder + name).c_str()) != 0) {
      throw std::runtime_error(name);
    }
  }
  bool StoodStill() const { return longest_ >= kStandsStill; }

 private:
  void WriteChunks(int file, const std::string& bytes) {
    constexpr int kMostChunks = 6;
    const std::size_t largest = bytes.size() / (1 + random_() % kMostChunks) + 1;
    for (std::size_t at = 0; at < bytes.size();) {
      const std::size_t size = std::min(1 + random_() % largest, bytes.size() - at);
      if (::write(file, bytes.data() + at, size) != static_cast<ssize_t>(size)) {
        throw std::runtime_error("a chunk was not written");
      }
      at += size;
      const SteadyClock::time_point now = SteadyClock::now();
      longest_ = std::max(longest_, now - std::exchange(last_, now));
      Pause(static_cast<double>(size) / static_cast<double>(bytes.size()));
    }
  }
  /// The pauses of a file take about its pace.
  void Pause(double part) {
    const double factor = part * static_cast<double>(random_() % 200) / 100.0;
    const auto pause = std::chrono::duration_cast<std::chrono::microseconds>(pace_ * factor);
    std::this_thread::sleep_for(std::min<std::chrono::microseconds>(pause, kLongestPause));
  }

  std::mt19937& random_;
  const base::Duration pace_;
  SteadyClock::time_point last_;
  SteadyClock::duration longest_{};
};

}  // namespace

Writers::Writers(const std::vector<Delivery>& deliveries, const PathOf& pathOf, base::Duration pace,
                 unsigned seed)
    : deliveries_(deliveries) {
  if (deliveries.size() > kMostFiles) throw std::length_error("more files than are watched");
  for (int process = 0; process < kProcesses; ++process) {
    const pid_t forked = ::fork();
    if (forked != 0) {
      EXPECT_GT(forked, 0) << "no writer can be forked";
      processes_.push_back(forked);
      continue;
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::umask(0);
    try {
      Write(process, pathOf, pace, seed);
    } catch (const std::exception& failure) {
      std::perror(failure.what());
      ::_exit(1);
    }
    ::_exit(0);
  }
}

Writers::~Writers() {
  for (const pid_t process : processes_) {
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
  }
}

bool Writers::Over() {
  std::erase_if(processes_, [](pid_t process) {
    int status = 0;
    if (::waitpid(process, &status, WNOHANG) != process) return false;
    EXPECT_EQ(status, 0);
    return true;
  });
  return processes_.empty();
}

void Writers::Write(int process, const PathOf& pathOf, base::Duration pace, unsigned seed) const {
  std::mt19937 random(seed + static_cast<unsigned>(process));
  for (std::size_t at = static_cast<std::size_t>(process); at < deliveries_.size();
       at += kProcesses) {
    const Delivery& delivery = deliveries_[at];
    const std::string folder = pathOf(delivery.folder, process);
    Pen pen(random, pace);
    if (random() % 4 == 0) {
      pen.WriteAside(folder, delivery.name, delivery.bytes);
    } else {
      pen.WriteInPlace(folder + delivery.name, delivery.bytes);
    }
    common_->stoodStill[at] = pen.StoodStill();
  }
}

}  // namespace tavlo::test
