#pragma once

#include <memory>
#include <string_view>

#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/plain_file.h"

namespace tavlo::platform {

/// A telephone recording (".vox"): ADPCM of 12 bits at 8000 Hz, one channel, two samples a byte,
/// the first one in the upper half. There is no header, so nothing but its name tells such a file.
bool IsVoxName(std::string_view path);

/// Decodes it; every seek is exact to the sample. A sample depends on all those before it, so the
/// first read behind a stretch that was never reached decodes that stretch too (ten minutes in some
/// 20 ms). The file must outlive the decoder.
std::unique_ptr<Decoder> NewVoxDecoder(const PlainFile& file);

}  // namespace tavlo::platform
