#include "bus/media_program.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>

namespace tavlo::test {
namespace {

std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(MediaProgram, PlaysAndStopsByPlayerctl) {
  Run([&] {
    Select();
    EXPECT_EQ(PlayerCtl("play"), "");
    ASSERT_TRUE(Until([&] { return Playing(); }));
    EXPECT_TRUE(Until([&] { return PlayerCtl("status") == "Playing"; }));
    PlayerCtl("pause");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
    EXPECT_TRUE(Until([&] { return PlayerCtl("status") == "Paused"; }));
    PlayerCtl("play-pause");
    ASSERT_TRUE(Until([&] { return Playing(); }));
    PlayerCtl("play-pause");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
    PlayerCtl("play");
    ASSERT_TRUE(Until([&] { return Playing(); }));
    PlayerCtl("stop");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
    EXPECT_TRUE(InWork());
  });
}

TEST_F(MediaProgram, GoesWherePlayerctlSays) {
  Run([&] {
    Open();
    PlayerCtl("position 30");
    EXPECT_TRUE(Until([&] { return Seconds() == 30; })) << Seconds();
    EXPECT_TRUE(Until([&] { return PlayerCtl("position") == "30.000000"; }));
    PlayerCtl("position 5+");
    EXPECT_TRUE(Until([&] { return Seconds() == 35; })) << Seconds();
    PlayerCtl("position 10-");
    EXPECT_TRUE(Until([&] { return Seconds() == 25; })) << Seconds();
    PlayerCtl("next");
    EXPECT_TRUE(Until([&] { return Seconds() > 25; }));
    // A wind has its own pace, and a second one may only begin when it is over.
    const auto winds = [&] {
      return program->Ask([&] { return program->Rooms().transport.tmrRewindForward.Enabled(); });
    };
    ASSERT_TRUE(Until([&] { return !winds(); }));
    const double there = Seconds();
    PlayerCtl("previous");
    EXPECT_TRUE(Until([&] { return Seconds() < there; }));
    ASSERT_TRUE(Until([&] { return !winds(); }));
    EXPECT_FALSE(Playing());
  });
}

TEST_F(MediaProgram, TellsAndTakesTheVolume) {
  Run([&] {
    Open();
    PlayerCtl("volume 0.2");
    EXPECT_TRUE(Until([&] { return PlayerCtl("volume") == "0.200000"; }));
    const auto slider = [&] {
      return program->Ask([&] {
        const forms::Range& volume = program->Main().sldVol;
        return 100 * volume.Value / volume.Bounds.maximum;
      });
    };
    EXPECT_EQ(slider(), 20);
    PlayerCtl("volume 7");
    EXPECT_TRUE(Until([&] { return slider() == 100; }));
  });
}

TEST_F(MediaProgram, TellsOfTheDocumentWhatTheWindowsShow) {
  Run([&] {
    EXPECT_EQ(PlayerCtl("metadata xesam:title"), "No player could handle this command");
    Select();
    EXPECT_TRUE(Until([&] { return Holds(PlayerCtl("metadata xesam:title"), "cardio"); }));
    EXPECT_EQ(PlayerCtl("metadata xesam:artist"), "Brown");
    Open();
    EXPECT_TRUE(Until([&] { return PlayerCtl("metadata mpris:length") == "120000000"; }));
  });
}

TEST_F(MediaProgram, TellsOfEveryChangeToWhoeverFollowsIt) {
  const TemporaryFolder folder;
  const std::string log = folder / "followed";
  ChildProcess follower;
  Run([&] {
    ASSERT_TRUE(
        follower.Start({"sh", "-c", "exec playerctl --player=tavlodeck --follow status >" + log}));
    ASSERT_TRUE(Until([&] { return FileText(log) == "Stopped\n"; }));
    Open();
    EXPECT_TRUE(Until([&] { return FileText(log) == "Stopped\nPlaying\nPaused\n"; }))
        << FileText(log);
    program->Click("cmdSkip");
    EXPECT_TRUE(Until([&] { return FileText(log) == "Stopped\nPlaying\nPaused\nStopped\n"; }))
        << FileText(log);
    follower.Kill();
  });
}

TEST_F(MediaProgram, TakesItsSpeedFromTheBus) {
  Run([&] {
    Open();
    const auto comesTo = [&](int percent) {
      return program->Until([&] { return program->Rooms().engine.PlaySpeedPercent == percent; });
    };
    const std::map<std::string, int> speeds{{"1.2", 120}, {"0.8", 80},  {"7", 150},
                                            {"-1", 50},   {"inf", 150}, {"1", 100}};
    for (const auto& [asked, percent] : speeds) {
      EXPECT_EQ(Set("Rate d -- " + asked), "");
      EXPECT_TRUE(comesTo(percent)) << asked;
    }
    EXPECT_EQ(Set("Rate d nan"), "");
    EXPECT_EQ(Set("Rate d 1.1"), "");
    EXPECT_TRUE(Until([&] { return Get("Rate") == "d 1.1"; }));
  });
}

TEST_F(MediaProgram, ComesToTheFrontWhenItIsRaised) {
  Run([&] {
    program->Do([&] { program->Main().frmMain.WindowShape = forms::Shape::Minimized; });
    ASSERT_TRUE(program->Until(
        [&] { return program->Main().frmMain.WindowShape == forms::Shape::Minimized; }));
    EXPECT_EQ(Call(kRoot, "Raise"), "");
    EXPECT_TRUE(program->Until(
        [&] { return program->Main().frmMain.WindowShape == forms::Shape::Normal; }));
  });
}

TEST_F(MediaProgram, QuitsByItsOwnRules) {
  const int status = program->Run([&] {
    ASSERT_TRUE(program->Begin());
    ASSERT_TRUE(Until([] { return PlayerCtl("status") == "Stopped"; }));
    Open();
    EXPECT_EQ(Call(kRoot, "Quit"), "");
    EXPECT_EQ(program->AnswerBox(),
              "Tavlo Deck - Exit: You must Skip, Save, or Complete this dictation before you may "
              "exit the Tavlo Deck");
    EXPECT_TRUE(InWork());
    LeaveDocument();
    EXPECT_EQ(Call(kRoot, "Quit"), "");
    EXPECT_EQ(program->AnswerBox(),
              "Tavlo Deck - Exit: Are you sure you want to exit the Tavlo Deck?");
  });
  EXPECT_EQ(status, 0);
}

/// By itself: times and positions may hold any digits among their own.
bool HoldsNumber(const std::string& text, const std::string& number) {
  return std::regex_search(text, std::regex("\\b" + number + "\\b"));
}

/// Everything that any program on the bus says is written down.
struct OverheardProgram : MediaProgram {
  using MediaProgram::MediaProgram;

