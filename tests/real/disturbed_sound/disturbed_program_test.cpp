#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "mixer_page/sound_control.h"
#include "support/driven_program.h"
#include "support/screen.h"
#include "support/sound_analysis.h"
#include "support/sound_files.h"
#include "support/sound_recorder.h"
#include "support/sound_server.h"
#include "support/takes.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

constexpr int kRate = 16000;

std::string LongTone() {
  std::vector<std::int16_t> values;
  for (const float value : Tone(440, 60, kRate).samples) {
    values.push_back(static_cast<std::int16_t>(value * 32767));
  }
  return WaveBytes(values, kRate);
}

/// The real program plays a document; beside the output that is recorded there is a second one.
struct DisturbedProgram : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(server.StartWithPrecedence());
    second = PlugInOutput("Second");
    ASSERT_TRUE(recorder.Start());
    home.MakeRoot(QuietSettings());
    home.AddToQueue(name, document);
    program = std::make_unique<DrivenProgram>(home);
  }

  void Run(const std::function<void()>& script) {
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      program->ClickRow(program->RowOf(name));
      ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
      program->Click("cmdPlay");
      ASSERT_TRUE(Until([&] { return Playing(); }));
      script();
      program->Click("cmdStop");
      ASSERT_TRUE(Until([&] { return !Playing(); }));
      const double stopped = Position();
      std::this_thread::sleep_for(200ms);
      EXPECT_EQ(Position(), stopped);
      program->Click("cmdSkip");
      ASSERT_TRUE(Until([&] { return program->IsReady(); }));
      program->Exit();
    });
    EXPECT_EQ(status, 0);
    int documents = 0;
    for (const auto& [path, contents] : home.Everything()) documents += contents == document;
    EXPECT_EQ(documents, 1);
  }

  bool Playing() {
    return program->Ask([&] { return program->Rooms().engine.IsPlaying; });
  }
  /// Seconds.
  double Position() {
    return program->Ask([&] { return program->Rooms().documentInWork.CurrentSamplePosition; }) /
           kRate;
  }
  /// The document goes on by half a second from where it is, and does not jump on the way.
  void ExpectGoesOn() {
    double last = Position();
    const double end = last + 0.5;
    EXPECT_TRUE(Until([&] {
      const double now = Position();
      EXPECT_GE(now, last);
      last = now;
      return now > end;
    }));
    EXPECT_TRUE(Playing());
  }
  std::vector<std::string> Devices() {
    return program->Ask([&] {
      const forms::Table& list = program->Windows().configuration.DeviceCombo;
      std::vector<std::string> names;
      for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
        names.push_back(list.TextAt(row, 0));
      }
      return names;
    });
  }
  /// A hand picks that output from the list of the mixer page.
  void ChooseDevice(const std::string& device) {
    const bool chosen = program->Ask([&] {
      forms::Table& list = program->Windows().configuration.DeviceCombo;
      for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
        if (list.TextAt(row, 0) != device) continue;
        list.ListIndex = row;
        return true;
      }
      return false;
    });
    EXPECT_TRUE(chosen) << device;
  }
  /// What the recorded output plays for half a second.
  double AudibleNow() {
    const double from = recorder.Seconds();
    EXPECT_TRUE(Until([&] { return recorder.Seconds() > from + 0.5; }));
    return AudibleSeconds(recorder.Since(from));
  }

  const std::string name = DocumentName("Tone", 1);
  const std::string document = LongTone();
  SoundServer server;
  SoundRecorder recorder;
  Home home;
  std::string second;
  std::unique_ptr<DrivenProgram> program;
};

TEST_F(DisturbedProgram, HandsOnVolumeAndEqualizerDoNotStopTheSound) {
  Run([&] {
    program->Do([&] { program->Rooms().engine.Player().SetEqualizerEnabled(true); });
    const double begun = Position();
    for (int turn = 0; turn < 150; ++turn) {
      program->Do([&] {
        forms::Range& volume = program->Main().sldVol;
        volume.Press();
        volume.Change(volume.Bounds.maximum * (turn % 8 + 2) / 10);
        volume.Release();
        forms::Range& band = program->Windows().configuration.sldEQ[turn % 12];
        band.Value = turn % 37 - 18;
        band.OnRelease();
      });
    }
    ExpectGoesOn();
    EXPECT_GT(Position(), begun);
    Retake([&] { EXPECT_GT(AudibleNow(), 0.3); });
  });
}

TEST_F(DisturbedProgram, OutputThatIsPluggedInIsInTheListWithoutARestartAndPlays) {
  Run([&] {
    const std::vector<std::string> before = Devices();
    EXPECT_EQ(before.back(), "Second");
    const std::string third = PlugInOutput("Third");
    std::vector<std::string> after = before;
    after.emplace_back("Third");
    EXPECT_TRUE(Until([&] { return Devices() == after; }));
    ExpectGoesOn();
    ChooseDevice("Third");
    ExpectGoesOn();
    EXPECT_NE(Pactl("list sinks").find("State: RUNNING\n\tName: Third"), std::string::npos);
    PullOut(third);
    ExpectGoesOn();
    EXPECT_EQ(Devices(), after) << "no index changes while the deck runs";
  });
}

TEST_F(DisturbedProgram, OutputThatIsChangedOrPulledOutTakesTheDocumentAlongFromWhereItWas) {
  Run([&] {
    ChooseDevice("Second");
    ExpectGoesOn();
    // What it played before may reach the recorder late.
    EXPECT_TRUE(recorder.Pass(0.6));
    EXPECT_LT(AudibleNow(), 0.1);
    PullOut(second);
    ExpectGoesOn();
    Retake([&] { EXPECT_GT(AudibleNow(), 0.3); });

    Pactl("unload-module module-null-sink");
    double reached = Position();
    EXPECT_TRUE(Until([&] {
      std::this_thread::sleep_for(300ms);
      return std::exchange(reached, Position()) == reached;
    })) << "no output is left";
    EXPECT_TRUE(Playing());
    const auto begun = std::chrono::steady_clock::now();
    PlugInOutput("deck");
    ExpectGoesOn();
    const double position = Position();
    // No document goes faster than the clock.
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begun;
    EXPECT_LT(position, reached + taken.count() + 1);
  });
}

}  // namespace
}  // namespace tavlo::test
