#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "pedals/pedal_pipe.h"
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
/// So many seconds after a stop the recording has everything.
constexpr double kTail = 0.6;
/// Three times what the tone itself steps from sample to sample.
const double kLargestStep = 3 * SlopeOfTone(440, 0.5, 48000);

std::string LongTone() {
  std::vector<std::int16_t> values;
  for (const float value : Tone(440, 60, kRate).samples) {
    values.push_back(static_cast<std::int16_t>(value * 32767));
  }
  return WaveBytes(values, kRate);
}

/// The real program with a document selected, and a foot on a stand-in for the watcher library: one
/// that hands out a descriptor to wait on, or one that must be polled.
struct PedalProgram : testing::TestWithParam<const char*> {
  void SetUp() override {
    ASSERT_TRUE(server.StartWithPrecedence());
    ASSERT_TRUE(recorder.Start());
    home.MakeRoot(QuietSettings({{"SkipBegEndFlag", "N"}, {"WindIncrement", "1"}}));
    home.AddToQueue(name, LongTone());
    foot = std::make_unique<PedalPipe>(home.Root() + "/PedalWatch.so", GetParam());
    program = std::make_unique<DrivenProgram>(home);
  }

  void Run(const std::function<void()>& script) {
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      script();
      program->Exit();
    });
    EXPECT_EQ(status, 0);
  }
  void Select() {
    program->ClickRow(program->RowOf(name));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
  }
  bool Playing() {
    return program->Ask([&] { return program->Rooms().engine.IsPlaying; });
  }
  bool Winding() {
    return program->Ask([&] { return program->Rooms().transport.tmrRewindForward.Enabled(); });
  }

  /// A thousand reports as a restless foot and a bouncing switch send them, the last with the
  /// right pedal down and up again; what was heard of it.
  Sound Storm() {
    const double from = recorder.Seconds();
    for (int press = 0; press < 167; ++press) {
      EXPECT_TRUE(foot->Report({1, 0, 4, 0, 2}));
      // Long enough to be heard now and then, or over before anybody looked.
      std::this_thread::sleep_for(press % 8 == 0 ? 120ms : 1ms * (press % 20));
      EXPECT_TRUE(foot->Report({0}));
    }
    EXPECT_TRUE(foot->Report({4}));
    EXPECT_TRUE(Until([&] { return Winding() && foot->IsRead(); }));
    EXPECT_TRUE(foot->Report({0}));
    EXPECT_TRUE(Until([&] { return foot->IsRead() && !Winding() && !Playing(); }));
    EXPECT_TRUE(recorder.Pass(kTail));
    EXPECT_FALSE(Winding());
    EXPECT_FALSE(Playing());
    const Sound heard = recorder.Since(from);
    EXPECT_GT(AudibleSeconds(heard), 1);
    return heard;
  }

  const std::string name = DocumentName("Tone", 1);
  SoundServer server;
  SoundRecorder recorder;
  Home home;
  std::unique_ptr<PedalPipe> foot;
  std::unique_ptr<DrivenProgram> program;
};

TEST_P(PedalProgram, CenterPedalSoundsTheDocumentForAsLongAsItIsDown) {
  Run([&] {
    Select();
    Retake([&] {
      const double from = recorder.Seconds();
      ASSERT_TRUE(foot->Report({2}));
      ASSERT_TRUE(Until([&] { return Playing(); }));
      EXPECT_TRUE(recorder.Pass(1.5));
      ASSERT_TRUE(foot->Report({0}));
      ASSERT_TRUE(Until([&] { return !Playing(); }));
      EXPECT_TRUE(recorder.Pass(kTail));
      const Sound heard = recorder.Since(from);
      EXPECT_GT(AudibleSeconds(heard), 1.0);
      EXPECT_NEAR(Cents(PitchOf(heard), 440), 0, 20);
      // The foot is up, so nothing sounds any more.
      const double later = recorder.Seconds();
      EXPECT_TRUE(recorder.Pass(0.5));
      EXPECT_EQ(AudibleSeconds(recorder.Since(later)), 0);
    });
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  });
}

struct PedalProgramInAStorm : PedalProgram {};

TEST_P(PedalProgramInAStorm, ThousandPressesEndAsTheLastReportSaysWithoutAClick) {
  Run([&] {
    Select();
    Retake([&] { EXPECT_LT(LargestStep(Storm()), kLargestStep); });
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  });
}

std::string KindOf(const testing::TestParamInfo<const char*>& library) {
  return library.param == std::string(TAVLO_PEDAL_STAND_IN) ? "ThatTells" : "ThatIsPolled";
}

INSTANTIATE_TEST_SUITE_P(Library, PedalProgram,
                         testing::Values(TAVLO_PEDAL_STAND_IN, TAVLO_POLLED_STAND_IN), KindOf);
INSTANTIATE_TEST_SUITE_P(Library, PedalProgramInAStorm, testing::Values(TAVLO_PEDAL_STAND_IN),
                         KindOf);

}  // namespace
}  // namespace tavlo::test
