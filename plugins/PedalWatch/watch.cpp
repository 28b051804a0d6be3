#include "watch.h"

#include <array>

namespace tavlo::pedal_watch {
namespace {

constexpr std::size_t kLongestReport = 64;
constexpr Report kAllUp{0, 0, 0};

}  // namespace

bool Watch::Turn() {
  if (state_ == Presence::Ready) {
    ReadReport();
  } else {
    LookForPedal();
  }
  return state_ == Presence::Ready;
}

bool Watch::Wanted(const HidDevice& device) const {
  const bool isPicked = device.vendor == kPickedVendor && device.product == picked_.product &&
                        device.usagePage == picked_.usagePage && device.usage == picked_.usage;
  return isPicked || FindModel(device.vendor, device.product) != nullptr;
}

void Watch::LookForPedal() {
  Presence found = Presence::NoPedal;
  for (const HidDevice& device : port_.List()) {
    if (!Wanted(device)) continue;
    const Opening opening = port_.Open(device.path);
    if (opening == Opening::NoPermission) found = Presence::NoPermission;
    if (opening != Opening::Done) continue;
    model_ = FindModel(device.vendor, device.product);
    lastBits_ = 0;
    found = Presence::Ready;
    break;
  }
  Become(found);
}

void Watch::ReadReport() {
  std::array<std::uint8_t, kLongestReport> raw{};
  const std::optional<std::size_t> bytes = port_.Read(raw);
  if (!bytes) {
    port_.Close();
    Push(kAllUp);
    Become(Presence::NoPedal);
    return;
  }
  if (*bytes > 0) Take(std::span(raw).first(*bytes));
}

void Watch::Take(std::span<const std::uint8_t> raw) {
  if (model_ == nullptr) {
    // Its reports have no number of their own, so the 0 that stands for that is put in front.
    Push({0, raw[0], raw.size() > 1 ? raw[1] : std::uint8_t{0}});
    return;
  }
  const std::optional<std::uint8_t> bits = PedalBits(*model_, raw);
  // Other makes also report what is no change of the three pedals, and a report that is repeated
  // would start a document anew.
  if (!bits || *bits == lastBits_) return;
  lastBits_ = *bits;
  Push({0, *bits, 0});
}

void Watch::Push(const Report& report) {
  reports_.Push(report);
  news_.Ring();
}

void Watch::Become(Presence state) {
  if (state_.exchange(state) != state) news_.Ring();
}

std::size_t Watch::TakeReports(std::span<std::uint8_t> buffer) {
  // What comes from here on rings again.
  news_.Silence();
  const std::size_t bytes = reports_.Take(buffer);
  if (!reports_.IsEmpty()) news_.Ring();
  return bytes;
}

}  // namespace tavlo::pedal_watch
