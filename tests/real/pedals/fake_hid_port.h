#pragma once

#include <algorithm>
#include <atomic>
#include <deque>
#include <map>
#include <semaphore>
#include <string>
#include <vector>

#include "hid_port.h"

namespace tavlo::test {

/// Input devices that a test plugs in and out. As strict as the real ones: what is not listed does
/// not open, what is not open has nothing to read.
class FakeHidPort : public pedal_watch::HidPort {
 public:
  using Bytes = std::vector<std::uint8_t>;

  struct Device {
    pedal_watch::HidDevice listed;
    bool permitted = true;
    std::deque<Bytes> reports;
  };
  std::map<std::string, Device> Devices;
  /// A device that has nothing to report makes its reader wait, as real ones do.
  bool ReadWaits = false;

  void Plug(std::uint16_t vendor, std::uint16_t product, std::uint16_t usagePage = 12,
            std::uint16_t usage = 3, const std::string& path = "/dev/hidraw0") {
    Devices[path] = {.listed = {path, vendor, product, usagePage, usage}};
  }
  void Report(Bytes bytes, const std::string& path = "/dev/hidraw0") {
    Devices.at(path).reports.push_back(std::move(bytes));
  }
  void Unplug() { Devices.clear(); }
  const std::string& OpenPath() const { return open_; }

  std::vector<pedal_watch::HidDevice> List() override {
    std::vector<pedal_watch::HidDevice> listed;
    for (const auto& [path, device] : Devices) listed.push_back(device.listed);
    return listed;
  }
  pedal_watch::Opening Open(const std::string& path) override {
    using pedal_watch::Opening;
    if (!Devices.contains(path)) return Opening::Failed;
    if (!Devices.at(path).permitted) return Opening::NoPermission;
    open_ = path;
    return Opening::Done;
  }
  void Close() override { open_.clear(); }
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer) override {
    if (!Devices.contains(open_)) return {};
    auto& reports = Devices.at(open_).reports;
    if (reports.empty()) {
      if (ReadWaits) AwaitNews();
      return 0;
    }
    const Bytes bytes = std::move(reports.front());
    reports.pop_front();
    std::ranges::copy(bytes, buffer.begin());
    return bytes.size();
  }
  void AwaitNews() override {
    if (!interrupted_) interruption_.acquire();
  }
  void Interrupt() override {
    interrupted_ = true;
    interruption_.release();
  }

 private:
  std::string open_;
  std::atomic<bool> interrupted_ = false;
  std::counting_semaphore<> interruption_{0};
};

}  // namespace tavlo::test
