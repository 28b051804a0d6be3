#include "support/simulated_pedals.h"

#include <algorithm>
#include <utility>

namespace tavlo::test {
namespace {

constexpr std::size_t kReportSize = 3;
constexpr std::size_t kMostReportsOfARead = 33;

}  // namespace

bool SimulatedSerialPort::Open(int portNumber) {
  Opened.push_back(portNumber);
  open_.reset();
  if (Existing.contains(portNumber)) open_ = portNumber;
  return open_.has_value();
}

std::optional<pedals::SerialLines> SimulatedSerialPort::ReadLines() {
  ++Reads;
  if (!open_ || !Existing.contains(*open_)) return {};
  return Lines;
}

void SimulatedUsbWatcher::Press(std::initializer_list<std::uint8_t> bits) {
  reports_.insert(reports_.end(), bits);
}

void SimulatedUsbWatcher::Unplug() {
  Report(0);
  Pedal = pedals::UsbPresence::NoPedal;
}

bool SimulatedUsbWatcher::StartWatch(int product, int usagePage, int usage,
                                     pedals::MonitorHandle& monitor) {
  Picked = {product, usagePage, usage};
  monitor = 0;
  if (!CanStart) return false;
  ++Starts;
  OnStart();
  readBefore_ = false;
  running_ = monitor = ++lastHandle_;
  return true;
}

bool SimulatedUsbWatcher::GetData(pedals::MonitorHandle& monitor, std::span<std::uint8_t> buffer,
                                  std::int32_t& count) {
  count = 0;
  if (running_ == 0 || monitor != running_) return false;
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
  return CanStop;
}

pedals::UsbPresence SimulatedUsbWatcher::Presence(pedals::MonitorHandle monitor) {
  const bool known = running_ != 0 && monitor == running_;
  return known ? Pedal : pedals::UsbPresence::NotWatched;
}

}  // namespace tavlo::test
