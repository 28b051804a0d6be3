#pragma once

#include <memory>

#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/plain_file.h"

namespace tavlo::platform {

/// Decodes the first sound in a file of one of the listed container formats (flac, ogg, m4a, wma,
/// avi and others, and waves of rare codings). The format is told by the file's first bytes, never
/// by its name, and the library is handed that one format and our own open file: it can open
/// nothing else, whatever the contents name. Seeks are exact to a packet at least. The file must
/// outlive the decoder. Nothing when the file is of no listed format, or no sound in it decodes.
std::unique_ptr<Decoder> NewContainerDecoder(const PlainFile& file, Bytes head);

}  // namespace tavlo::platform
