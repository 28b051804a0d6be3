#include "remote/media_player.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace tavlo::remote {
namespace {

constexpr double kMicrosecondsInASecond = 1e6;

// The panels of the status bar.
constexpr std::size_t kPriorityPanel = 0;
constexpr std::size_t kAuthorPanel = 2;
constexpr std::size_t kDepartmentPanel = 3;
constexpr std::size_t kWorkTypePanel = 4;
constexpr std::size_t kSubjectPanel = 5;
constexpr std::size_t kDatePanel = 6;

/// Subject, department, work type, date and priority, as the status bar has them.
std::string Title(const std::vector<std::string>& panels) {
  std::string title = panels[kSubjectPanel];
  for (const std::size_t panel : {kDepartmentPanel, kWorkTypePanel, kDatePanel}) {
    title += ", " + panels[panel];
  }
  return panels[kPriorityPanel].empty() ? title : title + ", priority";
}

/// The sum, cut to what the type holds.
Microseconds Sum(Microseconds a, Microseconds b) {
  constexpr auto kMost = std::numeric_limits<Microseconds>::max();
  constexpr auto kLeast = std::numeric_limits<Microseconds>::min();
  if (b > 0 && a > kMost - b) return kMost;
  if (b < 0 && a < kLeast - b) return kLeast;
  return a + b;
}

bool IsSlider(MediaCommand::What what) {
  return what == MediaCommand::What::SetRate || what == MediaCommand::What::SetVolume;
}

}  // namespace

MediaPlayer::MediaPlayer(const Parts& parts)
    : tmrMediaCommands(parts.loop, "tmrMediaCommands", kBetweenCommands),
      loop_(parts.loop),
      window_(parts.window),
      form_(parts.window.Form()),
      config_(parts.window.Config()),
      playback_(parts.playback),
      positionDisplay_(parts.positionDisplay),
      hand_(parts.hand) {
  tmrMediaCommands.OnTick = [this] { RunNext(); };
}

bool MediaPlayer::SaysNothing() const { return config_.txtBusSaysNothing.Value.Get() == "Y"; }

bool MediaPlayer::HasDocument() const {
  // Documents of the other lists are only listened to.
  return InWork() || form_.cmdPlay.Enabled;
}

PlaybackStatus MediaPlayer::Status() const {
  if (!InWork()) return PlaybackStatus::Stopped;
  return playback_.engine.IsPlaying ? PlaybackStatus::Playing : PlaybackStatus::Paused;
}

double MediaPlayer::Rate() const { return playback_.engine.PlaySpeedPercent / 100.0; }

MediaState MediaPlayer::State() {
  MediaState state;
  state.status = Status();
  state.rate = std::clamp(Rate(), kSlowestRate, kFastestRate);
  state.volume = static_cast<double>(form_.sldVol.Value) / form_.sldVol.Bounds.maximum;
  const bool hasDocument = HasDocument();
  state.canPlay = hasDocument && form_.cmdPlay.Reachable();
  state.canPause = state.canPlay;
  state.canGoNext = hasDocument && form_.cmdForward.Reachable();
  state.canGoPrevious = hasDocument && form_.cmdRewind.Reachable();
  // What is chosen next is another one, even when it is the same again.
  if (!hasDocument) trackPath_.clear();
  if (hasDocument && !SaysNothing()) {
    state.canSeek = InWork() && form_.slPosition.Reachable();
    Describe(state);
  }
  return state;
}

void MediaPlayer::Describe(MediaState& state) {
  state.track = TrackNumber();
  state.length = Length();
  const std::vector<std::string>& panels = form_.StatusBar1.Panels.Get();
  if (panels.size() <= kDatePanel) return;
  state.artist = panels[kAuthorPanel];
  state.title = Title(panels);
}

std::uint64_t MediaPlayer::TrackNumber() {
  const std::string& path = playback_.document.CurrentDocumentPath;
  if (track_ == 0 || path != trackPath_) ++track_;
  trackPath_ = path;
  return track_;
}

Microseconds MediaPlayer::Length() const {
  const playback::DocumentInWork& document = playback_.document;
  if (!document.DocumentPrimed || !playback_.engine.HoldsDocument()) return 0;
  return playback_.engine.Player().SamplesToMilliseconds(document.FileLength) * 1000;
}

Microseconds MediaPlayer::Position() const {
  if (!InWork() || SaysNothing()) return 0;
  const double sample = playback_.document.CurrentSamplePosition;
  return playback_.engine.Player().SamplesToMilliseconds(sample) * 1000;
}

MediaPlayer::Step MediaPlayer::StepNow() const {
  const bool plays = Status() == PlaybackStatus::Playing;
  return {.position = Position(), .at = loop_.Now(), .rate = plays ? Rate() : 0};
}

