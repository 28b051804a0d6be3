#include "platform/ffmpeg/vox_decoder.h"

#include <algorithm>
#include <array>

namespace tavlo::platform {
namespace {

constexpr int kRate = 8000;
/// Bytes from one remembered state to the next: ten hours take some 18 KB.
constexpr std::int64_t kStretch = 64 * 1024;
constexpr std::int64_t kSamplesInStretch = 2 * kStretch;

/// Each step is a tenth wider than the one before; fractions are dropped.
constexpr std::array<int, 49> kSteps{
    16,  17,  19,  21,  23,  25,  28,  31,  34,  37,  41,   45,   50,   55,   60,  66,  73,
    80,  88,  97,  107, 118, 130, 143, 157, 173, 190, 209,  230,  253,  279,  307, 337, 371,
    408, 449, 494, 544, 598, 658, 724, 796, 876, 963, 1060, 1166, 1282, 1411, 1552};
/// How a code moves to another step, by its three lower bits.
constexpr std::array<int, 8> kMoves{-1, -1, -1, -1, 2, 4, 6, 8};

/// What each code does at each step, made once: a seek may run through millions of codes.
struct Effect {
  std::int16_t change = 0;
  std::int16_t nextStep = 0;
};
using Effects = std::array<std::array<Effect, 16>, kSteps.size()>;

constexpr Effects MakeEffects() {
  Effects effects{};
  constexpr int kLastStep = static_cast<int>(kSteps.size()) - 1;
  for (int step = 0; step <= kLastStep; ++step) {
    for (unsigned code = 0; code < 16; ++code) {
      const int size = static_cast<int>(code & 7U);
      const int change = ((2 * size + 1) * kSteps[static_cast<std::size_t>(step)]) >> 3;
      const int next = std::clamp(step + kMoves[static_cast<std::size_t>(size)], 0, kLastStep);
      effects[static_cast<std::size_t>(step)][code] = {
          static_cast<std::int16_t>((code & 8U) != 0 ? -change : change),
          static_cast<std::int16_t>(next)};
    }
  }
  return effects;
}

constexpr Effects kEffects = MakeEffects();

struct VoxState {
  int value = 0;  ///< 12 bits with sign.
  int step = 0;

  void Take(unsigned code) {
    const Effect effect = kEffects[static_cast<std::size_t>(step)][code];
    value = std::clamp(value + effect.change, -2048, 2047);
    step = effect.nextStep;
  }
};

class VoxDecoder final : public Decoder {
 public:
  explicit VoxDecoder(const PlainFile& file) : file_(file), states_(1), bytes_(kStretch) {}

  int SamplesPerSecond() const override { return kRate; }
  int Channels() const override { return 1; }
  std::int64_t TotalSamples() const override { return 2 * static_cast<std::int64_t>(file_.Size()); }

  bool Decode(std::vector<float>& values) override {
    decoded_.clear();
    if (!DecodeStretch(position_ / kSamplesInStretch, &decoded_)) return false;
    const auto skipped = static_cast<std::size_t>(position_ % kSamplesInStretch);
    if (skipped >= decoded_.size()) return false;
    values.insert(values.end(), decoded_.begin() + static_cast<std::ptrdiff_t>(skipped),
                  decoded_.end());
    position_ += static_cast<std::int64_t>(decoded_.size() - skipped);
    return true;
  }

  std::int64_t Seek(std::int64_t target) override {
    position_ = std::clamp<std::int64_t>(target, 0, TotalSamples());
    return position_;
  }

 private:
  /// Decodes one stretch, and before it those that lie between it and the last remembered state.
  bool DecodeStretch(std::int64_t stretch, std::vector<float>* decoded) {
    while (std::ssize(states_) <= stretch) {
      if (!DecodeStretch(std::ssize(states_) - 1, nullptr)) return false;
    }
    const std::size_t got = file_.ReadAt(static_cast<std::uint64_t>(stretch * kStretch), bytes_);
    VoxState state = states_[static_cast<std::size_t>(stretch)];
    for (const std::uint8_t byte : Bytes(bytes_.data(), got)) {
      state.Take(byte >> 4U);
      if (decoded != nullptr) decoded->push_back(SampleOf(state));
      state.Take(byte & 15U);
      if (decoded != nullptr) decoded->push_back(SampleOf(state));
    }
    const bool whole = got == bytes_.size();
    if (whole && std::ssize(states_) == stretch + 1) states_.push_back(state);
    return decoded != nullptr ? got > 0 : whole;
  }

  static float SampleOf(const VoxState& state) { return static_cast<float>(state.value) / 2048.0F; }

  const PlainFile& file_;
  std::vector<VoxState> states_;  ///< At the beginning of each stretch that was reached.
  std::int64_t position_ = 0;
  std::vector<std::uint8_t> bytes_;
  std::vector<float> decoded_;
};

}  // namespace

bool IsVoxName(std::string_view path) {
  constexpr std::string_view kExtension = ".vox";
  if (path.size() < kExtension.size()) return false;
  path.remove_prefix(path.size() - kExtension.size());
  return std::ranges::equal(path, kExtension, [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b;
  });
}

std::unique_ptr<Decoder> NewVoxDecoder(const PlainFile& file) {
  return std::make_unique<VoxDecoder>(file);
}

}  // namespace tavlo::platform
