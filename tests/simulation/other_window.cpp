#include "simulation/other_window.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace tavlo::simulation {
namespace {

using base::operator""ms;
using remote::AfarAction;
using remote::KeyWay;
using remote::MediaCommand;

constexpr std::array kKeys{"",         "F4",       "F4",      "F5", "CTRL+F5", "CTRL+SHIFT+F6",
                           "SHIFT+F6", "LOGO+a",   "Pause",   "a",  "space",   "SHIFT+CTRL+F6",
                           "CTRL+",    "XF86Mail", "ALT+Left"};
constexpr std::array kWays{KeyWay::Grabs, KeyWay::Grabs, KeyWay::Portal, KeyWay::PortalMissing,
                           KeyWay::None};
constexpr int kCallsOfAFlood = 300;

AfarAction SomeAction(Chance& chance) { return chance.Pick(remote::kAfarActions).action; }

}  // namespace

OtherWindow::OtherWindow(Desk& desk, Takings& takings, Chance chance, Trace& trace)
    : desk_(desk), takings_(takings), chance_(chance), trace_(trace) {}

void OtherWindow::Act() {
  struct Habit {
    int weight;
    void (OtherWindow::*act)();
  };
  static constexpr std::array kHabits{
      Habit{10, &OtherWindow::PressAKey},  Habit{8, &OtherWindow::ReleaseAKey},
      Habit{6, &OtherWindow::TapAKey},     Habit{8, &OtherWindow::UseTheBus},
      Habit{1, &OtherWindow::Flood},       Habit{2, &OtherWindow::ChangeTheDesktop},
      Habit{1, &OtherWindow::ChangeTheBus}};
  OthersAct();
  (this->*chance_.PickByWeight(kHabits).act)();
}

void OtherWindow::PressAKey() {
  std::vector<AfarAction> held;
  for (const remote::AfarActionName& name : remote::kAfarActions) {
    if (desk_.keys.Holds(name.action) && !desk_.keys.IsDown(name.action)) {
      held.push_back(name.action);
    }
  }
  Down(held.empty() ? SomeAction(chance_) : chance_.Pick(held));
}

void OtherWindow::ReleaseAKey() {
  for (const remote::AfarActionName& name : remote::kAfarActions) {
    if (desk_.keys.IsDown(name.action) && !chance_.OneIn(4)) Up(name.action);
  }
}

void OtherWindow::TapAKey() {
  const AfarAction action = SomeAction(chance_);
  Down(action);
  if (chance_.OneIn(2)) desk_.loop.Advance(std::chrono::milliseconds{chance_.Below(1500)});
  Up(action);
}

void OtherWindow::Down(AfarAction action) {
  if (!desk_.keys.Holds(action) || desk_.keys.IsDown(action)) return;
  Note("presses " + std::string(remote::kAfarActions[remote::IndexOf(action)].id));
  forms::MainForm& main = desk_.Main();
  const int deed = ++deeds_;
  const Run before = RunNow();
  const auto act = [&] { LetBeHeard([&] { desk_.keys.Down(action); }); };
  switch (action) {
    case AfarAction::Complete:
      takings_.Press(main.cmdComplete, act);
      break;
    case AfarAction::Save:
      takings_.Press(main.cmdSave, act);
      break;
    case AfarAction::Skip:
      takings_.Press(main.cmdSkip, act);
      break;
    default:
      act();
  }
  const bool isHeld = action == AfarAction::PlayHeld || action == AfarAction::RewindHeld ||
                      action == AfarAction::ForwardHeld;
  const Run now = RunNow();
  // Where somebody else acted meanwhile, it is not known whose it is.
  const bool isItsOwn = isHeld && deed == deeds_ && now != before;
  began_[remote::IndexOf(action)] = isItsOwn ? now : std::nullopt;
}

void OtherWindow::Up(AfarAction action) {
  if (!desk_.keys.IsDown(action)) return;
  Note("lets go of " + std::string(remote::kAfarActions[remote::IndexOf(action)].id));
  const int deed = ++deeds_;
  const Run before = RunNow();
  const Run began = std::exchange(began_[remote::IndexOf(action)], std::nullopt);
  const double position = desk_.Rooms() ? desk_.Rooms()->documentInWork.CurrentSamplePosition : 0;
  const bool isOfAPress = action <= AfarAction::ForwardHeld && action != AfarAction::PlayStop;
  LetBeHeard([&] { desk_.keys.Up(action); });
  if (!desk_.Rooms() || desk_.ended) return;
  const Run now = RunNow();
  if (began && now == began) Complain("It goes on though its key is up.");
  const playback::DocumentInWork& document = desk_.Rooms()->documentInWork;
  // Whatever ends by itself in this moment stands still at an end, or has moved there.
  const bool stoodStill = document.CurrentSamplePosition == position;
  if (!isOfAPress && before && !now && deed == deeds_ && stoodStill && desk_.player.Connected) {
    Complain("A release has stopped what its key had not begun.");
  }
}

