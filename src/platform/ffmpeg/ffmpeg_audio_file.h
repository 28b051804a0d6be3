#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/measured_files.h"
#include "platform/ffmpeg/plain_file.h"
#include "playback/audio_objects.h"

namespace tavlo::platform {

/// The `OpenStatus` of a file in a process that has no handle, memory or thread left.
inline constexpr int kProcessInTrouble = -1;

/// Measures and decodes sound files: waves and MPEG audio by readers of our own, all else by
/// FFmpeg's, on the thread that calls: one at a time. Opening a wave or an mp3 only measures it,
/// and one that was measured before and has not changed is not even opened; the decoder is made at
/// the first read or seek. A file that is gone or has become another sound by then cannot be read
/// on.
class FfmpegAudioFile : public playback::AudioFile {
 public:
  /// Opening calls `breathe` again and again, for a recording of hours can take long to measure;
  /// meanwhile nothing can be read. A file that is not accepted counts as missing. What `measured`
  /// remembers is not measured again.
  explicit FfmpegAudioFile(
      std::function<void()> breathe = {}, PlainFile::Accepted accepted = {},
      std::shared_ptr<MeasuredFiles> measured = std::make_shared<MeasuredFiles>());

  [[nodiscard]] playback::OpenResult OpenFile(const std::string& path) override;
  [[nodiscard]] playback::OpenResult OpenHeldFile(const store::HeldFile& held) override;
  void CloseFile() override;
  int OpenStatus() const override { return openStatus_; }

  playback::SampleCount TotalSamples() const override { return figures_.totalSamples; }
  /// Whole milliseconds; the fraction is dropped.
  std::int64_t LengthMilliseconds() const override;
  int ChannelCount() const override { return figures_.channels; }
  int SampleRate() const override { return figures_.samplesPerSecond; }

  /// At most some four million samples come at once.
  playback::SampleArray ReadArray(playback::SampleCount samples) override;
  bool ReadFailed() const override { return readFailed_; }
  playback::SampleCount SeekSample(playback::SampleCount target) override;

 private:
  /// Runs what opens the file at a path, with nothing open before, and with nothing open behind
  /// when it fails.
  playback::OpenResult OpenBy(const std::function<playback::OpenResult()>& open,
                              const std::string& path);
  playback::OpenResult OpenAndMeasure(const std::string& path);
  playback::OpenResult MeasureHeld(const store::HeldFile& held);
  /// What the walk has measured is taken as it is.
  playback::OpenResult TakeMeasured(const store::MeasuredSound& measured);
  /// Measures what `file_` has open.
  playback::OpenResult Measure(const std::string& path);
  void ReadInto(playback::SampleArray& block, playback::SampleCount samples);
  bool HaveDecoder();
  void DecodeAhead(std::size_t values);

  const std::shared_ptr<MeasuredFiles> measured_;
  const PlainFile::Accepted accepted_;
  std::string path_;  ///< Empty when no file is open.
  int openStatus_ = 0;
  SoundFigures figures_;
  PlainFile file_;
  bool measuring_ = false;
  std::unique_ptr<Decoder> decoder_;
  bool refused_ = false;  ///< The decoder could not be made.
  /// False once a part of what was measured could not be read.
  bool whole_ = true;
  bool ended_ = false;       ///< The decoder has nothing behind `decoded_`.
  bool seekFailed_ = false;  ///< The decoder does not stand where it should.
  bool readFailed_ = false;
  playback::SampleCount position_ = 0;
  std::vector<float> decoded_;  ///< From the read position on.
};

}  // namespace tavlo::platform
