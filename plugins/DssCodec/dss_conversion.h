#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "byte_source.h"
#include "dss_header.h"
#include "frame_cutter.h"
#include "rate_converter.h"
#include "speech_decoder.h"
#include "wave_sink.h"

namespace tavlo::dss {

/// Turns one DSS recording into a wave: 16 bits, one channel, the given rate in samples per second.
/// It reads and writes piece by piece, so its memory does not grow with the recording. Once, on one
/// thread.
class DssConversion {
 public:
  /// Both are open, and outlive it.
  DssConversion(conversion::ByteSource& source, conversion::WaveSink& wave, int rate)
      : source_(source), wave_(wave), rate_(rate) {}

  /// Writes all of the wave; finishing it is left to the caller. Done, or why there is none.
  ConversionCode Run();

 private:
  ConversionCode ConvertBlocks(Bytes first);
  /// Takes the blocks of a piece of the file, of which only the last may be short.
  ConversionCode ConvertPiece(Bytes piece);
  ConversionCode Sound(const std::vector<Frame>& frames);
  /// Makes the decoder of a mode the one in use.
  ConversionCode Use(Mode mode);
  ConversionCode EndRun();
  ConversionCode AppendSamples();
  ConversionCode CheckLength() const;
  ConversionCode WriteHeader();

  conversion::ByteSource& source_;
  conversion::WaveSink& wave_;
  const int rate_;
  DssHeader header_;
  std::optional<FrameCutter> cutter_;
  std::optional<SpeechDecoder> decoder_;
  std::optional<RateConverter> converter_;
  std::vector<std::int16_t> decoded_;
  std::vector<std::int16_t> samples_;  ///< At the wave's rate, not written yet.
  double seconds_ = 0;                 ///< Of sound that was decoded.
  std::uint64_t soundBytes_ = 0;       ///< Of the wave.
};

}  // namespace tavlo::dss
