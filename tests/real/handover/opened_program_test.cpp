#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "handover/second_start.h"
#include "support/driven_program.h"
#include "support/home.h"
#include "support/screen_user.h"
#include "support/sound_files.h"
#include "support/started_program.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// A stick with sound files, and the deck of somebody who opens them.
struct OpenedFiles : testing::Test {
  void SetUp() override { home.MakeRoot(QuietSettings()); }

  std::string OnStick(const std::string& name) const {
    std::string path = stick.Write(name, sound);
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    return path;
  }
  /// The names in the folder of the Queue, in their order. What is just being copied has a dot in
  /// front.
  Names InQueue() const {
    Names names;
    for (const auto& entry : fs::directory_iterator(home.QueuePath())) {
      const std::string name = entry.path().filename();
      if (!name.starts_with('.')) names.push_back(name);
    }
    std::ranges::sort(names);
    return names;
  }

  const std::string sound = WaveBytes(Chirp(4000, 8000));
  TemporaryFolder stick;
  Home home;
};

/// The deck that runs stands in this process.
struct OpenedWhileADeckRuns : OpenedFiles {
  /// Runs the deck and the script, which begins under the box of a machine without sound.
  void Run(const std::function<void(DrivenProgram&)>& script) {
    DrivenProgram program(home);
    const int status = program.Run([&] {
      ASSERT_TRUE(program.Begin());
      ASSERT_EQ(program.Box(), kNoSound);
      script(program);
      program.Exit();
    });
    EXPECT_EQ(status, 0);
  }
  /// What the list and the quiet line show once the list has so many rows.
  static std::string Shown(DrivenProgram& program, std::size_t rows) {
    EXPECT_TRUE(program.Until([&] { return Main(program).listViewInQueue.Rows().size() == rows; }));
    EXPECT_TRUE(Until([&] { return program.IsReady(); }));
    return program.Ask([&] { return Main(program).lblNotice.Value.Get(); });
  }
  static forms::MainForm& Main(DrivenProgram& program) { return program.Main(); }

  static constexpr const char* kNoSound = "Tavlo Deck - Sound Card: A sound card can not be found";
};

TEST_F(OpenedWhileADeckRuns, StandInItsQueueUnderWhateverNameTheyHave) {
  for (const char* name : {"memo.wav", "\xFF\xFE.wav", "two\nlines.wav", "-platform"}) {
    OnStick(name);
  }
  Run([&](DrivenProgram& program) {
    program.AnswerBox();
    EXPECT_EQ(SecondStart({"memo.wav", "./\xFF\xFE.wav", stick / "two\nlines.wav", "-platform"},
                          stick.Path()),
              0);
    EXPECT_EQ(Shown(program, 4), "");
  });
  EXPECT_EQ(InQueue(), (Names{"-platform", "memo.wav", "two\nlines.wav", "\xFF\xFE.wav"}));
  EXPECT_EQ(stick.Read("memo.wav"), sound);
}

TEST_F(OpenedWhileADeckRuns, WaitForItsMessageBoxAndTheirStartDoesNot) {
  Run([&](DrivenProgram& program) {
    EXPECT_EQ(SecondStart({OnStick("memo.wav")}), 0);
    EXPECT_EQ(SecondStart({OnStick("note.wav")}), 0);
    EXPECT_EQ(InQueue(), Names{});
    EXPECT_EQ(program.Box(), kNoSound);
    program.AnswerBox();
    EXPECT_EQ(Shown(program, 2), "");
  });
}

TEST_F(OpenedWhileADeckRuns, ComeTwiceUnderOneNameAndNotAtAllWhereTheyAreNoFiles) {
  fs::create_directory(stick / "tapes");
  fs::create_directory(stick / "other");
  OnStick("memo.wav");
  OnStick("other/memo.wav");
  Run([&](DrivenProgram& program) {
    program.AnswerBox();
    EXPECT_EQ(SecondStart({"memo.wav", "other/memo.wav", "tapes", "gone.wav"}, stick.Path()), 0);
    EXPECT_EQ(Shown(program, 2),
              "Not taken: tapes (it is a folder), gone.wav (there is no such file or folder).");
  });
  EXPECT_EQ(InQueue(), (Names{"memo (2).wav", "memo.wav"}));
}

