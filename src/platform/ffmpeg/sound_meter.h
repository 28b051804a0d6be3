#pragma once

#include <memory>
#include <utility>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "platform/reach/held_file_meter.h"

namespace tavlo::platform {

/// Measures what FfmpegAudioFile plays. Made on the loop's thread, used on that of its place.
class SoundMeter : public HeldFileMeter {
 public:
  /// What `measured` remembers is not measured again.
  explicit SoundMeter(std::shared_ptr<MeasuredFiles> measured)
      : file_(
            [this] {
              if (sign_) sign_->Give();
            },
            {}, std::move(measured)) {}

  store::MeasuredSound Measure(const store::HeldFile& held, Errands::Sign& sign) override;

 private:
  Errands::Sign* sign_ = nullptr;  ///< Of the file that is being measured.
  FfmpegAudioFile file_;
};

/// One for each place, made on the loop's thread. What one of them has measured none of the others
/// measures again: what they remember has a lock of its own.
class SoundMeters : public HeldFileMeters {
 public:
  explicit SoundMeters(std::shared_ptr<MeasuredFiles> measured = std::make_shared<MeasuredFiles>())
      : measured_(std::move(measured)) {}

  std::unique_ptr<HeldFileMeter> Make() override { return std::make_unique<SoundMeter>(measured_); }

 private:
  const std::shared_ptr<MeasuredFiles> measured_;
};

}  // namespace tavlo::platform
