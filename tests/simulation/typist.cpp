#include "simulation/typist.h"

#include <algorithm>
#include <array>

namespace tavlo::simulation {
namespace {

using base::Duration;
using base::operator""ms;
using base::operator""s;
using forms::By;

/// A hand that was interrupted this often rests.
constexpr int kMostActsUnderWay = 4;
constexpr int kTriesToGoHome = 30;

}  // namespace

Typist::Typist(Desk& desk, Ledger& ledger, const Conditions& conditions, Chance chance,
               Trace& trace)
    : desk_(desk),
      ledger_(ledger),
      conditions_(conditions),
      chance_(chance),
      trace_(trace),
      foot_(desk, conditions, chance.Child("foot"), trace),
      mixerHand_(desk, chance.Child("mixer"), trace),
      takings_(desk),
      otherWindow_(desk, takings_, chance.Child("afar"), trace),
      hand_(desk.loop, "hand", 1000ms),
      session_(desk.loop, "session", 1000ms, base::TimerKind::Feed) {
  hand_.OnTick = [this] { Interrupt(); };
  session_.OnTick = [this] {
    session_.Stop();
    takings_.EndSession(/*now=*/true);
  };
  desk_.alerts.OnAlert = [this] { foot_.OthersAct(); };
  mixerHand_.OnMeanwhile = [this] {
    if (OnMeanwhile) OnMeanwhile();
  };
  desk_.loop.OnBox = [this](const base::MessageBox& box) { return AnswerBox(box); };
  desk_.loop.OnAnswered = [this](const base::MessageBox& box, base::Reply reply) {
    NoteConsent(box, reply);
  };
  desk_.loop.OnLastBoxClosed = [this] {
    if (Seen(desk_.Main().frmMain)) desk_.Main().frmMain.Activate();
  };
}

const std::vector<Typist::Habit>& Typist::Habits() {
  static const std::vector<Habit> habits{
      {"press", 30, &Typist::PressCommand},
      {"click a row", 12, &Typist::ClickRow},
      {"click a header", 2, &Typist::ClickHeader},
      {"choose and play", 10, &Typist::ChooseAndPlay},
      {"play to the end", 6, &Typist::PlayToTheEnd},
      {"finish", 14, &Typist::Finish},
      {"drag", 8, &Typist::DragSlider},
      {"work the pedals", 20, &Typist::WorkThePedals},
      {"work from another window", 18, &Typist::WorkFromAfar},
      {"choose keys", 3, &Typist::ChooseKeys},
      {"shape the sound", 5, &Typist::ShapeTheSound},
      {"work the mixer", 5, &Typist::WorkTheMixer},
      {"choose alerts", 4, &Typist::ChooseAlerts},
      {"place the window", 4, &Typist::Place},
      {"calibrate", 1, &Typist::Calibrate},
      {"ask to close", 2, &Typist::AskToClose},
      {"click a choice", 5, &Typist::ClickChoice},
      {"type", 3, &Typist::TypeText},
      {"click in a list", 3, &Typist::ClickInAList},
      {"click somewhere", 4, &Typist::ClickSomewhere},
      {"turn a page", 2, &Typist::TurnPage},
      {"change the view", 6, &Typist::ChangeView},
      {"click a completed row", 6, &Typist::ClickCompletedRow},
      {"work on the completed", 6, &Typist::WorkOnCompleted},
      {"click an import row", 3, &Typist::ClickImportRow},
      {"work on the imports", 16, &Typist::WorkOnImports},
      {"drop files", 4, &Typist::DropFiles},
      {"open files", 2, &Typist::OpenFiles},
      {"work on the servers", 12, &Typist::WorkOnServers},
      {"switch automatic retrieval", 2, &Typist::SwitchAutoRetrieve},
      {"edit the servers", 3, &Typist::EditServers},
      {"finish after something else", 6, &Typist::FinishAfterSomethingElse},
      {"finish beside a rival", 4, &Typist::FinishBesideRival},
      {"end the session", 1, &Typist::EndSession},
      {"look at the about box", 1, &Typist::LookAtAbout},
  };
  return habits;
}

void Typist::Act() {
  if (actsUnderWay_ >= kMostActsUnderWay) return;
  const Alerts::Hand hand(desk_.alerts);
  ++actsUnderWay_;
  foot_.OthersAct();
  mixerHand_.OthersAct();
  otherWindow_.OthersAct();
  if (conditions_.handsInterrupt && chance_.OneIn(3)) {
    hand_.SetInterval(1ms + std::chrono::milliseconds{chance_.Below(1500)});
    hand_.Start();
  }
  const Habit& habit = chance_.PickByWeight(Habits());
  Note(habit.name);
  const Duration before = WaitedInVain();
  const int givenUp = desk_.disk.Places.TimesGivenUp;
  (this->*habit.act)();
  const Duration waited = WaitedInVain() - before;
  if (waited > (desk_.disk.Places.TimesGivenUp - givenUp) * test::SimulatedPlaces::kPatience) {
    waitedTooLong_ = std::string(habit.name) + " waits for folders that give no answer for " +
                     std::to_string(waited.count() / 1000) + " ms";
  }
  ActivateWindows();
  // What was interrupted goes on, and that is no doing of the foot.
  if (--actsUnderWay_ > 0) {
    foot_.OthersAct();
    otherWindow_.OthersAct();
  }
}

void Typist::Interrupt() {
  hand_.Stop();
  trace_.Note("  meanwhile");
  if (OnMeanwhile && chance_.OneIn(3)) OnMeanwhile();
  Act();
}

void Typist::ActivateWindows() {
  forms::Window& configuration = desk_.Config().frmConfiguration;
  const bool stands = configuration.Visible;
  if (stands && !configurationStood_) configuration.Activate();
  if (!stands && configurationStood_ && Seen(desk_.Main().frmMain)) {
    desk_.Main().frmMain.Activate();
  }
  configurationStood_ = stands;
}

bool Typist::Seen(const forms::Control& control) const {
  return control.Visible && control.Enabled;
}

void Typist::Press(forms::Command& command) {
  Note("presses " + command.Name + (command.Reachable() ? "" : " out of reach"));
  const forms::MainForm& main = desk_.Main();
  const auto press = [&] { takings_.Press(command); };
  const bool moves = &command == &main.cmdRewind || &command == &main.cmdForward ||
                     &command == &main.cmdSkipBeg || &command == &main.cmdSkipEnd;
  moves ? desk_.Choose(press) : press();
}

void Typist::ClickRow() {
  forms::Table& list = desk_.Main().listViewInQueue;
  const int rows = static_cast<int>(list.Rows().size());
  // A row behind the last one, too.
  if (rows > 0) ClickRowOf(list, chance_.Below(rows + 1));
}

void Typist::ChooseAndPlay() {
  ClickRow();
  if (chance_.OneIn(2)) WaitAWhile();
  Press(desk_.Main().cmdPlay);
  WaitAWhile();
}

void Typist::PlayToTheEnd() {
  ClickRow();
  Press(desk_.Main().cmdPlay);
  desk_.loop.Advance(1s);
  Press(chance_.OneIn(2) ? desk_.Main().cmdSkipEnd : desk_.Main().cmdForward);
  desk_.loop.Advance(std::chrono::seconds{chance_.Below(20)});
  Press(desk_.Main().cmdComplete);
}

void Typist::Finish() {
  forms::MainForm& main = desk_.Main();
  Press(Some<forms::Command>({{&main.cmdComplete, 1}, {&main.cmdSave, 2}, {&main.cmdSkip, 1}}));
}

void Typist::Drag(forms::Range& slider) {
  Note("drags " + slider.Name);
  // A slider that was not taken cannot be moved, though it may come into reach meanwhile.
  if (!slider.Reachable()) return;
  slider.Press();
  for (int moves = chance_.Below(4); moves > 0; --moves) {
    const int width = slider.Bounds.maximum - slider.Bounds.minimum + 1;
    slider.Change(slider.Bounds.minimum + chance_.Below(width));
    if (chance_.OneIn(3)) desk_.loop.Advance(std::chrono::milliseconds{chance_.Below(2000)});
  }
  desk_.Choose([&] { slider.Release(); });
  desk_.sliderLetGo = desk_.loop.Now();
}

void Typist::Place() {
  constexpr std::array kPlaces{-32'000, -1, 0, 600, 15'000, 60'000};
  constexpr std::array kSizes{1, 3000, 6000, 6001, 9600, 20'000};
  forms::Window& window = desk_.Main().frmMain;
  if (!window.Visible || desk_.loop.MessageBoxOpen()) return;
  const auto shape = chance_.OneIn(4) ? forms::Shape::Minimized : forms::Shape::Normal;
  if (chance_.OneIn(2)) {
    window.Place(chance_.Pick(kPlaces), chance_.Pick(kPlaces), window.Width, window.Height, shape);
  } else {
    window.Place(window.Left, window.Top, chance_.Pick(kSizes), chance_.Pick(kSizes), shape);
  }
}

void Typist::Calibrate() { desk_.Main().StatusBar1.DoubleClick(); }

void Typist::AskToClose() {
  if (chance_.OneIn(3)) {
    Press(desk_.Main().mnuExit);
    return;
  }
  forms::Window& window = Some(desk_.Controls().windows);
  Note("closes " + window.Name);
  const bool isConfiguration = &window == &desk_.Config().frmConfiguration && window.Visible;
  window.CloseRequest();
  if (isConfiguration && !window.Visible) desk_.serversAreUnsaved = true;
}

void Typist::WaitAWhile() {
  const Duration length = SomeTime();
  trace_.Note("  waits " + std::to_string(length.count() / 1000) + " ms");
  if (conditions_.machineSleeps && chance_.OneIn(6)) {
    desk_.loop.Oversleep(length);
  } else {
    desk_.loop.Advance(length);
  }
}

Duration Typist::WaitedInVain() const {
  return desk_.loop.BreathedFor - desk_.disk.Places.AnsweredAfter -
         desk_.conversionLibraries.breathed;
}

Duration Typist::SomeTime() {
  constexpr std::array kTimes{0ms, 1ms, 10ms, 49ms, 500ms, 999ms, 1000ms, 3000ms, 6000ms, 20'000ms};
  if (chance_.OneIn(400)) return std::chrono::hours{3};
  if (chance_.OneIn(40)) return std::chrono::minutes{chance_.Below(10)};
  return chance_.OneIn(3) ? std::chrono::milliseconds{chance_.Below(3000)} : chance_.Pick(kTimes);
}

WatchedLoop::Answer Typist::AnswerBox(const base::MessageBox& box) {
  trace_.Note("  box: " + box.title + ": " + box.text);
  LookAtExit(box);
  WatchedLoop::Answer answer;
  if (box.buttons == base::Buttons::YesNo) {
    answer.reply = chance_.OneIn(2) ? base::Reply::Yes : base::Reply::No;
  }
  if (calm_) return answer;
  if (chance_.OneIn(3)) answer.delay = SomeTime();
  if (conditions_.handsInterrupt && chance_.OneIn(3)) {
    answer.meanwhile = [this] {
      if (OnMeanwhile) OnMeanwhile();
      Act();
    };
  }
  return answer;
}

void Typist::StayCalm(bool calm) {
  HandsOff();
  calm_ = calm;
}

bool Typist::ComeToTheLists() {
  desk_.loop.Advance(1s);
  shell::Windows& windows = desk_.Windows();
  ActivateWindows();
  if (!desk_.AtWork()) return false;
  windows.about.frmAbout.CloseRequest();
  windows.configuration.mnuClose.Press(By::Hand);
  ActivateWindows();
  forms::Window& window = windows.main.frmMain;
  // A click on the task bar.
  if (window.WindowShape == forms::Shape::Minimized) {
    window.Place(window.Left, window.Top, window.Width, window.Height, forms::Shape::Normal);
  }
  LogOut();
  if (windows.main.cmdSkip.Reachable()) Press(windows.main.cmdSkip);
  return windows.main.mnuView.Reachable();
}

bool Typist::GoHome() {
  forms::MainForm& main = desk_.Main();
  if (!GoTo(main.mnuViewQueue, main.frameInQueue)) return false;
  for (int tries = kTriesToGoHome; tries > 0; --tries) {
    if (ComeToTheLists() && main.cmdUpdateFileList.Reachable()) {
      Press(main.cmdUpdateFileList);
      return true;
    }
  }
  return false;
}

bool Typist::GoTo(forms::Command& entry, const forms::Pane& frame) {
  for (int tries = kTriesToGoHome; tries > 0; --tries) {
    if (!ComeToTheLists()) continue;
    Press(entry);
    return frame.Visible;
  }
  return false;
}

std::string Typist::TypeOneDocument() {
  forms::MainForm& main = desk_.Main();
  const forms::Table& list = main.listViewInQueue;
  for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
    const std::string name = list.TextAt(row, forms::document_column::FileName);
    const std::string contents = desk_.disk.Contents(Desk::Path("/Files/InQueue/") + name);
    main.listViewInQueue.RowClick(row);
    desk_.loop.Advance(200ms);
    if (!main.cmdPlay.Reachable()) continue;
    Press(main.cmdPlay);
    if (!desk_.player.IsRunning()) continue;
    desk_.loop.Advance(100ms);
    Press(main.cmdSkipEnd);
    if (!main.cmdComplete.Reachable()) return "Complete is out of reach at the end of " + contents;
    Press(main.cmdComplete);
    const auto places = desk_.disk.FilesHolding(contents);
    const std::string completed = Desk::Path("/Files/Completed/");
    const bool arrived = std::any_of(places.begin(), places.end(), [&](const std::string& path) {
      return path.starts_with(completed);
    });
    return arrived ? "" : "Complete did not move " + contents;
  }
  return "";
}

}  // namespace tavlo::simulation
