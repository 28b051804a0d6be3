#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/timer_queue.h"
#include "platform/beside/side_thread.h"
#include "platform/sound/queue_player.h"
#include "playback/audio_objects.h"

namespace tavlo::platform {

/// Plays prompts as a second voice of the document's player. A prompt is read and decoded when it
/// is played, beside the loop, and sounds as soon as it has come; one that comes late is a silence.
/// What is so short that a wind asks for it again and again is kept, so a tone that is replaced on
/// the disk sounds anew after the next start.
class PromptVoice : public playback::PromptMediaControl {
 public:
  /// What a prompt is cut to: a document that was put in its place must not be read whole.
  static constexpr int kLongestSeconds = 30;
  /// Up to this length a stretch of a file is kept once it is decoded, and so many at most.
  static constexpr int kKeptMilliseconds = 500;
  static constexpr std::size_t kMaxKept = 8;
  /// What comes later than this after it was asked for confirms nothing any more.
  static constexpr base::Duration kInTime = std::chrono::seconds{1};

  /// `decoder` is used by what `reading` does and by nobody else. The others must outlive this.
  PromptVoice(base::Loop& loop, QueuePlayer& player, std::shared_ptr<playback::AudioFile> decoder,
              SideWork& reading);

  void SetDeviceType(std::string_view type) override;
  void SetFileName(const std::string& path) override;
  void SetFrom(std::int64_t milliseconds) override;
  void SetTo(std::int64_t milliseconds) override;
  bool Open() override;
  bool Play() override;
  void Stop() override;
  void Close() override;

 private:
  /// A stretch of a file, in milliseconds.
  struct Stretch {
    std::string path;
    std::int64_t from = 0;
    std::int64_t to = 0;
    bool operator==(const Stretch&) const = default;
  };
  struct Clip {
    Stretch stretch;
    playback::SampleArray sound;
    int samplesPerSecond = 0;
  };
  struct Reading;

  static std::optional<Clip> Decode(playback::AudioFile& decoder, const Stretch& stretch);
  const Clip* FindKept() const;
  void Read();
  void LookForClip();
  bool Sound();
  void ForgetReading();

  base::Loop& loop_;
  QueuePlayer& player_;
  const std::shared_ptr<playback::AudioFile> decoder_;
  SideWork& work_;
  std::string deviceType_;
  Stretch stretch_;
  bool open_ = false;  ///< Play may be told.
  std::vector<Clip> kept_;
  /// What Play has asked for and what has not come yet; null when nothing is on its way.
  std::shared_ptr<Reading> reading_;
  base::MonotonicTime latest_;
  base::Timer arrival_;
};

}  // namespace tavlo::platform
