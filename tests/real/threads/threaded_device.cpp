#include "threads/threaded_device.h"

#include <algorithm>
#include <chrono>

namespace tavlo::test {

using platform::FrameCount;

namespace {

constexpr FrameCount kLatency = 960;
constexpr FrameCount kPeriod = 480;
constexpr auto kPause =
    std::chrono::microseconds(kPeriod * 1'000'000 / ThreadedDevice::kRate / ThreadedDevice::kHaste);

}  // namespace

bool ThreadedDevice::Open(int /*index*/, int /*framesPerSecond*/, platform::RtMixer& mixer) {
  Close();
  ++Opens;
  rendered_ = 0;
  thread_ = std::thread([this, &mixer] { Run(mixer); });
  return true;
}

void ThreadedDevice::Close() {
  over_ = true;
  if (thread_.joinable()) thread_.join();
  over_ = unplugged_ = failed_ = false;
}

FrameCount ThreadedDevice::HeardFrames() {
  if (HasFailed()) return -1;
  return std::max<FrameCount>(0, rendered_.load(std::memory_order_acquire) - kLatency);
}

void ThreadedDevice::LetRender() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

void ThreadedDevice::Run(platform::RtMixer& mixer) {
  std::vector<float> both(2 * kPeriod);
  auto next = std::chrono::steady_clock::now();
  while (!over_) {
    if (unplugged_.load(std::memory_order_acquire)) {
      failed_.store(true, std::memory_order_release);
      return;
    }
    mixer.RtRender(both.data(), kPeriod);
    for (std::size_t i = 0; i < both.size(); i += 2) out_.samples.push_back(both[i]);
    rendered_.fetch_add(kPeriod, std::memory_order_release);
    next = std::max(next + kPause, std::chrono::steady_clock::now() - kPause);
    std::this_thread::sleep_until(next);
  }
}

}  // namespace tavlo::test
