// Whatever comes from another window does what a hand at the deck does with the same key, or
// nothing: in three decks that live the same, one is driven from afar, one by a hand, and one is
// left alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/deck_state.h"
#include "support/hand.h"
#include "support/remote_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using remote::AfarAction;
using What = remote::MediaCommand::What;

using Act = std::function<void()>;

forms::Command& StopKey(forms::MainForm& form) {
  return form.cmdStop.Visible ? form.cmdStop : form.cmdImportCompleteSnipetStop;
}

void PressStop(RemoteBench& bench) {
  if (bench.form.DeckRuns) StopKey(bench.form).Press(By::Hand);
}

/// The key that the deck shows: Play, or Stop while it runs. Over a preview both show.
void PressPlayOrStop(RemoteBench& bench) {
  forms::MainForm& form = bench.form;
  const bool showsPlay = !form.DeckRuns || (!form.cmdStop.Visible && form.cmdPlay.Enabled);
  showsPlay ? form.cmdPlay.Press(By::Hand) : PressStop(bench);
}

/// A hand that clicks a wind key and stops what it has begun.
void TapWind(RemoteBench& bench, forms::Command& key) {
  const auto before = bench.Rooms().transport.RunUnderWay();
  key.Press(By::Hand);
  if (bench.Winds() && bench.Rooms().transport.RunUnderWay() != before) {
    bench.form.cmdStop.Press(By::Hand);
  }
}

void DragTo(RemoteBench& bench, forms::Range& slider, int value) {
  if (!slider.Reachable() || bench.form.slPosition.IsHeld()) return;
  Drag(slider, slider.Bounds.Nearest(value));
}

struct Deed {
  const char* name;
  void (*fromAfar)(RemoteBench& bench);
  void (*byHand)(RemoteBench& bench);
};

template <AfarAction action>
void Key(RemoteBench& bench) {
  bench.keys.Down(action);
}
template <What what>
void Bus(RemoteBench& bench) {
  bench.bus.Ask(what);
}
template <auto Member>
void Hand(RemoteBench& bench) {
  (bench.form.*Member).Press(By::Hand);
}

