#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sound/queue_player.h"
#include "playback/audio_objects.h"

namespace tavlo::platform {

/// Plays prompts as a second voice of the document's player. A prompt is decoded when it is played,
/// on the loop's thread; what is so short that a wind asks for it again and again is kept, so a
/// tone that is replaced on the disk sounds anew after the next start.
class PromptVoice : public playback::PromptMediaControl {
 public:
  /// What a prompt is cut to: a document that was put in its place must not be read whole.
  static constexpr int kLongestSeconds = 30;
  /// Up to this length a stretch of a file is kept once it is decoded, and so many at most.
  static constexpr int kKeptMilliseconds = 500;
  static constexpr std::size_t kMaxKept = 8;

  /// `decoder` is this voice's alone. Both must outlive it.
  PromptVoice(QueuePlayer& player, playback::AudioFile& decoder);

  void SetDeviceType(std::string_view type) override;
  void SetFileName(const std::string& path) override;
  void SetFrom(std::int64_t milliseconds) override;
  void SetTo(std::int64_t milliseconds) override;
  bool Open() override;
  bool Play() override;
  void Stop() override;
  void Close() override;

 private:
  /// A decoded stretch of a file.
  struct Clip {
    std::string path;
    std::int64_t from = 0;
    std::int64_t to = 0;
    playback::SampleArray sound;
    int samplesPerSecond = 0;
  };

  const Clip* FindKept() const;
  bool OpenFile();
  std::optional<Clip> Decode();

  QueuePlayer& player_;
  playback::AudioFile& decoder_;
  std::string deviceType_;
  std::string path_;
  std::int64_t from_ = 0;
  std::int64_t to_ = 0;
  bool open_ = false;         ///< Play may be told.
  bool decoderOpen_ = false;  ///< The decoder holds the file; a kept clip does without.
  std::vector<Clip> kept_;
};

}  // namespace tavlo::platform
