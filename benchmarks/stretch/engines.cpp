#include "engines.h"

#include <rubberband/RubberBandStretcher.h>
#include <sonic.h>

#include <algorithm>
#include <utility>

#include "platform/sound/soundtouch_transform.h"

namespace tavlo::bench {
namespace {

using RubberBand::RubberBandStretcher;

constexpr std::size_t kPieceFrames = 512;

class SoundTouchEngine : public Engine {
 public:
  SoundTouchEngine(const Format& format, bool apart) : format_(format), apart_(apart) { Reset(); }

  std::vector<float> Process(std::span<const float> block, bool last) override {
    playback::SampleArray array;
    array.channels = format_.channels;
    array.values.assign(block.begin(), block.end());
    array.last = last || apart_;
    transform_.ChangeSpeed(array, static_cast<float>(100 * format_.speed));
    return std::move(array.values);
  }
  void Reset() override { transform_.Reset(format_.rate); }

 private:
  Format format_;
  bool apart_;
  platform::SoundTouchTransform transform_;
};

/// The channels of interleaved frames, each by itself, as the library wants them.
class Planes {
 public:
  Planes(std::size_t frames, int channels) {
    for (int channel = 0; channel < channels; ++channel) values_.emplace_back(frames);
    for (std::vector<float>& plane : values_) pointers_.push_back(plane.data());
  }
  Planes(std::span<const float> frames, int channels)
      : Planes(frames.size() / static_cast<std::size_t>(channels), channels) {
    for (std::size_t i = 0; i < frames.size(); ++i) {
      values_[i % values_.size()][i / values_.size()] = frames[i];
    }
  }

  float* const* Pointers() { return pointers_.data(); }
  std::size_t Frames() const { return values_.front().size(); }
  std::vector<float> Interleaved() const {
    std::vector<float> frames;
    for (std::size_t i = 0; i < Frames(); ++i) {
      for (const std::vector<float>& plane : values_) frames.push_back(plane[i]);
    }
    return frames;
  }

 private:
  std::vector<std::vector<float>> values_;
  std::vector<float*> pointers_;
};

/// Brings frames through the library in the small pieces that it is made for: of a large one it
/// keeps what its own queue does not hold.
std::vector<float> PassThrough(RubberBandStretcher& library, std::span<const float> frames,
                               int channels, bool last) {
  const std::size_t piece = kPieceFrames * static_cast<std::size_t>(channels);
  std::vector<float> out;
  while (!frames.empty()) {
    Planes in(frames.first(std::min(piece, frames.size())), channels);
    frames = frames.subspan(std::min(piece, frames.size()));
    library.process(in.Pointers(), in.Frames(), last && frames.empty());
    while (library.available() > 0) {
      Planes ready(static_cast<std::size_t>(library.available()), channels);
      library.retrieve(ready.Pointers(), ready.Frames());
      const std::vector<float> values = ready.Interleaved();
      out.insert(out.end(), values.begin(), values.end());
    }
  }
  return out;
}

class RubberBandEngine : public Engine {
 public:
  RubberBandEngine(const Format& format, int options)
      : format_(format),
        library_(static_cast<std::size_t>(format.rate), static_cast<std::size_t>(format.channels),
                 options | RubberBandStretcher::OptionProcessRealTime |
                     RubberBandStretcher::OptionThreadingNever,
                 1 / format.speed) {
    library_.setMaxProcessSize(kPieceFrames);
    Begin();
  }

  std::vector<float> Process(std::span<const float> block, bool last) override {
    std::vector<float> ready = PassThrough(library_, block, format_.channels, last);
    const std::size_t dropped = std::min(late_, ready.size());
    late_ -= dropped;
    ready.erase(ready.begin(), ready.begin() + static_cast<std::ptrdiff_t>(dropped));
    return ready;
  }
  void Reset() override {
    library_.reset();
    Begin();
  }

 private:
  /// The silence that the library wants in front comes out with its delay, and both are dropped.
  void Begin() {
    const auto channels = static_cast<std::size_t>(format_.channels);
    const std::vector<float> pad(library_.getPreferredStartPad() * channels);
    late_ = library_.getStartDelay() * channels;
    const std::size_t early = PassThrough(library_, pad, format_.channels, false).size();
    late_ -= std::min(late_, early);
  }

  Format format_;
  RubberBandStretcher library_;
  std::size_t late_ = 0;
};

class RubberBandOffline : public Engine {
 public:
  RubberBandOffline(const Format& format, int options)
      : format_(format),
        library_(static_cast<std::size_t>(format.rate), static_cast<std::size_t>(format.channels),
                 options | RubberBandStretcher::OptionProcessOffline |
                     RubberBandStretcher::OptionThreadingNever,
                 1 / format.speed) {}

  std::vector<float> Process(std::span<const float> block, bool /*last*/) override {
    Planes planes(block, format_.channels);
    library_.setExpectedInputDuration(planes.Frames());
    library_.setMaxProcessSize(kPieceFrames);
    library_.study(planes.Pointers(), planes.Frames(), true);
    return PassThrough(library_, block, format_.channels, true);
  }
  void Reset() override { library_.reset(); }

 private:
  Format format_;
  RubberBandStretcher library_;
};

class SonicEngine : public Engine {
 public:
  explicit SonicEngine(const Format& format) : format_(format) { Reset(); }

  std::vector<float> Process(std::span<const float> block, bool last) override {
    std::vector<float> in(block.begin(), block.end());
    sonicWriteFloatToStream(library_.get(), in.data(),
                            static_cast<int>(in.size()) / format_.channels);
    if (last) sonicFlushStream(library_.get());
    const int ready = sonicSamplesAvailable(library_.get());
    std::vector<float> out(static_cast<std::size_t>(ready * format_.channels));
    if (ready > 0) sonicReadFloatFromStream(library_.get(), out.data(), ready);
    return out;
  }
  void Reset() override {
    library_.reset(sonicCreateStream(format_.rate, format_.channels));
    sonicSetSpeed(library_.get(), static_cast<float>(format_.speed));
    // Without it the pitch is searched at 4 kHz only.
    sonicSetQuality(library_.get(), 1);
  }

 private:
  struct Release {
    void operator()(sonicStream stream) const { sonicDestroyStream(stream); }
  };

  Format format_;
  std::unique_ptr<sonicStreamStruct, Release> library_;
};

}  // namespace

std::unique_ptr<Engine> MakeEngine(std::string_view name, const Format& format) {
  constexpr int kFiner = RubberBandStretcher::OptionEngineFiner;
  constexpr int kFaster = RubberBandStretcher::OptionEngineFaster;
  constexpr int kShort = RubberBandStretcher::OptionWindowShort;
  if (name == "soundtouch") return std::make_unique<SoundTouchEngine>(format, false);
  if (name == "apart") return std::make_unique<SoundTouchEngine>(format, true);
  if (name == "rubberband_r2") return std::make_unique<RubberBandEngine>(format, kFaster);
  if (name == "rubberband_r3") return std::make_unique<RubberBandEngine>(format, kFiner);
  if (name == "rubberband_r3_short") {
    return std::make_unique<RubberBandEngine>(format, kFiner | kShort);
  }
  if (name == "rubberband_r2_offline") return std::make_unique<RubberBandOffline>(format, kFaster);
  if (name == "rubberband_r3_offline") return std::make_unique<RubberBandOffline>(format, kFiner);
  if (name == "sonic") return std::make_unique<SonicEngine>(format);
  return nullptr;
}

}  // namespace tavlo::bench