constexpr Deed kDeeds[] = {
    {"PlayStop", &Key<AfarAction::PlayStop>, &PressPlayOrStop},
    {"PlayHeld", &Key<AfarAction::PlayHeld>, &Hand<&forms::MainForm::cmdPlay>},
    {"RewindHeld", &Key<AfarAction::RewindHeld>, &Hand<&forms::MainForm::cmdRewind>},
    {"ForwardHeld", &Key<AfarAction::ForwardHeld>, &Hand<&forms::MainForm::cmdForward>},
    {"ToBeginning", &Key<AfarAction::ToBeginning>, &Hand<&forms::MainForm::cmdSkipBeg>},
    {"ToEnd", &Key<AfarAction::ToEnd>, &Hand<&forms::MainForm::cmdSkipEnd>},
    {"Slower", &Key<AfarAction::Slower>,
     [](RemoteBench& bench) { DragTo(bench, bench.form.Slider1, bench.form.Slider1.Value - 5); }},
    {"Faster", &Key<AfarAction::Faster>,
     [](RemoteBench& bench) { DragTo(bench, bench.form.Slider1, bench.form.Slider1.Value + 5); }},
    {"NormalSpeed", &Key<AfarAction::NormalSpeed>, &Hand<&forms::MainForm::cmdNormalSpeed>},
    {"Complete", &Key<AfarAction::Complete>, &Hand<&forms::MainForm::cmdComplete>},
    {"Save", &Key<AfarAction::Save>, &Hand<&forms::MainForm::cmdSave>},
    {"Skip", &Key<AfarAction::Skip>, &Hand<&forms::MainForm::cmdSkip>},
    {"BusPlay", &Bus<What::Play>,
     [](RemoteBench& bench) {
       const bool playsInWork = bench.form.cmdSkip.Enabled && bench.Plays();
       if (!playsInWork) bench.form.cmdPlay.Press(By::Hand);
     }},
    {"BusPause", &Bus<What::Pause>, &PressStop},
    {"BusStop", &Bus<What::Stop>, &PressStop},
    {"BusPlayPause", &Bus<What::PlayPause>, &PressPlayOrStop},
    {"BusNext", &Bus<What::Next>,
     [](RemoteBench& bench) { TapWind(bench, bench.form.cmdForward); }},
    {"BusPrevious", &Bus<What::Previous>,
     [](RemoteBench& bench) { TapWind(bench, bench.form.cmdRewind); }},
    {"BusSetRate",
     [](RemoteBench& bench) { bench.bus.Ask({.what = What::SetRate, .number = 0.8}); },
     [](RemoteBench& bench) { DragTo(bench, bench.form.Slider1, -20); }},
    {"BusSetVolume",
     [](RemoteBench& bench) { bench.bus.Ask({.what = What::SetVolume, .number = 0.5}); },
     [](RemoteBench& bench) { DragTo(bench, bench.form.sldVol, 32'768); }},
    {"BusQuit", &Bus<What::Quit>, [](RemoteBench& bench) { bench.form.frmMain.CloseRequest(); }},
};

/// A state of the deck. It starts the deck, and lets the deed happen when that is reached.
struct Moment {
  const char* name;
  void (*reach)(RemoteBench& bench, const Act& act);
  /// The deeds that do something there.
  std::string_view acting = "";
};

void Select(RemoteBench& bench) {
  bench.StartUntilReady();
  bench.ClickRow(0);
}
void Work(RemoteBench& bench) {
  bench.StartUntilReady();
  bench.WorkAt(4);
  Drag(bench.form.Slider1, -10);
}
/// While a box stands that somebody looks at for a second.
void UnderABox(RemoteBench& bench, const Act& act) {
  bench.loop.Expect({.delay = 1000ms, .meanwhile = act});
  bench.loop.Show({.title = "Tavlo Deck", .text = "A box"});
}
/// So much later, whatever turns the loop then.
void Later(RemoteBench& bench, base::Duration length, const Act& act, const Act& begin) {
  base::Timer timer(bench.loop, "later", length);
  timer.OnTick = [&] {
    timer.Stop();
    act();
  };
  timer.Start();
  begin();
  bench.loop.Advance(length);
}

constexpr Moment kMoments[] = {
    {"UnderTheSplash",
     [](RemoteBench& bench, const Act& act) {
       bench.deck.Start();
       act();
     }},
    {"WhileTheWindowLoads",
     [](RemoteBench& bench, const Act& act) {
       bench.deck.Start();
       Later(bench, 5500ms, act, [] {});
     }},
    {"BeforeTheFirstList",
     [](RemoteBench& bench, const Act& act) {
       bench.deck.Start();
       Later(bench, 6500ms, act, [] {});
     },
     "BusSetVolume"},
    {"WithNothingSelected",
     [](RemoteBench& bench, const Act& act) {
       bench.StartUntilReady();
       act();
     },
     "BusSetVolume BusQuit"},
    {"UnderAPreview",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       bench.loop.Advance(1s);
       act();
     },
     "PlayStop PlayHeld BusPlay BusPause BusStop BusPlayPause BusSetVolume BusQuit"},
    {"BehindAPreview",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       bench.loop.Advance(20s);
       act();
     },
     "PlayStop PlayHeld BusPlay BusPlayPause BusSetVolume BusQuit"},
    {"InWorkAndStanding",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       act();
     },
     "PlayStop PlayHeld RewindHeld ForwardHeld ToBeginning ToEnd Slower Faster"
     " NormalSpeed Save Skip BusPlay BusPlayPause BusNext BusPrevious BusSetRate"
     " BusSetVolume BusQuit"},
    {"Playing",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.form.cmdPlay.Press(By::Hand);
       bench.loop.Advance(1s);
       act();
     },
     "PlayStop PlayHeld RewindHeld ForwardHeld ToBeginning ToEnd Slower Faster"
     " NormalSpeed Save Skip BusPause BusStop BusPlayPause BusNext BusPrevious"
     " BusSetRate BusSetVolume BusQuit"},
    {"Winding",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.form.cmdRewind.Press(By::Hand);
       bench.loop.Advance(500ms);
       act();
     },
     "PlayStop PlayHeld RewindHeld ForwardHeld ToBeginning ToEnd Slower Faster"
     " NormalSpeed Save Skip BusPlay BusPause BusStop BusPlayPause BusNext BusPrevious"
     " BusSetRate BusSetVolume BusQuit"},
    {"AtTheEnd",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.form.cmdSkipEnd.Press(By::Hand);
       act();
     },
     "PlayStop PlayHeld RewindHeld ForwardHeld ToBeginning ToEnd Slower Faster"
     " NormalSpeed Complete Save Skip BusPlay BusPlayPause BusNext BusPrevious"
     " BusSetRate BusSetVolume BusQuit"},
    {"HeardToTheEnd",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.form.cmdPlay.Press(By::Hand);
       bench.loop.Advance(20s);
       act();
     },
     "PlayStop PlayHeld RewindHeld ForwardHeld ToBeginning ToEnd Slower Faster"
     " NormalSpeed Complete Save Skip BusPlay BusPlayPause BusNext BusPrevious"
     " BusSetRate BusSetVolume BusQuit"},
    {"PlayingUnderABox",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.form.cmdPlay.Press(By::Hand);
       UnderABox(bench, act);
     }},
    {"SelectedUnderABox",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       UnderABox(bench, act);
     }},
    {"PlayingUnderTheConfiguration",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.form.cmdPlay.Press(By::Hand);
       bench.form.cmdEQ.Press(By::Hand);
       act();
     }},
    {"SelectedUnderTheConfiguration",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       bench.form.mnuConfiguration.Press(By::Hand);
       act();
     }},
    {"WhileADocumentIsSelected",
     [](RemoteBench& bench, const Act& act) {
       bench.StartUntilReady();
       bench.loop.Post(act);
       bench.ClickRow(1);
     },
     "BusSetVolume"},
    {"WhileADocumentIsCompleted",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.form.cmdSkipEnd.Press(By::Hand);
       Later(bench, 200ms, act, [&] { bench.form.cmdComplete.Press(By::Hand); });
     }},
    {"WhileADocumentIsLeft",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.loop.Post(act);
       bench.form.cmdSave.Press(By::Hand);
     }},
    {"WhileTheListIsRefreshed",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       Later(bench, 200ms, act, [&] { bench.form.cmdUpdateFileList.Press(By::Hand); });
     },
     "BusSetVolume"},
    {"PreviewingACompletedDocument",
     [](RemoteBench& bench, const Act& act) {
       bench.StartUntilReady();
       bench.form.mnuViewCompleted.Press(By::Hand);
       bench.form.listViewCompleted.RowClick(0);
       bench.loop.Advance(1s);
       act();
     },
     "PlayStop Slower Faster BusPause BusStop BusPlayPause BusSetRate BusSetVolume"
     " BusQuit"},
    {"InTheImportView",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       bench.form.mnuViewImport.Press(By::Hand);
       act();
     },
     "Slower Faster BusSetRate BusSetVolume BusQuit"},
    {"InTheFtpView",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       bench.form.mnuViewFtp.Press(By::Hand);
       act();
     },
     "BusQuit"},
    {"Minimized",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.config.txtMinimizeMiniPlayer.Value = "Y";
       bench.form.cmdPlay.Press(By::Hand);
       bench.loop.Advance(1s);
       act();
     },
     "PlayStop PlayHeld RewindHeld ForwardHeld ToBeginning ToEnd Slower Faster"
     " NormalSpeed Save Skip BusPause BusStop BusPlayPause BusNext BusPrevious"
     " BusSetRate BusSetVolume BusQuit"},
    {"WhileAHandHoldsThePosition",
     [](RemoteBench& bench, const Act& act) {
       Work(bench);
       bench.form.cmdPlay.Press(By::Hand);
       bench.form.slPosition.Press();
       act();
     },
     "PlayStop PlayHeld RewindHeld ForwardHeld ToBeginning ToEnd NormalSpeed Save Skip"
     " BusPause BusStop BusPlayPause BusNext BusPrevious BusQuit"},
    {"UnderTheQuestionOfTheExit",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       bench.loop.Expect({.reply = base::Reply::No, .delay = 1000ms, .meanwhile = act});
       bench.form.mnuExit.Press(By::Hand);
     }},
    {"DuringTheExit",
     [](RemoteBench& bench, const Act& act) {
       Select(bench);
       bench.loop.Expect({.reply = base::Reply::Yes});
       Later(bench, 500ms, act, [&] { bench.form.mnuExit.Press(By::Hand); });
     }},
};

