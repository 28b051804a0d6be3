#pragma once

#include <deque>
#include <optional>
#include <string>

#include "base/loop.h"
#include "playback/playback.h"
#include "playback/position_display.h"
#include "remote/far_hand.h"
#include "remote/media_bus.h"
#include "window/main_window.h"

namespace tavlo::remote {

/// The deck as a media player of the desktop. What it tells is what the windows show of the
/// document in work or selected; what it is asked for, a hand at another window does (`FarHand`).
class MediaPlayer final : public MediaSource {
 public:
  /// All of them must outlive it.
  struct Parts {
    base::Loop& loop;
    window::MainWindow& window;
    const playback::Playback& playback;
    playback::PositionDisplay& positionDisplay;
    FarHand& hand;
  };
  explicit MediaPlayer(const Parts& parts);
  virtual ~MediaPlayer() = default;

  /// Commands that may wait. Nobody presses as fast by hand; what comes beyond them is dropped.
  static constexpr std::size_t kMostWaiting = 32;
  /// From one command to the next. Each may write a setting, so a caller that never rests must not
  /// be followed at its own pace; nobody notices it behind the first one.
  static constexpr base::Duration kBetweenCommands = std::chrono::milliseconds{20};
  /// A move of the position by less than this beside playing on is none.
  static constexpr Microseconds kLeastJump = 200'000;

  /// Runs the commands that wait, one at each tick.
  base::Timer tmrMediaCommands;

  MediaState State() override;
  Microseconds Position() const override;
  bool TakeJump() override;
  void Take(const MediaCommand& command) override;
  /// Forgets what waits and takes nothing more.
  void End();

 private:
  /// Where the position was when it was looked at, and how fast it moved.
  struct Step {
    Microseconds position = 0;
    base::MonotonicTime at;
    double rate = 0;  ///< 0 while it stands.
  };

  bool SaysNothing() const;
  bool InWork() const { return playback_.document.IsInWork(); }
  bool HasDocument() const;
  PlaybackStatus Status() const;
  double Rate() const;
  void Describe(MediaState& state);
  std::uint64_t TrackNumber();
  Microseconds Length() const;
  Step StepNow() const;
  /// Whether playing on, at whatever speed it may have been, does not lead from here to there.
  bool IsJump(const Step& from, const Step& to) const;

  void RunNext();
  void Run(const MediaCommand& command);
  void Seek(Microseconds target);
  void SetRate(double rate);
  void SetVolume(double volume);
  void Raise();

  base::Loop& loop_;
  window::MainWindow& window_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  const playback::Playback& playback_;
  playback::PositionDisplay& positionDisplay_;
  FarHand& hand_;
  std::deque<MediaCommand> waiting_;
  bool ended_ = false;
  std::uint64_t track_ = 0;
  std::string trackPath_;  ///< Of the document that has the number.
  std::optional<Step> lastStep_;
  double rateBefore_ = 1;  ///< What is queued ahead of the ear may still play at it.
};

}  // namespace tavlo::remote
