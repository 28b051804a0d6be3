#pragma once

#include <memory>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "platform/reach/held_file_meter.h"

namespace tavlo::platform {

/// Measures what FfmpegAudioFile plays.
class SoundMeter : public HeldFileMeter {
 public:
  store::MeasuredSound Measure(const store::HeldFile& held, Errands::Sign& sign) override;

 private:
  Errands::Sign* sign_ = nullptr;  ///< Of the file that is being measured.
  FfmpegAudioFile file_{[this] {
    if (sign_) sign_->Give();
  }};
};

/// One for each place.
class SoundMeters : public HeldFileMeters {
 public:
  std::unique_ptr<HeldFileMeter> Make() override { return std::make_unique<SoundMeter>(); }
};

}  // namespace tavlo::platform