  /// Plays, moves, saves and completes while somebody listens; all that was said.
  std::string OverhearWork() {
    const TemporaryFolder folder;
    const std::string log = folder / "said";
    ChildProcess listener;
    Run([&] {
      EXPECT_TRUE(listener.Start(
          {"sh", "-c", "exec dbus-monitor --address '" + bus.Address() + "' >" + log}));
      // It hears nothing but what comes after this line.
      EXPECT_TRUE(Until([&] { return Holds(FileText(log), "NameLost"); })) << FileText(log);
      Open();
      // Somebody who is told nothing of the document can not move in it; a hand can.
      PlayerCtl("position 30");
      PlayerCtl("metadata");
      program->Click("cmdSkipEnd");
      program->Click("cmdSave");
      EXPECT_TRUE(Until([&] { return !InWork() && program->IsReady(); }));
      program->ClickRow(0);
      EXPECT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
      PlayerCtl("play");
      EXPECT_TRUE(Until([&] { return Playing(); }));
      PlayerCtl("pause");
      EXPECT_TRUE(Until([&] { return !Playing(); }));
      program->Click("cmdSkipEnd");
      EXPECT_TRUE(program->Until([&] { return program->Main().cmdComplete.Enabled.Get(); }));
      program->Click("cmdComplete");
      EXPECT_TRUE(Until([&] { return !InWork() && program->IsReady(); }));
      PlayerCtl("metadata");
      // Whatever was said before this has been written.
      Call(kPlayer, "TheEnd");
      EXPECT_TRUE(Until([&] { return Holds(FileText(log), "TheEnd"); }));
      listener.Kill();
    });
    EXPECT_FALSE(std::filesystem::is_empty(home.CompletedPath()));
    return FileText(log);
  }
};

TEST_F(OverheardProgram, SaysNoPathNoFileNameAndNoNumberThatTheWindowsDoNotShow) {
  const std::string said = OverhearWork();
  EXPECT_TRUE(Holds(said, "cardio"));
  EXPECT_TRUE(Holds(said, "Brown"));
  EXPECT_TRUE(Holds(said, "Playing"));
  for (const std::string& secret :
       {std::string(".wav"), std::string("InQueue"), home.Path(), std::string("Completed")}) {
    EXPECT_FALSE(Holds(said, secret)) << secret;
  }
  EXPECT_FALSE(HoldsNumber(said, "471199"));
  EXPECT_FALSE(HoldsNumber(said, "0815"));
}

struct DiscreetProgram : OverheardProgram {
  DiscreetProgram() : OverheardProgram({{"BusSaysNothingFlag", "Y"}}) {}
};

TEST_F(DiscreetProgram, SaysHowItStandsAndNothingOfTheDocument) {
  const std::string said = OverhearWork();
  EXPECT_TRUE(Holds(said, "Playing"));
  for (const char* secret :
       {"cardio", "Brown", "tavlodeck/dictation", "InQueue", "xesam:title", "mpris:length"}) {
    EXPECT_FALSE(Holds(said, secret)) << secret;
  }
  EXPECT_FALSE(HoldsNumber(said, "471199"));
  EXPECT_FALSE(HoldsNumber(said, "0815"));
}

}  // namespace
}  // namespace tavlo::test
