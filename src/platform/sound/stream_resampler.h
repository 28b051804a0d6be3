#pragma once

#include <memory>
#include <span>
#include <vector>

struct SwrContext;

namespace tavlo::platform {

/// Brings one unbroken stream of frames to another rate. It holds back what it needs of the end
/// for the next join. A frame is one moment of all channels.
class StreamResampler {
 public:
  /// The library may refuse the format or have no memory for it; then each conversion throws.
  StreamResampler(int fromRate, int toRate, int channels);
  ~StreamResampler();

  int Channels() const { return channels_; }

  /// Takes frames in and returns all that are ready. Throws std::bad_alloc when the library fails.
  std::vector<float> Convert(std::span<const float> in);
  /// Returns the rest. Nothing may be converted after it.
  std::vector<float> Finish();
  /// Frames that are in and have not come out, at the rate of the source.
  double HeldBack() const;

 private:
  struct Release {
    void operator()(SwrContext* context) const;
  };

  std::vector<float> Run(const float* in, int frames);

  int fromRate_;
  int channels_;
  std::unique_ptr<SwrContext, Release> context_;
};

}  // namespace tavlo::platform
