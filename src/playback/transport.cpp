#include "playback/transport.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/text.h"
#include "forms/control_groups.h"

namespace tavlo::playback {
namespace {

using base::Duration;
using base::operator""ms;

constexpr Duration kFirstWindInterval = 1000ms;
constexpr Duration kFastestWindInterval = 100ms;

/// A held wind accelerates: the interval after so many jumps. Past the table it is the fastest.
struct Cadence {
  int lastTick;
  Duration interval;
};
constexpr std::array kCadences = {
    Cadence{2, 1000ms},
    Cadence{6, 750ms},
    Cadence{11, 600ms},
    Cadence{17, 300ms},
};

Duration WindInterval(int tick) {
  for (const Cadence& cadence : kCadences) {
    if (tick >= 1 && tick <= cadence.lastTick) return cadence.interval;
  }
  return kFastestWindInterval;
}

}  // namespace

Transport::Transport(base::Loop& loop, window::MainWindow& window, DocumentInWork& document,
                     AudioEngine& engine, Voice& voice)
    : tmrRewindForward(loop, "tmrRewindForward", kFirstWindInterval),
      loop_(loop),
      form_(window.Form()),
      config_(window.Config()),
      window_(window),
      document_(document),
      engine_(engine),
      voice_(voice) {
  tmrRewindForward.OnTick = [this] { WindTick(); };
  engine_.OnStartPlay = [this] { OnRunBegins(); };
  WireButtons();
}

void Transport::WireButtons() {
  // The keyboard always goes away, so that neither a pedal nor a key acts on a button left behind.
  form_.cmdPlay.OnPress = [this] {
    window_.FocusAway();
    if (!window_.guards.MayPlay()) return;
    window_.PlayRequested = true;
    PlayCommand();
  };
  const auto wire = [this](forms::Command& button, void (Transport::*command)()) {
    button.OnPress = [this, command] {
      if (window_.guards.TransportMayAct()) (this->*command)();
      window_.FocusAway();
    };
  };
  wire(form_.cmdStop, &Transport::StopCommand);
  wire(form_.cmdRewind, &Transport::RewindCommand);
  wire(form_.cmdForward, &Transport::ForwardCommand);
  wire(form_.cmdSkipBeg, &Transport::SkipToBeginningCommand);
  wire(form_.cmdSkipEnd, &Transport::SkipToEndCommand);
}

void Transport::PlayCommand() {
  StopWindAndPreview();
  if (engine_.IsPlaying) engine_.StopPlay();
  form_.Slider1.Enabled = true;
  form_.slPosition.Enabled = true;
  form_.cmdEQ.Enabled = true;
  form_.cmdNormalSpeed.Enabled = true;
  form_.lblFilePositionHMS.Enabled = true;
  const bool inWork = document_.DocumentPrimed && document_.IsInWork();
  if (document_.DocumentPrimed && engine_.HoldsDocument()) {
    ContinueFromWhereTheEarWas();
  } else if (inWork) {
    // A device that failed had the file closed; the place in the document is still known.
    if (!PrimeOrExplain()) return;
    ContinueFromWhereTheEarWas();
  } else if (!PrimeAtTheBeginning()) {
    return;
  }
  voice_.StopPrompt();
  engine_.ApplyDocumentVolume();
  if (engine_.IsPlaying) engine_.StopPlay();
  engine_.StartPlay();
  ShowAsPlaying();
  window_.EnterMiniPlayer();
}

void Transport::ContinueFromWhereTheEarWas() {
  // With Skip disabled the document is not in work yet: this is its first Play, and a preview
  // before it does not cancel the saved position.
  if (document_.SavedPosition != 0 && !document_.IsInWork()) {
    document_.CurrentSamplePosition = SavedPositionInFile();
  }
  const double seconds = config_.sliderABS.Value / 10.0;
  document_.CurrentSamplePosition =
      std::max(document_.CurrentSamplePosition - seconds * document_.SamplesPerSecond, 0.0);
}

bool Transport::PrimeAtTheBeginning() {
  form_.slPosition.Value = 0;
  form_.cmdImportCompleteSnipetStop.Visible = false;
  if (!PrimeOrExplain()) return false;
  document_.DocumentPrimed = true;
  document_.CurrentSamplePosition = SavedPositionInFile();
  return true;
}

bool Transport::PrimeOrExplain() {
  const Primed primed = engine_.Prime();
  Explain(primed);
  return primed == Primed::Yes;
}

void Transport::Explain(Primed primed) {
  switch (primed) {
    case Primed::Yes:
    case Primed::Refused:
      return;
    case Primed::Unplayable:
      loop_.Show({.title = "Tavlo Deck - Unrecognized Audio Format",
                  .text = "This file can not be played.\n"
                          "You may press Complete to remove it from the queue.",
                  .icon = base::Icon::Information});
      break;
    case Primed::Empty:
      voice_.PlayPrompt("EmptyDocErrMayComplete");
      break;
    case Primed::OutOfReach:
      ExplainOutOfReach();
      return;
  }
  // A pedal works under the box, too, and may have begun what can be played by now.
  if (!engine_.HoldsDocument()) window_.OfferComplete();
}

void Transport::ExplainOutOfReach() {
  // A document in work keeps its keys: its share may be back at the next Play.
  if (!document_.IsInWork()) {
    form_.cmdPlay.Enabled = false;
    form_.cmdComplete.Enabled = false;
  }
  SayOutOfReach();
}

void Transport::SayOutOfReach() {
  loop_.Show({.title = "Tavlo Deck - File Not Found",
              .text = "This file is no longer there, or its folder can not be reached.\n"
                      "Press Refresh to see what waits.",
              .icon = base::Icon::Information});
}

double Transport::SavedPositionInFile() const {
  return std::min(static_cast<double>(document_.SavedPosition), document_.FileLength);
}

void Transport::ShowAsPlaying() {
  form_.listViewInQueue.Enabled = false;
  form_.cmdUpdateFileList.Enabled = false;
  SetEnabled(forms::Menus(form_), false);
  form_.cmdSkip.Enabled = true;
  form_.cmdSave.Enabled = true;
  SetEnabled(forms::MovingKeys(form_), true);
  form_.cmdStop.Enabled = true;
  form_.cmdImportCompleteSnipetStop.Visible = false;
  form_.cmdStop.Visible = true;
}

void Transport::StopCommand() {
  StopWindAndPreview();
  engine_.StopPlay();
}

void Transport::StopWindAndPreview() {
  engine_.tmrPlaySnipet.Stop();
  StopWind();
}

double Transport::WindSeconds() const { return config_.txtWindIncrement.Number(); }

void Transport::Jump(double seconds) {
  document_.CurrentSamplePosition += document_.SamplesPerSecond * seconds;
}

void Transport::RewindCommand() {
  engine_.tmrPlaySnipet.Stop();
  engine_.StopPlay();
  WindTickCount = 0;
  const bool wasAtTheEnd = document_.CurrentSamplePosition == document_.FileLength;
  Jump(-WindSeconds());
  document_.CurrentSamplePosition =
      std::clamp(document_.CurrentSamplePosition, 0.0, document_.FileLength);
  ShowPosition();
  if (form_.slPosition.Value == 100) {
    form_.cmdSkip.Enabled = true;
    // The slider rounds: half a percent of a long document may be minutes that were not heard.
    if (wasAtTheEnd) window_.OfferComplete();
    form_.cmdSave.Enabled = true;
  }
  if (document_.CurrentSamplePosition == 0) {
    StopWind();
    ReachBeginning();
  } else {
    voice_.PlayPrompt("RewindTone");
    StartWind(Wind::Rewind);
  }
}

void Transport::ForwardCommand() {
  engine_.tmrPlaySnipet.Stop();
  engine_.StopPlay();
  WindTickCount = 0;
  Jump(WindSeconds());
  document_.CurrentSamplePosition =
      std::clamp(document_.CurrentSamplePosition, 0.0, document_.FileLength);
  ShowPosition();
  if (document_.CurrentSamplePosition == document_.FileLength) {
    StopWind();
    ReachEnd();
  } else {
    voice_.PlayPrompt("ForwardTone");
    StartWind(Wind::Forward);
  }
}

void Transport::StartWind(Wind direction) {
  WindDirection = direction;
  ++startsOfWinds_;
  form_.DeckRuns = true;
  form_.DeckWinds = direction == Wind::Rewind ? forms::Winding::Back : forms::Winding::On;
  tmrRewindForward.SetInterval(kFirstWindInterval);
  tmrRewindForward.Start();
  OnRunBegins();
}

std::optional<RunNumber> Transport::RunUnderWay() const {
  if (!engine_.IsPlaying && WindDirection == Wind::None) return std::nullopt;
  // Each start makes the sum larger.
  return engine_.StartsOfPlay + startsOfWinds_;
}

void Transport::StopWind() {
  tmrRewindForward.Stop();
  WindDirection = Wind::None;
  form_.DeckRuns = engine_.IsPlaying;
  form_.DeckWinds = forms::Winding::No;
}

void Transport::WindTick() {
  tmrRewindForward.Stop();
  ++WindTickCount;
  const bool finished = WindDirection == Wind::Rewind ? WindBack() : WindOn();
  if (finished) return;
  ShowPosition();
  const bool accelerates = config_.txtAccelerateWindIncrement.Value.Get() == "Y";
  tmrRewindForward.SetInterval(accelerates ? WindInterval(WindTickCount) : kFirstWindInterval);
  tmrRewindForward.Start();
}

bool Transport::WindBack() {
  Jump(-WindSeconds());
  // A jump that lands exactly on an end is not there yet: the next jump declares it.
  if (document_.CurrentSamplePosition < 0) {
    StopWind();
    ReachBeginning();
    return true;
  }
  // A stored distance may be negative; then the jump goes the other way and must stay within that
  // end.
  document_.CurrentSamplePosition = std::min(document_.CurrentSamplePosition, document_.FileLength);
  if (tmrRewindForward.Interval() != kFastestWindInterval) voice_.PlayPrompt("RewindTone");
  return false;
}

bool Transport::WindOn() {
  Jump(WindSeconds());
  if (document_.CurrentSamplePosition > document_.FileLength) {
    StopWind();
    ReachEnd();
    return true;
  }
  document_.CurrentSamplePosition = std::max(document_.CurrentSamplePosition, 0.0);
  if (tmrRewindForward.Interval() != kFastestWindInterval) voice_.PlayPrompt("ForwardTone");
  return false;
}

void Transport::SkipToBeginningCommand() {
  StopWindAndPreview();
  engine_.StopPlay();
  LastForwardPressTime = 0;
  LastRewindPressTime = 0;
  ReachBeginning();
}

void Transport::SkipToEndCommand() {
  StopWindAndPreview();
  engine_.StopPlay();
  LastForwardPressTime = 0;
  LastRewindPressTime = 0;
  ReachEnd();
}

void Transport::ReachBeginning() {
  document_.CurrentSamplePosition = 0;
  form_.lblFilePositionHMS.Value = "00:00:00";
  form_.slPosition.Value = 0;
  voice_.PlayPrompt("RewindEnd");
}

void Transport::ReachEnd() {
  document_.CurrentSamplePosition = document_.FileLength;
  form_.lblFilePositionHMS.Value = form_.lblFileLengthHMS.Value;
  form_.slPosition.Value = 100;
  voice_.PlayPrompt("ForwardEnd");
  window_.OfferComplete();
  window_.RestoreMinimized(/*atStoredPlace=*/true);
}

void Transport::ShowPosition() {
  const double position = document_.CurrentSamplePosition;
  if (document_.FileLength > 0) {
    form_.slPosition.Value =
        static_cast<int>(std::nearbyint(position * 100.0 / document_.FileLength));
  }
  form_.lblFilePositionHMS.Value =
      base::FormatHMS(static_cast<double>(engine_.Player().SamplesToMilliseconds(position)));
}

}  // namespace tavlo::playback
