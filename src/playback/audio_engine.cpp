#include "playback/audio_engine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/text.h"

namespace tavlo::playback {
namespace {

using base::operator""ms;

constexpr std::int64_t kBlockMilliseconds = 500;
constexpr int kBlocksInFlight = 2;
constexpr base::Duration kRetryOwed = 50ms;
/// How long nothing may be heard of a document that plays before the quiet line says why.
constexpr base::Duration kGapToTell = 2000ms;
constexpr const char* kGapNotice =
    "The sound of this document is late. It plays on when its folder answers.";
/// The time label trails by the half second that is queued ahead of the ear.
constexpr double kQueuedAheadMilliseconds = 500.0;
/// A document counts as heard to its end when no more than this is missing of its measured length.
/// Measuring and decoding may differ by some frames of the coding, which are far shorter.
constexpr std::int64_t kMostUnheardMilliseconds = 500;

/// The lowest 40 units of the meter scale are cut off and the rest widened to the bar's 0 to 100.
int MeterValue(double level) {
  return static_cast<int>(std::nearbyint(std::max(level - 40.0, 1.0) / 0.6));
}

void RunWhile(bool so, base::Timer& timer) {
  if (so == timer.Enabled()) return;
  so ? timer.Start() : timer.Stop();
}

}  // namespace

AudioEngine::AudioEngine(base::Loop& loop, window::MainWindow& window, DocumentInWork& document,
                         const AudioObjects& objects, Voice& voice, Equalizer& equalizer,
                         MixerPage& mixerPage)
    : tmrPlaySnipet(loop, "tmrPlaySnipet", 5000ms),
      loop_(loop),
      form_(window.Form()),
      config_(window.Config()),
      window_(window),
      document_(document),
      file_(objects.file),
      transform_(objects.transform),
      player_(objects.player),
      voice_(voice),
      equalizer_(equalizer),
      mixerPage_(mixerPage),
      retryOwed_(loop, "LateBlocks", kRetryOwed, base::TimerKind::Feed),
      tellGap_(loop, "SilentDocument", kGapToTell) {
  file_.OnReady = [this] { LoadOwedBlocks(); };
  retryOwed_.OnTick = [this] { LoadOwedBlocks(); };
  // A hand's next command clears the line, so a gap that goes on is told again.
  tellGap_.OnTick = [this] { window_.Say(kGapNotice); };
  player_.OnEndArrayPlay = [this] { LoadPlayBuffer(); };
  player_.OnRequestOnLoadArray = [this] { LoadPlayBuffer(); };
  player_.OnEndPlay = [this] { HandleEndPlay(); };
  player_.OnTimer = [this](SampleCount samples, double left, double right) {
    HandleTimer(samples, left, right);
  };
}

AudioEngine::~AudioEngine() {
  file_.OnReady = nullptr;
  player_.OnEndArrayPlay = nullptr;
  player_.OnRequestOnLoadArray = nullptr;
  player_.OnEndPlay = nullptr;
  player_.OnTimer = nullptr;
}

void AudioEngine::InitializeNCTcontrol() {
  form_.Slider1.Value = 0;
  PlaySpeedPercent = 100;
  if (player_.DeviceCount() < 1) {
    loop_.Show({.title = "Tavlo Deck - Sound Card",
                .text = "A sound card can not be found",
                .icon = base::Icon::Critical});
    return;
  }
  mixerPage_.ListDevices();
  mixerPage_.SetSrcDevice();
  IsPlaying = false;
  IsPaused = false;
  config_.chkEqEnable.Value = player_.EqualizerEnabled();
}

void AudioEngine::CloseFile() {
  file_.CloseFile();
  holdsDocument_ = false;
  ForgetOwedBlocks();
}

Primed AudioEngine::Prime() {
  holdsDocument_ = false;
  ForgetOwedBlocks();
  const OpenResult result = file_.OpenFile(document_.CurrentDocumentPath);
  if (file_.OpenStatus() < 0) return Primed::Refused;
  if (result != OpenResult::Opened) {
    form_.lblFileLengthHMS.Value = "00:00:00";
    return result == OpenResult::OutOfReach ? Primed::OutOfReach : Primed::Unplayable;
  }
  const std::int64_t milliseconds = file_.LengthMilliseconds();
  document_.FileLength = static_cast<double>(milliseconds);
  FilePositionText = base::FormatHMS(static_cast<double>(milliseconds));
  form_.lblFileLengthHMS.Value = FilePositionText;
  form_.slPosition.Value = 0;
  if (milliseconds <= 0) return Primed::Empty;
  // The division is cut before it is scaled, so that distances count whole samples a millisecond.
  document_.SamplesPerSecond = static_cast<double>(file_.TotalSamples() / milliseconds) * 1000.0;
  document_.FileLength = static_cast<double>(file_.TotalSamples());
  player_.SetOutputFormat(file_.SampleRate(), file_.ChannelCount());
  BufferSampleCount = player_.MillisecondsToSamples(kBlockMilliseconds);
  holdsDocument_ = true;
  return Primed::Yes;
}

void AudioEngine::ApplyDocumentVolume() {
  player_.SetVolume(form_.sldVol.Bounds.Nearest(form_.txtVolume.WholeNumber()));
}

void AudioEngine::StartPlay() {
  if (IsPlaying) StopPlay();
  form_.lblFilePositionHMS.Visible = true;
  form_.lblSpeed.Enabled = true;
  form_.cmdEQ.Enabled = true;
  form_.cmdNormalSpeed.Enabled = true;
  if (file_.TotalSamples() == 0) return;
  PlayStartSample =
      static_cast<double>(BeginRunAt(static_cast<SampleCount>(document_.CurrentSamplePosition)));
  if (!player_.StartOutput()) {
    ShowHardwareFault();
    return;
  }
  if (player_.OpenStatus() < 0) {
    CloseFile();
    return;
  }
  IsPlaying = true;
  ++StartsOfPlay;
  form_.DeckRuns = true;
  OnStartPlay();
  LoadFirstBlocks();
  equalizer_.ApplyStored();
}

void AudioEngine::StopPlay() {
  ForgetOwedBlocks();
  player_.StopOutput();
  // A wind runs the deck too, and goes on when a document is stopped that does not play.
  if (std::exchange(IsPlaying, false)) form_.DeckRuns = false;
  IsPaused = false;
  form_.MeterLeft.Value = 0;
  form_.MeterRight.Value = 0;
}

SampleCount AudioEngine::BeginRunAt(SampleCount target) {
  const SampleCount reached = file_.SeekSample(target);
  transform_.Reset(file_.SampleRate());
  runIsBroken_ = false;
  runIsFresh_ = true;
  ForgetOwedBlocks();
  return reached;
}

void AudioEngine::LoadFirstBlocks() {
  for (int block = 0; block < kBlocksInFlight; ++block) LoadPlayBuffer();
}

void AudioEngine::LoadPlayBuffer() {
  if (!IsPlaying || runIsBroken_) return;
  ++owedBlocks_;
  LoadOwedBlocks();
}

void AudioEngine::LoadOwedBlocks() {
  while (owedBlocks_ > 0 && LoadNextBlock()) --owedBlocks_;
  FollowOwedBlocks();
}

bool AudioEngine::LoadNextBlock() {
  if (runIsBroken_) return true;
  try {
    SampleArray block = file_.ReadArray(BufferSampleCount);
    if (block.late) return false;
    runIsBroken_ = file_.ReadFailed();
    if (!block.values.empty()) QueueBlock(std::move(block));
  } catch (...) {
    runIsBroken_ = true;
  }
  return true;
}

void AudioEngine::QueueBlock(SampleArray block) {
  if (std::exchange(runIsFresh_, false)) PlayStartSample = block.sourceBegin;
  StretchBlock(block);
  player_.QueueArray(std::move(block));
}

void AudioEngine::ForgetOwedBlocks() {
  owedBlocks_ = 0;
  FollowOwedBlocks();
}

void AudioEngine::FollowOwedBlocks() {
  player_.HoldRequestOpen(owedBlocks_ > 0);
  RunWhile(owedBlocks_ > 0, retryOwed_);
  // With all of them owed none is left to be heard.
  const bool gap = owedBlocks_ == kBlocksInFlight;
  if (!gap && tellGap_.Enabled()) window_.SayWhile(false, kGapNotice);
  RunWhile(gap, tellGap_);
}

void AudioEngine::StretchBlock(SampleArray& block) {
  // At 100 percent as at any other speed: the stretcher must see every block to join them.
  const auto speed = static_cast<float>(PlaySpeedPercent);
  if (file_.ChannelCount() != 2) {
    transform_.ChangeSpeed(block, speed);
    return;
  }
  SampleArray left = transform_.SplitLeft(block);
  SampleArray right = transform_.SplitRight(block);
  transform_.ChangeSpeed(left, speed);
  transform_.ChangeSpeed(right, speed);
  block = transform_.JoinChannels(left, right);
}

void AudioEngine::PausePlay() {
  if (!IsPlaying) return;
  if (!IsPaused) {
    IsPaused = true;
    ForgetOwedBlocks();
    // Added behind the stop, whose last timer event still counts from where the run began.
    const auto played = static_cast<double>(player_.PlayedSamples());
    player_.StopOutput();
    PlayStartSample += played;
    return;
  }
  IsPaused = false;
  if (!player_.StartOutput()) return;
  BeginRunAt(static_cast<SampleCount>(PlayStartSample));
  LoadFirstBlocks();
}

void AudioEngine::ContinueFrom(SampleCount target) {
  PlayStartSample = static_cast<double>(BeginRunAt(target));
  LoadFirstBlocks();
  document_.CurrentSamplePosition = PlayStartSample;
}

void AudioEngine::HandleTimer(SampleCount currentSamples, double levelLeft, double levelRight) {
  const auto current = static_cast<double>(currentSamples);
  const double speed = PlaySpeedPercent / 100.0;
  form_.MeterLeft.Value = MeterValue(levelLeft);
  form_.MeterRight.Value = MeterValue(levelRight);

  // The three sums below treat the speed differently. This is intended: the position is exact, the
  // label trails by what is queued, and no rule calculates with the text.
  const auto reached =
      static_cast<double>(player_.SamplesToMilliseconds(current + PlayStartSample));
  FilePositionText = base::NumberText(reached * speed);
  const bool measured = file_.LengthMilliseconds() > 0;
  if (!SliderDragging && measured) {
    const double percent = reached / static_cast<double>(file_.LengthMilliseconds()) * 100.0;
    form_.slPosition.Value = static_cast<int>(std::nearbyint(std::clamp(percent, 0.0, 100.0)));
    document_.CurrentSamplePosition = current + PlayStartSample;
  }
  const auto shown =
      static_cast<double>(player_.SamplesToMilliseconds(speed * current + PlayStartSample));
  form_.lblFilePositionHMS.Value = base::FormatHMS(shown - kQueuedAheadMilliseconds);
}

bool AudioEngine::HeardToItsEnd() const {
  const double heard = PlayStartSample + static_cast<double>(player_.PlayedSamples());
  const auto allowed = static_cast<double>(player_.MillisecondsToSamples(kMostUnheardMilliseconds));
  return !runIsBroken_ && document_.FileLength - heard <= allowed;
}

void AudioEngine::HandleEndPlay() {
  tmrPlaySnipet.Stop();
  StopPlay();
  window_.RestoreMinimized(/*atStoredPlace=*/false);
  if (!HeardToItsEnd()) {
    // All that the position shows stays where the ear was.
    window_.Say("The rest of this document can not be read.");
    return;
  }
  window_.OfferComplete();
  document_.CurrentSamplePosition = document_.FileLength;
  form_.slPosition.Value = 100;
  form_.lblFilePositionHMS.Value = base::FormatHMS(static_cast<double>(file_.LengthMilliseconds()));
  voice_.PlayPrompt("ForwardEnd");
}

void AudioEngine::ShowHardwareFault() {
  // The wording is kept as users know it, the carriage return included.
  loop_.Show({.title = "Tavlo Deck - Audio Hardware",
              .text = "The audio hardware currently selected does not support speed adjusted "
                      "playback of this document\n\n\r"
                      "Please choose a different Audio Hardware selection from the Mixer tab of "
                      "the Configuration menu and then try again",
              .icon = base::Icon::Warning});
  window_.ShowConfiguration();
}

}  // namespace tavlo::playback
