#include "remote/far_hand.h"

#include <algorithm>
#include <utility>

#include "forms/control_groups.h"

namespace tavlo::remote {
namespace {

using forms::By;

}  // namespace

FarHand::FarHand(window::MainWindow& window, playback::Transport& transport)
    : form_(window.Form()), transport_(transport), window_(window) {
  transport_.OnRunBegins = [this] { NoteRun(); };
}

FarHand::~FarHand() {
  transport_.OnRunBegins = [] {};
}

void FarHand::Press(AfarAction action) {
  Hold& hold = holds_[IndexOf(action)];
  if (std::exchange(hold.down, true)) return;
  switch (action) {
    case AfarAction::PlayStop:
      return PlayOrStop();
    case AfarAction::PlayHeld:
      return PressHeld(hold, form_.cmdPlay);
    case AfarAction::RewindHeld:
      return PressHeld(hold, form_.cmdRewind);
    case AfarAction::ForwardHeld:
      return PressHeld(hold, form_.cmdForward);
    case AfarAction::ToBeginning:
      return form_.cmdSkipBeg.Press(By::Hand);
    case AfarAction::ToEnd:
      return form_.cmdSkipEnd.Press(By::Hand);
    case AfarAction::Slower:
      return SetSpeedOffset(form_.Slider1.Value - form_.Slider1.Bounds.smallStep);
    case AfarAction::Faster:
      return SetSpeedOffset(form_.Slider1.Value + form_.Slider1.Bounds.smallStep);
    case AfarAction::NormalSpeed:
      return form_.cmdNormalSpeed.Press(By::Hand);
    case AfarAction::Complete:
      return form_.cmdComplete.Press(By::Hand);
    case AfarAction::Save:
      return form_.cmdSave.Press(By::Hand);
    case AfarAction::Skip:
      return form_.cmdSkip.Press(By::Hand);
  }
}

void FarHand::PressHeld(Hold& hold, forms::Command& key) {
  Hold* const before = std::exchange(pressing_, &hold);
  key.Press(By::Hand);
  pressing_ = before;
  // It may have been let go under a box of its own press.
  if (!hold.down) StopWhatItBegan(hold);
}

void FarHand::NoteRun() {
  // Under a box no key is pressed: what begins there is a foot's.
  if (pressing_ && !form_.frmMain.EventLoop().MessageBoxOpen()) {
    pressing_->began = transport_.RunUnderWay();
  }
}

void FarHand::Release(AfarAction action) {
  Hold& hold = holds_[IndexOf(action)];
  if (std::exchange(hold.down, false)) StopWhatItBegan(hold);
}

void FarHand::StopWhatItBegan(Hold& hold) {
  const auto began = std::exchange(hold.began, std::nullopt);
  if (began && transport_.RunUnderWay() == began) transport_.StopCommand();
}

void FarHand::LetGo() {
  for (const AfarActionName& name : kAfarActions) Release(name.action);
}

bool FarHand::ReleaseStops() const {
  const auto now = transport_.RunUnderWay();
  return now && std::ranges::any_of(holds_, [&](const Hold& hold) { return hold.began == now; });
}

void FarHand::Play() { form_.cmdPlay.Press(By::Hand); }

void FarHand::Stop() {
  if (!form_.DeckRuns) return;
  forms::Command& key = form_.cmdStop.Visible ? form_.cmdStop : form_.cmdImportCompleteSnipetStop;
  key.Press(By::Hand);
}

void FarHand::PlayOrStop() {
  const bool previews = form_.DeckRuns && !InWork();
  if (form_.DeckRuns && !(previews && form_.cmdPlay.Enabled)) return Stop();
  Play();
}

void FarHand::Jump(forms::Command& windKey) {
  Hold tap{.down = false};
  PressHeld(tap, windKey);
}

void FarHand::SetSpeedOffset(int percent) { Drag(form_.Slider1, percent); }

void FarHand::SetVolume(int value) { Drag(form_.sldVol, value); }

void FarHand::Drag(forms::Range& slider, int value) {
  if (!slider.Reachable() || forms::SliderIsHeld(form_)) return;
  // One that is let go while a document is moved would leave the display frozen.
  if (!window_.guards.TransportMayAct()) return;
  slider.Press();
  slider.Change(slider.Bounds.Nearest(value));
  slider.Release();
}

}  // namespace tavlo::remote
