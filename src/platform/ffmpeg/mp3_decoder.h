#pragma once

#include <memory>

#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/mp3_frames.h"
#include "platform/ffmpeg/plain_file.h"

namespace tavlo::platform {

/// Decodes MPEG audio frame by frame. Every frame takes its time, even one that cannot be decoded
/// (silence), so a position means the same moment however it was reached, and seeks are exact to
/// the sample. `totalSamples` is what CountMp3Samples gave. The file must outlive the decoder.
std::unique_ptr<Decoder> NewMp3Decoder(const PlainFile& file, const Mp3Stream& stream,
                                       std::int64_t totalSamples);

}  // namespace tavlo::platform
