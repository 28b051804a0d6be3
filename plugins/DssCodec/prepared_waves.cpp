#include "prepared_waves.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <system_error>
#include <utility>

#include "dss_conversion.h"

namespace tavlo::dss {
namespace {

using conversion::ConversionCode;

/// Less than what plays and what the user sees.
constexpr int kNiceness = 5;

class RecordingInMemory : public conversion::ByteSource {
 public:
  explicit RecordingInMemory(std::span<const std::uint8_t> bytes) : left_(bytes) {}

  std::uint64_t Size() const override { return size_; }
  ConversionCode Read(std::span<std::uint8_t> target, std::size_t& got) override {
    got = std::min(target.size(), left_.size());
    std::ranges::copy(left_.first(got), target.begin());
    left_ = left_.subspan(got);
    return ConversionCode::Done;
  }
  ConversionCode CheckUnchanged() const override { return ConversionCode::Done; }

 private:
  std::span<const std::uint8_t> left_;
  const std::uint64_t size_ = left_.size();
};

struct WaveInMemory : conversion::WaveSink {
  ConversionCode Append(std::span<const std::uint8_t> more) override {
    if (bytes.size() + more.size() > PreparedWaves::kMostWaveBytes) return ConversionCode::TooLong;
    bytes.insert(bytes.end(), more.begin(), more.end());
    return ConversionCode::Done;
  }
  ConversionCode ReplaceFront(std::span<const std::uint8_t> front) override {
    std::ranges::copy(front, bytes.begin());
    return ConversionCode::Done;
  }

  std::vector<std::uint8_t> bytes;
};

std::optional<std::vector<std::uint8_t>> WaveOf(std::span<const std::uint8_t> recording, int rate) {
  ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kNiceness);
  try {
    RecordingInMemory source(recording);
    WaveInMemory wave;
    if (DssConversion(source, wave, rate).Run() != ConversionCode::Done) return {};
    return std::move(wave.bytes);
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace

void PreparedWaves::Begin(std::vector<std::uint8_t> recording) {
  std::list<Prepared> last;
  last.push_back({.recording = std::move(recording), .wave = {}});
  Prepared& begun = last.back();
  try {
    // The list keeps what stands in it where it is.
    begun.wave =
        std::async(std::launch::async, [&begun, this] { return WaveOf(begun.recording, rate_); });
  } catch (const std::system_error&) {
    return;
  }
  std::list<Prepared> gone;
  const std::lock_guard lock(mutex_);
  prepared_.splice(prepared_.end(), last);
  if (prepared_.size() > kMost) gone.splice(gone.end(), prepared_, prepared_.begin());
}

bool PreparedWaves::MayHold(std::uint64_t bytes) const {
  const std::lock_guard lock(mutex_);
  return bytes <= kMostBytes && !prepared_.empty();
}

std::optional<std::vector<std::uint8_t>> PreparedWaves::Take(
    std::span<const std::uint8_t> recording) {
  std::list<Prepared> taken;
  {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find_if(prepared_, [recording](const Prepared& prepared) {
      return std::ranges::equal(prepared.recording, recording);
    });
    if (found == prepared_.end()) return {};
    taken.splice(taken.end(), prepared_, prepared_.begin(), std::next(found));
  }
  return taken.back().wave.get();
}

}  // namespace tavlo::dss
