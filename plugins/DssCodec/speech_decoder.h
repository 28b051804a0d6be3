#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "frame_cutter.h"

struct AVCodecContext;
struct AVFrame;
struct AVPacket;

namespace tavlo::dss {

/// Samples per second of what the decoder of a mode gives. Standard play is made at 12000 Hz and
/// leaves the decoder with 11 of every 12 samples, which is 11000 Hz and not 11025.
int NativeRate(Mode mode);

/// FFmpeg's decoder of one mode. It keeps its state from frame to frame. One thread at a time.
class SpeechDecoder {
 public:
  explicit SpeechDecoder(Mode mode);

  Mode CodedAs() const { return mode_; }
  /// Makes it ready: Done, NoDecoder or NoMemory. Once, before the first frame.
  ConversionCode Open();

  /// Appends what one frame of its mode sounds like: Done or DecodeFailed.
  ConversionCode Decode(const Frame& frame, std::vector<std::int16_t>& samples);

 private:
  struct Free {
    void operator()(AVCodecContext* context) const;
    void operator()(AVFrame* frame) const;
    void operator()(AVPacket* packet) const;
  };

  /// Puts the bytes into the packet in the order that the decoder wants.
  void Pack(const Frame& frame);

  const Mode mode_;
  std::unique_ptr<AVCodecContext, Free> context_;
  std::unique_ptr<AVPacket, Free> packet_;
  std::unique_ptr<AVFrame, Free> frame_;
};

}  // namespace tavlo::dss