bool MediaPlayer::TakeJump() {
  const Step now = StepNow();
  const Step last = lastStep_.value_or(now);
  // While it plays the position comes in steps. Between two of them nothing is to be said.
  const bool sameStep = now.rate != 0 && last.rate != 0 && now.position == last.position;
  if (last.rate != 0 && now.rate != last.rate) rateBefore_ = last.rate;
  lastStep_ = sameStep ? Step{last.position, last.at, now.rate} : now;
  return !sameStep && IsJump(last, now);
}

bool MediaPlayer::IsJump(const Step& from, const Step& to) const {
  // It may have stopped anywhere on its way, but what stood until now has not moved by itself.
  double slowest = to.rate == 0 ? 0 : from.rate;
  double fastest = from.rate;
  if (from.rate != 0 && to.rate != 0) {
    slowest = std::min({from.rate, to.rate, rateBefore_});
    fastest = std::max({from.rate, to.rate, rateBefore_});
  }
  const double passed =
      std::chrono::duration<double>(to.at - from.at).count() * kMicrosecondsInASecond;
  const auto moved = static_cast<double>(to.position - from.position);
  return moved <= slowest * passed - kLeastJump || moved >= fastest * passed + kLeastJump;
}

void MediaPlayer::Take(const MediaCommand& command) {
  if (ended_) return;
  // A slider that is drawn on tells every place that it passes; the last one counts.
  const bool goesOn =
      !waiting_.empty() && IsSlider(command.what) && waiting_.back().what == command.what;
  if (goesOn) {
    waiting_.back() = command;
  } else if (waiting_.size() < kMostWaiting) {
    waiting_.push_back(command);
  }
  if (!tmrMediaCommands.Enabled()) tmrMediaCommands.StartDue();
}

void MediaPlayer::End() {
  ended_ = true;
  waiting_.clear();
  tmrMediaCommands.Stop();
}

void MediaPlayer::RunNext() {
  tmrMediaCommands.Stop();
  if (waiting_.empty()) return;
  const MediaCommand command = waiting_.front();
  waiting_.pop_front();
  tmrMediaCommands.Start();
  Run(command);
}

void MediaPlayer::Run(const MediaCommand& command) {
  using What = MediaCommand::What;
  switch (command.what) {
    case What::Play:
      if (Status() != PlaybackStatus::Playing) hand_.Play();
      break;
    case What::Pause:
    case What::Stop:
      hand_.Stop();
      break;
    case What::PlayPause:
      hand_.PlayOrStop();
      break;
    case What::Next:
      hand_.Jump(form_.cmdForward);
      break;
    case What::Previous:
      hand_.Jump(form_.cmdRewind);
      break;
    case What::Seek:
      Seek(std::max(Sum(Position(), command.time), Microseconds{0}));
      break;
    case What::SetPosition:
      if (command.track == State().track && command.time >= 0 && command.time <= Length()) {
        Seek(command.time);
      }
      break;
    case What::SetRate:
      SetRate(command.number);
      break;
    case What::SetVolume:
      SetVolume(command.number);
      break;
    case What::Raise:
      Raise();
      break;
    case What::Quit:
      form_.frmMain.CloseRequest();
      break;
  }
}

void MediaPlayer::Seek(Microseconds target) {
  if (!State().canSeek || Length() == 0) return;
  const double share = static_cast<double>(target) / static_cast<double>(Length());
  positionDisplay_.SeekTo(std::min(share, 1.0) * playback_.document.FileLength);
}

void MediaPlayer::SetRate(double rate) {
  if (std::isnan(rate)) return;
  if (rate == 0) return hand_.Stop();
  const double percent = std::clamp(rate, kSlowestRate, kFastestRate) * 100;
  hand_.SetSpeedOffset(static_cast<int>(std::lround(percent)) - 100);
}

void MediaPlayer::SetVolume(double volume) {
  if (std::isnan(volume)) return;
  const double share = std::clamp(volume, 0.0, 1.0);
  hand_.SetVolume(static_cast<int>(std::lround(share * form_.sldVol.Bounds.maximum)));
}

void MediaPlayer::Raise() {
  // A message box stands in front by itself.
  if (loop_.MessageBoxOpen()) return;
  if (config_.frmConfiguration.Visible) return config_.frmConfiguration.ComeToFront();
  forms::Window& window = form_.frmMain;
  if (!window.Visible) return;
  if (window_.MiniPlayerShows()) {
    window_.RestoreMinimized(/*atStoredPlace=*/true);
  } else {
    window.WindowShape = forms::Shape::Normal;
  }
  window.ComeToFront();
}

}  // namespace tavlo::remote
