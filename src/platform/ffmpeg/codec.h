#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ffmpeg/plain_file.h"

struct AVCodecContext;
struct AVCodecParameters;
struct AVFrame;
struct AVPacket;
struct AVRational;

namespace tavlo::platform {

/// Gives back what the library has given.
struct FreeFfmpeg {
  void operator()(AVCodecContext* context) const;
  void operator()(AVCodecParameters* parameters) const;
  void operator()(AVFrame* frame) const;
  void operator()(AVPacket* packet) const;
};
template <typename T>
using Owned = std::unique_ptr<T, FreeFfmpeg>;

Owned<AVCodecParameters> NewParameters();
Owned<AVPacket> NewPacket();

/// Silences the library's own messages, which would tell of broken documents on the standard error.
void QuietFfmpeg();

/// One of the audio decoders that we list, and no other.
class Codec {
 public:
  /// Nothing for a codec that is not listed, or that refuses the parameters. The time base is that
  /// of the packets' moments, where they have any; a frame that is cut at its beginning then says
  /// so.
  static std::unique_ptr<Codec> Open(const AVCodecParameters& parameters,
                                     const AVRational* timeBase = nullptr);

  /// The names of the listed decoders, joined by commas, as the library takes them.
  static const char* Listed();

  /// Hands a packet over; nullptr says that none follows. False when it cannot be decoded.
  bool Send(const AVPacket* packet);
  /// The next decoded frame, valid until the next call; nullptr when it wants another packet.
  const AVFrame* Receive();
  /// Forgets what it holds, for a read position that jumps.
  void Flush();

  /// Decodes a packet made of these bytes and appends what it yields, folded into `played`
  /// channels. False when nothing came.
  bool DecodeBytes(Bytes bytes, int played, std::vector<float>& values);

 private:
  Codec(Owned<AVCodecContext> context, Owned<AVFrame> frame, Owned<AVPacket> packet);

  Owned<AVCodecContext> context_;
  Owned<AVFrame> frame_;
  Owned<AVPacket> packet_;
  std::vector<std::uint8_t> padded_;
};

/// Appends the samples of a frame, of whatever form, folded into `played` channels.
void AppendFrame(const AVFrame& frame, int played, std::vector<float>& values);
/// Appends as many moments of silence.
void AppendSilence(std::int64_t samples, int played, std::vector<float>& values);

}  // namespace tavlo::platform
