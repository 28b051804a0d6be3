#include "support/simulated_pedals.h"

#include <algorithm>
#include <utility>

namespace tavlo::test {
namespace {

constexpr std::size_t kReportSize = 3;
constexpr std::size_t kMostReportsOfARead = 33;

}  // namespace

void SimulatedSerialPort::Hold(pedals::SerialLines lines) {
  if (lines == Lines) return;
  Lines = lines;
  Come();
}

void SimulatedSerialPort::Plug(std::set<int> ports) {
  const bool wasThere = IsThere();
  Existing = std::move(ports);
  if (wasThere && !IsThere()) Come();
}

void SimulatedSerialPort::Come() {
  news_ = true;
  if (TellsAtOnce) Tell();
}

void SimulatedSerialPort::Tell() {
  if (news_ && listener_) std::exchange(listener_, nullptr)->HandleNews();
}

bool SimulatedSerialPort::Open(int portNumber) {
  Close();
  Opened.push_back(portNumber);
  if (Existing.contains(portNumber)) open_ = portNumber;
  return open_.has_value();
}

void SimulatedSerialPort::Close() {
  open_.reset();
  listener_ = nullptr;
  news_ = false;
}

std::optional<pedals::SerialLines> SimulatedSerialPort::ReadLines() {
  ++Reads;
  listener_ = nullptr;
  news_ = false;
  if (!IsThere()) return {};
  return Lines;
}

bool SimulatedSerialPort::TellOnce(base::Listener& listener) {
  if (!CanTell || !IsThere()) return false;
  listener_ = &listener;
  if (TellsAtOnce) Tell();
  return true;
}

void SimulatedUsbWatcher::Come() {
  if (listener_) std::exchange(listener_, nullptr)->HandleNews();
}

void SimulatedUsbWatcher::Press(std::initializer_list<std::uint8_t> bits) {
  reports_.insert(reports_.end(), bits);
  Come();
}

void SimulatedUsbWatcher::Deliver(std::vector<std::uint8_t> bytes,
                                  std::optional<std::int32_t> told) {
  delivered_.push_back({std::move(bytes), told});
  Come();
}

void SimulatedUsbWatcher::Plug(pedals::UsbPresence found) {
  Pedal = found;
  presenceIsNews_ = true;
  Come();
}

void SimulatedUsbWatcher::Unplug() {
  reports_.push_back(0);
  Plug(pedals::UsbPresence::NoPedal);
}

bool SimulatedUsbWatcher::StartWatch(int product, int usagePage, int usage,
                                     pedals::MonitorHandle& monitor) {
  Picked = {product, usagePage, usage};
  monitor = 0;
  if (!CanStart) return false;
  ++Starts;
  OnStart();
  readBefore_ = false;
  presenceIsNews_ = false;
  running_ = monitor = ++lastHandle_;
  return true;
}

bool SimulatedUsbWatcher::GetData(pedals::MonitorHandle& monitor, std::span<std::uint8_t> buffer,
                                  std::int32_t& count) {
  count = 0;
  if (running_ == 0 || monitor != running_) return false;
  presenceIsNews_ = false;
  if (!CanRead) {
    buffer[1] = 2;
    count = kReportSize;
    return false;
  }
  ++Reads;
  if (!delivered_.empty()) {
    const Delivery delivery = std::move(delivered_.front());
    delivered_.pop_front();
    const std::size_t fit = std::min(delivery.bytes.size(), buffer.size());
    std::copy_n(delivery.bytes.begin(), fit, buffer.begin());
    count = delivery.told.value_or(static_cast<std::int32_t>(fit));
    return true;
  }
  const std::size_t most = std::exchange(readBefore_, readBefore_ || !reports_.empty())
                               ? std::min(kMostReportsOfARead, buffer.size() / kReportSize)
                               : 1;
  for (std::size_t report = 0; report < most && !reports_.empty(); ++report) {
    buffer[report * kReportSize] = 0;
    buffer[report * kReportSize + 1] = reports_.front();
    buffer[report * kReportSize + 2] = 0;
    reports_.pop_front();
    count += kReportSize;
  }
  return true;
}

bool SimulatedUsbWatcher::StopWatch(pedals::MonitorHandle& monitor) {
  const bool known = running_ != 0 && monitor == running_;
  monitor = 0;
  if (!known) return false;
  ++Stops;
  OnStop();
  running_ = 0;
  listener_ = nullptr;
  return CanStop;
}

pedals::UsbPresence SimulatedUsbWatcher::Presence(pedals::MonitorHandle monitor) {
  const bool known = running_ != 0 && monitor == running_;
  return known ? Pedal : pedals::UsbPresence::NotWatched;
}

bool SimulatedUsbWatcher::TellOnce(pedals::MonitorHandle monitor, base::Listener& listener) {
  if (!CanTell || running_ == 0 || monitor != running_) return false;
  listener_ = &listener;
  if (HasReports() || presenceIsNews_) Come();
  return true;
}

}  // namespace tavlo::test
