#pragma once

#include <pulse/context.h>
#include <pulse/subscribe.h>

#include <string>
#include <vector>

#include "base/loop.h"
#include "platform/mixer/pulse_mainloop.h"
#include "platform/mixer/pulse_source.h"
#include "platform/wake/descriptor_waits.h"
#include "playback/source_mixer.h"

namespace tavlo::platform {

/// The mixer of PulseAudio, which PipeWire's server speaks too. It keeps its own picture of what
/// the server has and brings it up to date as the server tells of changes, so every question is
/// answered at once; a server that does not answer, or is not there, delays nothing. It has no
/// thread, and while the server tells nothing it does nothing.
class PulseMixer : public playback::SourceMixer {
 public:
  /// How long the server is left alone after news, since one change commonly follows another.
  /// Shorter costs questions while a slider is dragged.
  static constexpr int kGatherMilliseconds = 50;
  /// How often a server is looked for that is not there.
  static constexpr int kRetryMilliseconds = 3000;

  /// Both, which are commonly one object, must outlive the mixer.
  PulseMixer(base::Loop& loop, DescriptorWaits& waits);
  ~PulseMixer() override;
  PulseMixer(const PulseMixer&) = delete;
  PulseMixer& operator=(const PulseMixer&) = delete;

  void SelectDevice(int index, const std::string& name) override;
  int SourceCount() const override { return static_cast<int>(listed_.size()); }
  std::vector<std::string> DevicesNow() const override { return world_.OutputNames(); }
  void SelectSource(int index) override { selected_ = index; }
  std::string SourceName() const override;
  bool SourceHasVolume() const override;
  int SourceVolume() const override;
  bool SourceHasBalance() const override;
  int SourceBalance() const override;
  bool SourceHasMute() const override { return Selected() != nullptr; }
  bool SourceMute() const override;
  int SourceHasAdvanced() const override { return -1; }
  void SetSourceVolume(int volume) override;
  void SetSourceBalance(int balance) override;
  void SetSourceMute(bool mute) override;

 private:
  void Connect();
  void Disconnect();
  void Follow();
  void FollowConnection();
  void AskWhatChanged();
  void Ask();
  /// Counts an answer that is to come; an operation that could not begin has none.
  void Expect(pa_operation* operation, int& due);
  void TakeAnswer();
  void Adopt(PulseWorld world);
  const PulseSource* Selected() const;
  PulseSource* Selected();
  void WriteVolume(const PulseSource& source);
  void WriteMute(const PulseSource& source);
  void Remember(const PulseSource& source);

  template <typename Info>
  static void OnListed(pa_context* context, const Info* info, int end, void* self);
  static void OnServer(pa_context* context, const pa_server_info* info, void* self);
  static void OnEvent(pa_context* context, pa_subscription_event_type_t type, std::uint32_t index,
                      void* self);
  static void OnWritten(pa_context* context, int success, void* self);

  base::Timer retry_;
  base::Timer gather_;  ///< Runs from news to the question what it is.
  PulseMainloop mainloop_;
  pa_context* context_ = nullptr;
  bool ready_ = false;

  PulseWorld world_;     ///< What the server has, with what was written since.
  PulseWorld arriving_;  ///< The answers so far.
  int answersDue_ = 0;
  int writesDue_ = 0;
  bool outOfDate_ = false;  ///< Something has changed since the last question.
  bool overtaken_ = false;  ///< Something was written since; the answer may not know it yet.
  bool changed_ = false;    ///< OnChange is due.

  std::vector<PulseSource> listed_;
  int selected_ = -1;
};

}  // namespace tavlo::platform
