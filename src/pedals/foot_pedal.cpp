#include "pedals/foot_pedal.h"

#include <cmath>

namespace tavlo::pedals {
namespace {

/// A second press counts strictly between these. The lower bound keeps a bouncing switch from
/// counting as two presses.
constexpr long kDoublePressAfterMilliseconds = 100;
constexpr long kDoublePressBeforeMilliseconds = 500;

void Light(forms::PedalShape& shape, bool down) {
  shape.FillColour = down ? forms::PedalShape::kDown : forms::PedalShape::kUp;
}

}  // namespace

FootPedal::FootPedal(base::Loop& loop, window::MainWindow& window, playback::Transport& transport)
    : loop_(loop),
      form_(window.Form()),
      config_(window.Config()),
      window_(window),
      transport_(transport) {}

void FootPedal::Take(bool left, bool center, bool right) {
  LeftPedalDown = left;
  CenterPedalDown = center;
  RightPedalDown = right;
  Light(config_.ShapeLeftPedal, left);
  Light(config_.ShapeCenterPedal, center);
  Light(config_.ShapeRightPedal, right);
  PedalEvent = Pedal::None;
  if (left) PedalEvent = Pedal::Left;
  if (center) PedalEvent = Pedal::Center;
  if (right) PedalEvent = Pedal::Right;
}

bool FootPedal::MayDispatch() const {
  return (PedalEvent == Pedal::Center && form_.cmdPlay.Enabled) || ReleaseStops();
}

bool FootPedal::ReleaseStops() const { return form_.cmdStop.Enabled; }

void FootPedal::DispatchPedalEvent() {
  switch (PedalEvent) {
    case Pedal::None:
      transport_.StopCommand();
      break;
    case Pedal::Center:
      if (!window_.guards.MayPlay()) break;
      window_.ForgetNotice();
      window_.PlayRequested = true;
      transport_.PlayCommand();
      break;
    case Pedal::Left:
      PressSide(/*isLeft=*/true);
      break;
    case Pedal::Right:
      PressSide(/*isLeft=*/false);
      break;
  }
}

void FootPedal::DispatchNews() {
  if (!MayDispatch()) {
    if (HeldLast() != Pedal::None && !IsDown(LastPedalEvent)) ReleaseWentUnheard = true;
    return;
  }
  if (PedalEvent == HeldLast()) return;
  // A box under the command turns the loop, and another pedal may take the event meanwhile.
  const Pedal dispatched = PedalEvent;
  DispatchPedalEvent();
  LastPedalEvent = dispatched;
  ReleaseWentUnheard = false;
}

bool FootPedal::IsDown(Pedal pedal) const {
  switch (pedal) {
    case Pedal::Left:
      return LeftPedalDown;
    case Pedal::Center:
      return CenterPedalDown;
    case Pedal::Right:
      return RightPedalDown;
    case Pedal::None:
      break;
  }
  return false;
}

void FootPedal::Reset() {
  PedalEvent = Pedal::None;
  LastPedalEvent = Pedal::None;
  ReleaseWentUnheard = false;
  transport_.LastRewindPressTime = 0;
  transport_.LastForwardPressTime = 0;
}

void FootPedal::PressSide(bool isLeft) {
  // A wind would change the position that is being stored.
  if (!window_.guards.TransportMayAct()) return;
  window_.ForgetNotice();
  const bool swapped = config_.txtSwapRewFwdPedals.Value.Get() != "N";
  const bool backwards = isLeft != swapped;
  const bool mayBeDouble = config_.txtSkipBegEnd.Value.Get() != "N";
  // Each pedal has its own time of the last press, whichever direction it winds in.
  double& lastPress = isLeft ? transport_.LastRewindPressTime : transport_.LastForwardPressTime;
  const double now = loop_.WallClock().SecondsSinceMidnight();
  if (mayBeDouble && IsDoublePress(now, lastPress)) {
    backwards ? transport_.SkipToBeginningCommand() : transport_.SkipToEndCommand();
  } else {
    backwards ? transport_.RewindCommand() : transport_.ForwardCommand();
  }
  if (mayBeDouble) lastPress = now;
}

bool FootPedal::IsDoublePress(double now, double last) {
  // No press is on record: in the first moments after midnight the clock itself would look like
  // one.
  if (last == 0) return false;
  const long between = std::lround((now - last) * 1000);
  return between > kDoublePressAfterMilliseconds && between < kDoublePressBeforeMilliseconds;
}

}  // namespace tavlo::pedals
