#include "support/takes.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <thread>

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using std::chrono::nanoseconds;

constexpr int kMostTakes = 20;
constexpr auto kBetweenLooks = 20ms;
/// How often the same processes are looked at before it is asked which there are.
constexpr int kLooksAtTheSame = 25;
/// A thread of the sound that is kept waiting for less than this does no harm: the device has more
/// ahead.
constexpr nanoseconds kHarmless = 3ms;

/// How long each thread of a process has been kept from a processor so far.
void AddWaits(const std::string& process, std::map<std::string, nanoseconds>& waits) {
  std::error_code gone;
  for (const auto& thread : fs::directory_iterator("/proc/" + process + "/task", gone)) {
    std::ifstream statistics(thread.path() / "schedstat");
    std::int64_t ran = 0;
    std::int64_t waited = 0;
    if (statistics >> ran >> waited) waits[thread.path()] = nanoseconds(waited);
  }
}

/// True for a process that this one has started.
bool IsOurs(const std::string& process) {
  std::ifstream file("/proc/" + process + "/stat");
  const std::string status{std::istreambuf_iterator<char>(file), {}};
  int parent = 0;
  // The name before it may hold anything, a parenthesis too.
  const std::size_t name = status.rfind(')');
  return name != status.npos && std::sscanf(status.c_str() + name, ") %*c %d", &parent) == 1 &&
         parent == ::getpid();
}

std::vector<std::string> Processes() {
  std::vector<std::string> ours{std::to_string(::getpid())};
  for (const auto& entry : fs::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    if (name.find_first_not_of("0123456789") == name.npos && IsOurs(name)) ours.push_back(name);
  }
  return ours;
}

/// Looks all the while whether somebody keeps this process and those that it has started from a
/// processor.
class Watchman {
 public:
  Watchman() : thread_([this] { Run(); }) {}
  ~Watchman() { Leave(); }
  Watchman(const Watchman&) = delete;

  /// Ends the watch: true if a thread was kept waiting for too long at a time.
  bool SawTrouble() {
    Leave();
    return trouble_;
  }

 private:
  void Leave() {
    over_ = true;
    if (thread_.joinable()) thread_.join();
  }
  void Run() {
    auto before = Look();
    for (int look = 1; !over_; ++look) {
      const auto asleep = std::chrono::steady_clock::now();
      std::this_thread::sleep_for(kBetweenLooks);
      // Not only a neighbour on this machine may be in the way, but also one of the machine's own.
      if (std::chrono::steady_clock::now() - asleep > kBetweenLooks + kHarmless) trouble_ = true;
      if (look % kLooksAtTheSame == 0) processes_ = Processes();
      const auto now = Look();
      for (const auto& [thread, waited] : now) {
        const auto earlier = before.find(thread);
        if (earlier != before.end() && waited - earlier->second > kHarmless) trouble_ = true;
      }
      before = now;
    }
  }
  std::map<std::string, nanoseconds> Look() const {
    std::map<std::string, nanoseconds> waits;
    for (const std::string& process : processes_) AddWaits(process, waits);
    return waits;
  }

  std::vector<std::string> processes_ = Processes();
  std::atomic<bool> over_ = false;
  bool trouble_ = false;
  std::thread thread_;
};

using Results = testing::TestPartResultArray;

bool BrokeOff(const Results& results) {
  for (int i = 0; i < results.size(); ++i) {
    if (results.GetTestPartResult(i).fatally_failed()) return true;
  }
  return false;
}

void Report(const Results& results) {
  for (int i = 0; i < results.size(); ++i) {
    const testing::TestPartResult& result = results.GetTestPartResult(i);
    ADD_FAILURE_AT(result.file_name(), result.line_number()) << result.message();
  }
}

}  // namespace

void Retake(const std::function<void()>& take) {
  for (int tries = 1;; ++tries) {
    Results results;
    bool disturbed = false;
    {
      const testing::ScopedFakeTestPartResultReporter held(
          testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
      Watchman watchman;
      take();
      disturbed = watchman.SawTrouble();
    }
    if (results.size() == 0) return;
    if (!disturbed || tries == kMostTakes || BrokeOff(results)) return Report(results);
    std::printf("disturbed, so taken again: %s\n", results.GetTestPartResult(0).message());
  }
}

}  // namespace tavlo::test
