#pragma once

#include <memory>

#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/plain_file.h"
#include "platform/ffmpeg/wave_header.h"

namespace tavlo::platform {

/// Decodes a wave straight from its data chunk; every seek is exact to the sample. Integers become
/// the float of the same value over full scale, so 16-bit samples are exact. The file must outlive
/// the decoder. Nothing when the library refuses the ADPCM parameters.
std::unique_ptr<Decoder> NewWaveDecoder(const PlainFile& file, const WaveHeader& header);

}  // namespace tavlo::platform