void OtherWindow::LetBeHeard(const std::function<void()>& act) {
  act();
  desk_.loop.Advance(0ms);
}

OtherWindow::Run OtherWindow::RunNow() const {
  return desk_.Rooms() ? desk_.Rooms()->transport.RunUnderWay() : std::nullopt;
}

MediaCommand OtherWindow::SomeCommand() {
  constexpr std::array<remote::Microseconds, 7> kTimes{
      0,
      5'000'000,
      -5'000'000,
      100'000,
      60'000'000,
      std::numeric_limits<remote::Microseconds>::max(),
      std::numeric_limits<remote::Microseconds>::min()};
  const std::array<double, 8> numbers{0, 1, 0.5, 0.9, 1.4, -1, 1e300, std::nan("")};
  using What = MediaCommand::What;
  // Quit comes seldom: a day would be spent with starting.
  const bool quits = chance_.OneIn(60);
  const auto what = static_cast<What>(chance_.Below(static_cast<int>(What::Quit)));
  const std::uint64_t track = desk_.bus.Look().track;
  return {.what = quits ? What::Quit : what,
          .time = chance_.Pick(kTimes),
          .track = chance_.OneIn(4) ? track + 1 : track,
          .number = chance_.Pick(numbers)};
}

void OtherWindow::UseTheBus() {
  const MediaCommand command = SomeCommand();
  Note("asks on the bus for " + std::to_string(static_cast<int>(command.what)));
  LetBeHeard([&] { desk_.bus.Ask(command); });
}

void OtherWindow::Flood() {
  Note("floods the bus");
  LetBeHeard([&] {
    for (int calls = 0; calls < kCallsOfAFlood; ++calls) {
      MediaCommand command = SomeCommand();
      if (command.what != MediaCommand::What::Quit) desk_.bus.Ask(command);
    }
    desk_.loop.Advance(std::chrono::milliseconds{chance_.Below(60)});
  });
}

void OtherWindow::ChangeTheDesktop() {
  test::SimulatedGlobalKeys& keys = desk_.keys;
  const auto toggle = [this](std::set<std::string>& keysOf) {
    const std::string key = chance_.Pick(kKeys);
    if (key.empty() || keysOf.erase(key) > 0) return;
    keysOf.insert(key);
  };
  Note("the desktop changes");
  if (chance_.OneIn(4)) keys.Here = chance_.Pick(kWays);
  keys.HasPage = keys.Here == KeyWay::Portal && chance_.OneIn(2);
  toggle(keys.OfOthers);
  toggle(keys.Denied);
  toggle(keys.NoKeys);
  keys.Answers = !chance_.OneIn(4);
  LetBeHeard([&] { keys.ChangeDesktop(); });
}

void OtherWindow::ChangeTheBus() {
  const bool there = !desk_.bus.IsThere();
  Note(there ? "the bus comes" : "the bus goes");
  LetBeHeard([&] { desk_.bus.SetThere(there); });
}

void OtherWindow::ChooseAKey() {
  forms::KeyRow& row = desk_.Config().keys[remote::IndexOf(SomeAction(chance_))];
  const std::string key = chance_.Pick(kKeys);
  Note("chooses " + key + " in " + row.txtKey.Name);
  row.txtKey.Change(key);
  if (chance_.OneIn(2)) desk_.loop.Advance(0ms);
}

void OtherWindow::Rest() {
  OthersAct();
  test::SimulatedGlobalKeys& keys = desk_.keys;
  // There may be no program any more that could hear of it, so no time passes here.
  for (const remote::AfarActionName& name : remote::kAfarActions) keys.Up(name.action);
  began_ = {};
  keys.Here = KeyWay::Grabs;
  keys.HasPage = false;
  keys.OfOthers.clear();
  keys.Denied.clear();
  keys.NoKeys.clear();
  keys.Answers = true;
  desk_.bus.SetThere(true);
  keys.ChangeDesktop();
}

}  // namespace tavlo::simulation