/// What the decks have in common, and what they look like in the end.
std::vector<std::string> Live(const Moment& moment, const std::function<void(RemoteBench&)>& deed) {
  RemoteBench bench;
  std::vector<std::string> seen;
  moment.reach(bench, [&] {
    deed(bench);
    bench.Settle();
    seen = StateOf(bench);
  });
  bench.loop.Advance(3s);
  for (std::string& line : StateOf(bench)) seen.push_back(std::move(line));
  return seen;
}

std::string FirstApart(const std::vector<std::string>& one, const std::vector<std::string>& other) {
  const auto [at, there] = std::ranges::mismatch(one, other);
  if (at == one.end() && there == other.end()) return "";
  return "from afar: " + (at == one.end() ? "nothing more" : *at) +
         "\nby a hand: " + (there == other.end() ? "nothing more" : *there);
}

struct SameAsAHand : testing::TestWithParam<Moment> {};

TEST_P(SameAsAHand, OrNothing) {
  const Moment& moment = GetParam();
  const auto alone = Live(moment, [](RemoteBench&) {});
  std::string acted;
  for (const Deed& deed : kDeeds) {
    const auto afar = Live(moment, deed.fromAfar);
    if (afar == alone) continue;
    EXPECT_EQ(FirstApart(afar, Live(moment, deed.byHand)), "") << deed.name;
    acted += (acted.empty() ? "" : " ") + std::string(deed.name);
  }
  EXPECT_EQ(acted, moment.acting);
}

INSTANTIATE_TEST_SUITE_P(Remote, SameAsAHand, testing::ValuesIn(kMoments),
                         [](const auto& moment) { return std::string(moment.param.name); });

}  // namespace
}  // namespace tavlo::test
