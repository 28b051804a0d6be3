#pragma once

#include <memory>
#include <string_view>

#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/measured_files.h"
#include "platform/ffmpeg/plain_file.h"

namespace tavlo::platform {

/// What a look at a file gives. No figures are playable without sound of a listed kind.
struct SoundProbe {
  SoundFigures figures;
  /// Set when it was wanted, and also when the figures could not be had without one.
  std::unique_ptr<Decoder> decoder;
};

enum class Want { Figures, Decoder };

/// Tells by its first bytes what kind of sound an open file holds, and measures it. The path is
/// asked only when they tell nothing: one kind has no header. The file must outlive the decoder.
SoundProbe ProbeSound(const PlainFile& file, std::string_view path, Want want);

}  // namespace tavlo::platform
