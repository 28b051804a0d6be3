#include "platform/sound/cubeb_device.h"

#include <sched.h>

#include <array>
#include <chrono>
#include <string_view>
#include <thread>
#include <utility>

#include "platform/sound/device_names.h"

namespace tavlo::platform {
namespace {

constexpr const char* kProgramName = "Tavlo Deck";
constexpr const char* kDefaultDeviceName = "System default";
constexpr const char* kServerBackend = "pulse";
constexpr std::array kBackends = {kServerBackend, "alsa"};
constexpr int kUsualRate = 48000;

bool IsUsable(const cubeb_device_info& device) {
  return device.state == CUBEB_DEVICE_STATE_ENABLED && device.max_channels > 0;
}

std::string NameOf(const cubeb_device_info& device) {
  return device.friendly_name != nullptr ? device.friendly_name : device.device_id;
}

}  // namespace

CubebDevice::~CubebDevice() { Disconnect(); }

std::vector<std::string> CubebDevice::FindDevices() {
  names_.clear();
  if (!ListDevices()) return {};
  for (std::size_t i = 0; i < devices_.count; ++i) {
    if (IsUsable(devices_.device[i])) names_.push_back(NameOf(devices_.device[i]));
  }
  if (!names_.empty()) names_.insert(names_.begin(), kDefaultDeviceName);
  return names_;
}

std::vector<std::string> CubebDevice::LearnDevices(const std::vector<std::string>& present) {
  const std::size_t before = names_.size();
  if (names_.empty() && !present.empty()) names_.emplace_back(kDefaultDeviceName);
  names_ = WithNewNames(std::move(names_), present);
  // The server that has them may have come only now, and the next connection finds it.
  if (names_.size() > before && !IsOpen() && !OnAServer()) Disconnect();
  return names_;
}

bool CubebDevice::ListDevices() {
  if (!Connect()) return false;
  ForgetDevices();
  const int listed = cubeb_enumerate_devices(context_, CUBEB_DEVICE_TYPE_OUTPUT, &devices_);
  if (listed != CUBEB_OK) devices_ = {};
  return listed == CUBEB_OK;
}

/// The identifier of the device of that index; the default device's where it has gone.
cubeb_devid CubebDevice::Identify(int index) {
  const auto place = static_cast<std::size_t>(index);
  if (place == 0 || place >= names_.size()) return nullptr;
  const cubeb_devid known = IdentifyListed(names_[place]);
  if (known != nullptr || !ListDevices()) return known;
  return IdentifyListed(names_[place]);
}

/// Null when the devices were not listed yet, or no usable one had that name when they were.
cubeb_devid CubebDevice::IdentifyListed(const std::string& name) const {
  for (std::size_t i = 0; devices_.device != nullptr && i < devices_.count; ++i) {
    const cubeb_device_info& device = devices_.device[i];
    if (IsUsable(device) && NameOf(device) == name) return device.devid;
  }
  return nullptr;
}

int CubebDevice::PreferredRate() {
  std::uint32_t rate = 0;
  if (!Connect() || cubeb_get_preferred_sample_rate(context_, &rate) != CUBEB_OK || rate == 0) {
    return kUsualRate;
  }
  return static_cast<int>(rate);
}

bool CubebDevice::Open(int index, int framesPerSecond, RtMixer& mixer) {
  Close();
  if (!Connect()) return false;
  cubeb_devid device = Identify(index);
  if (device == nullptr && index > 0 && !OnAServer()) {
    // It may be a device of a server that has come since this connection was made.
    Disconnect();
    if (!Connect()) return false;
    device = Identify(index);
  }
  cubeb_stream_params params{};
  params.format = CUBEB_SAMPLE_FLOAT32NE;
  params.rate = static_cast<std::uint32_t>(framesPerSecond);
  params.channels = 2;
  params.layout = CUBEB_LAYOUT_STEREO;
  params.prefs = CUBEB_STREAM_PREF_NONE;
  mixer_ = &mixer;
  rtFailed_ = false;
  supply_.Restart();
  rtWentFirst_ = false;
  const auto latency = static_cast<std::uint32_t>(framesPerSecond * LatencyMilliseconds() / 1000);
  if (cubeb_stream_init(context_, &stream_, kProgramName, nullptr, nullptr, device, &params,
                        latency, RtData, RtState, this) != CUBEB_OK) {
    stream_ = nullptr;
    // The connection itself may be what is broken, so the next try begins with a new one.
    Disconnect();
    return false;
  }
  if (cubeb_stream_start(stream_) == CUBEB_OK && !HasFailed()) return true;
  Disconnect();
  return false;
}

void CubebDevice::Close() {
  if (stream_ == nullptr) return;
  const bool broken = HasFailed();
  if (!broken) cubeb_stream_stop(stream_);
  cubeb_stream_destroy(stream_);
  stream_ = nullptr;
  rtFailed_ = false;
  if (broken) Disconnect();
}

bool CubebDevice::TakeRanDry() {
  if (stream_ == nullptr || !supply_.TakeRanDry()) return false;
  if (LatencyMilliseconds() == kLatencyMilliseconds.back()) return false;
  ++latency_;
  return true;
}

FrameCount CubebDevice::HeardFrames() {
  std::uint64_t frames = 0;
  if (stream_ == nullptr || HasFailed()) return -1;
  if (cubeb_stream_get_position(stream_, &frames) != CUBEB_OK) return -1;
  return static_cast<FrameCount>(frames);
}

void CubebDevice::LetRender() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

int CubebDevice::LatencyMilliseconds() const {
  return OnAServer() ? kLatencyMilliseconds[latency_] : kLatencyMilliseconds.back();
}

bool CubebDevice::OnAServer() const {
  return context_ != nullptr && std::string_view(cubeb_get_backend_id(context_)) == kServerBackend;
}

bool CubebDevice::Connect() {
  for (const char* backend : kBackends) {
    if (context_ != nullptr) break;
    if (cubeb_init(&context_, kProgramName, backend) != CUBEB_OK) context_ = nullptr;
  }
  return context_ != nullptr;
}

void CubebDevice::Disconnect() {
  Close();
  ForgetDevices();
  if (context_ != nullptr) cubeb_destroy(context_);
  context_ = nullptr;
}

void CubebDevice::ForgetDevices() {
  if (devices_.device != nullptr) cubeb_device_collection_destroy(context_, &devices_);
  devices_ = {};
}

long CubebDevice::RtData(cubeb_stream* /*stream*/, void* self, const void* /*input*/, void* output,
                         long frames) {
  auto* const device = static_cast<CubebDevice*>(self);
  if (!std::exchange(device->rtWentFirst_, true)) RtGoFirst();
  device->supply_.RtAsked(frames);
  device->mixer_->RtRender(static_cast<float*>(output), frames);
  return frames;
}

/// Asks the kernel to run this thread before others. Where the user may not ask that, it changes
/// nothing.
void CubebDevice::RtGoFirst() {
  const sched_param first{.sched_priority = 1};
  ::sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &first);
}

void CubebDevice::RtState(cubeb_stream* /*stream*/, void* self, cubeb_state state) {
  if (state != CUBEB_STATE_ERROR) return;
  static_cast<CubebDevice*>(self)->rtFailed_.store(true, std::memory_order_release);
}

}  // namespace tavlo::platform