TEST_F(OpenedWhileADeckRuns, AreTakenUpToAThousandAndTheOthersAreTold) {
  Names files;
  for (int i = 0; i < 1001; ++i) files.push_back(OnStick(std::to_string(i) + ".wav"));
  Run([&](DrivenProgram& program) {
    program.AnswerBox();
    EXPECT_EQ(SecondStart(files), 0);
    EXPECT_EQ(Shown(program, 1000), "1 more file was not taken: at most 1000 may wait at a time.");
  });
  EXPECT_EQ(InQueue().size(), 1000u);
}

TEST_F(OpenedWhileADeckRuns, WaitUntilItsDictationIsFinished) {
  home.AddToQueue(DocumentName("Brown"), sound);
  Run([&](DrivenProgram& program) {
    program.AnswerBox();
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    program.ClickRow(0);
    program.Click("cmdPlay");
    ASSERT_TRUE(program.Until([&] { return !program.Main().frameFiles.Visible; }));
    EXPECT_EQ(SecondStart({OnStick("memo.wav")}), 0);
    EXPECT_TRUE(program.Until([&] {
      return Main(program).lblNotice.Value.Get() ==
             "The opened files come into the Queue when this dictation is finished.";
    }));
    EXPECT_EQ(InQueue().size(), 1u);
    program.Click("cmdSkip");
    EXPECT_EQ(Shown(program, 2), "");
  });
}

/// Each deck is a process of its own, seen from outside.
struct OpenedByStarts : OpenedFiles, ScreenUser {
  StartedProgram Start(const Names& files = {}) {
    const std::string folder = stick.Path();
    return {TAVLO_PROGRAM, home.Path(), {.arguments = files, .prepare = [folder] {
                                           return ::chdir(folder.c_str()) == 0;
                                         }}};
  }
  void BecomeReady() {
    PassSplash();
    Answer("Tavlo Deck - Sound Card");
  }
};

TEST_F(OpenedByStarts, StandInTheQueueOfTheDeckThatTheyHaveStarted) {
  OnStick("memo.wav");
  StartedProgram program = Start({"memo.wav"});
  BecomeReady();
  EXPECT_TRUE(Until([&] { return InQueue() == Names{"memo.wav"}; }));
  Exit();
  EXPECT_EQ(program.ExitStatus(), 0);
}

TEST_F(OpenedByStarts, AreRefusedLikeAStartWithoutThemWhereTheDeckStandsStill) {
  OnStick("memo.wav");
  OnStick("note.wav");
  StartedProgram first = Start();
  BecomeReady();
  first.Send(SIGSTOP);
  {
    StartedProgram second = Start({"memo.wav"});
    Answer("Tavlo Deck - Running");
    EXPECT_EQ(second.ExitStatus(), 1);
  }
  first.Send(SIGCONT);
  StartedProgram third = Start({"note.wav"});
  EXPECT_EQ(third.ExitStatus(), 0);
  EXPECT_TRUE(Until([&] { return !InQueue().empty(); }));
  EXPECT_EQ(InQueue(), Names{"note.wav"}) << "what was refused does not come later";
  Exit();
  EXPECT_EQ(first.ExitStatus(), 0);
  EXPECT_EQ(InQueue(), Names{"note.wav"});
}

TEST_F(OpenedByStarts, StartADeckWhereTheOneBeforeHasCrashed) {
  OnStick("memo.wav");
  {
    StartedProgram first = Start();
    BecomeReady();
    first.Kill();
  }
  StartedProgram second = Start({"memo.wav"});
  BecomeReady();
  EXPECT_TRUE(Until([&] { return InQueue() == Names{"memo.wav"}; }));
  Exit();
  EXPECT_EQ(second.ExitStatus(), 0);
}

}  // namespace
}  // namespace tavlo::test
