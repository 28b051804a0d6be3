#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <numbers>
#include <string>
#include <thread>
#include <utility>

#include "support/driven_program.h"
#include "support/screen.h"
#include "support/sound_analysis.h"
#include "support/sound_files.h"
#include "support/sound_recorder.h"
#include "support/sound_server.h"
#include "support/takes.h"

namespace {

/// The large piece of memory, counted from here, that is refused to this thread; 0 for none.
thread_local int refuseNumber = 0;
constexpr std::size_t kLarge = 4096;

}  // namespace

/// Stands in front of the library's own.
void* operator new(std::size_t size) {
  if (refuseNumber > 0 && size >= kLarge && --refuseNumber == 0) throw std::bad_alloc();
  if (void* const memory = std::malloc(std::max<std::size_t>(size, 1))) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

constexpr int kRate = 16000;
constexpr double kToneSeconds = 5;
/// So many seconds after a stop the recording has everything.
constexpr double kTail = 0.6;

std::string WaveOf(const Sound& sound) {
  std::vector<std::int16_t> values;
  for (const float value : sound.samples) {
    values.push_back(static_cast<std::int16_t>(std::lround(value * 32767)));
  }
  return WaveBytes(values, sound.rate);
}

/// The pitch climbs with the time, so that a sound tells its place in the document.
constexpr double kLowest = 300;
constexpr double kHertzPerSecond = 100;

Sound Sweep(double seconds) {
  Sound sweep{.rate = kRate};
  double phase = 0;
  for (int i = 0; i < seconds * kRate; ++i) {
    phase += 2 * std::numbers::pi * (kLowest + kHertzPerSecond * i / kRate) / kRate;
    sweep.samples.push_back(static_cast<float>(0.5 * std::sin(phase)));
  }
  return sweep;
}

/// The program with a sound card, and a tone and a sweep in the Queue.
struct ProgramSound : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(server.StartWithPrecedence());
    Record();
    home.MakeRoot(QuietSettings());
    home.AddToQueue(tone, WaveOf(Tone(440, kToneSeconds, kRate)));
    home.AddToQueue(sweep, WaveOf(Sweep(10)));
    program = std::make_unique<DrivenProgram>(home);
  }

  void Record() {
    recorder = std::make_unique<SoundRecorder>();
    ASSERT_TRUE(recorder->Start());
  }

  bool Playing() {
    return program->Ask([&] { return program->Rooms().engine.IsPlaying; });
  }
  double Position() {
    return program->Ask([&] { return program->Rooms().documentInWork.CurrentSamplePosition; }) /
           kRate;
  }

  /// Puts a document in work, stopped at its beginning.
  void Open(const std::string& name) {
    program->ClickRow(program->RowOf(name));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
    Play();
    Stop();
    program->Click("cmdSkipBeg");
    ASSERT_TRUE(Until([&] { return Position() == 0; }));
  }
  void Play() {
    program->Click("cmdPlay");
    ASSERT_TRUE(Until([&] { return Playing(); }));
  }
  void Stop() {
    program->Click("cmdStop");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
  }
  std::string Notice() {
    return program->Ask([&] { return program->Main().lblNotice.Value.Get(); });
  }
  /// A run that began ends of itself, unheard: it says so, and Complete is not offered.
  void ExpectUnheardEnd() {
    ASSERT_TRUE(Until([&] { return !Playing(); }));
    EXPECT_EQ(Notice(), "The rest of this document can not be read.");
    EXPECT_FALSE(program->Ask([&] { return program->Main().cmdComplete.Enabled.Get(); }));
    EXPECT_EQ(program->Box(), "");
  }
  void LeaveDocument() {
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  }
  void SetSpeed(int percent) {
    if (percent == 100) {
      program->Click("cmdNormalSpeed");
    } else {
      program->Drag("Slider1", percent < 100 ? 0 : 100);
    }
    ASSERT_TRUE(
        program->Until([&] { return program->Rooms().engine.PlaySpeedPercent == percent; }));
  }

  /// What was heard since that moment of the recording, with what is on its way to the ear.
  Sound HeardSince(double from) const {
    EXPECT_TRUE(recorder->Pass(kTail));
    return recorder->Since(from);
  }
  /// What was heard of `act`, without clicks and without pauses of `pause` seconds.
  Sound HeardOf(double pause, const std::function<void()>& act) {
    const double from = recorder->Seconds();
    act();
    const Sound heard = HeardSince(from);
    EXPECT_LT(StepsPerSlope(heard), 3);
    EXPECT_TRUE(Pauses(heard, pause).empty());
    return heard;
  }
  /// The largest step of a recording of the tone, by the tone's own.
  static double StepsPerSlope(const Sound& heard) {
    double loudest = 0;
    for (const float value : heard.samples) loudest = std::max<double>(loudest, std::abs(value));
    return LargestStep(heard) / SlopeOfTone(440, loudest, heard.rate);
  }

  void Run(const std::function<void()>& script) {
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      script();
      program->Exit();
    });
    EXPECT_EQ(status, 0);
  }

  const std::string tone = DocumentName("Tone", 1);
  const std::string sweep = DocumentName("Sweep", 2);
  SoundServer server;
  std::unique_ptr<SoundRecorder> recorder;
  Home home;
  std::unique_ptr<DrivenProgram> program;
};

TEST_F(ProgramSound, KeepsPitchAndLengthAtAnySpeedAndDoesNotClick) {
  const AmpleSupply supply;
  Run([&] {
    Open(tone);
    for (const int percent : {50, 100, 150}) {
      SCOPED_TRACE(percent);
      SetSpeed(percent);
      Retake([&] {
        const Sound heard = HeardOf(0.005, [&] {
          program->Click("cmdSkipBeg");
          Play();
          ASSERT_TRUE(Until([&] { return !Playing(); }));
        });
        EXPECT_NEAR(Cents(PitchOf(heard), 440), 0, 3);
        EXPECT_NEAR(AudibleSeconds(heard) * percent / 100, kToneSeconds, 0.01 * kToneSeconds);
      });
    }
    LeaveDocument();
  });
}

TEST_F(ProgramSound, PlaysAWaveOfTheHighestRateAtAnySpeed) {
  const AmpleSupply supply;
  const std::string high = DocumentName("High", 3);
  home.AddToQueue(high, WaveOf(Tone(440, 3, 384'000)));
  Run([&] {
    Open(high);
    for (const int percent : {50, 100, 150}) {
      SCOPED_TRACE(percent);
      SetSpeed(percent);
      Retake([&] {
        const Sound heard = HeardOf(0.005, [&] {
          program->Click("cmdSkipBeg");
          Play();
          ASSERT_TRUE(Until([&] { return !Playing(); }));
        });
        EXPECT_NEAR(Cents(PitchOf(heard), 440), 0, 3);
        EXPECT_NEAR(AudibleSeconds(heard) * percent / 100, 3, 0.03);
      });
    }
    EXPECT_EQ(Notice(), "");
    LeaveDocument();
  });
}

TEST_F(ProgramSound, StopsWhereTheEarWasAndSeeksWithoutAClick) {
  Run([&] {
    Open(sweep);
    for (const int percent : {50, 100, 150}) {
      SCOPED_TRACE(percent);
      SetSpeed(percent);
      Retake([&] {
        program->Click("cmdSkipBeg");
        const double from = recorder->Seconds();
        Play();
        std::this_thread::sleep_for(1700ms);
        Stop();
        const double stopped = Position();
        const Sound heard = HeardSince(from);
        // The pitch of the last 100 ms is that of their middle.
        const double end = static_cast<double>(Audible(heard, 0.02F).end) / heard.rate;
        const double pitch = PitchOf(heard.Between(end - 0.105, end - 0.005));
        const double ear = (pitch - kLowest) / kHertzPerSecond + 0.055 * percent / 100;
        EXPECT_NEAR(stopped, ear, 0.020);
      });
    }
    SetSpeed(100);
    LeaveDocument();

    Open(tone);
    Retake([&] {
      const Sound heard = HeardOf(0.03, [&] {
        program->Click("cmdSkipBeg");
        Play();
        std::this_thread::sleep_for(500ms);
        program->Drag("slPosition", 60);
        ASSERT_TRUE(Until([&] { return Position() > 0.55 * kToneSeconds; }));
        std::this_thread::sleep_for(500ms);
        Stop();
      });
      EXPECT_NEAR(Cents(PitchOf(heard), 440), 0, 3);
    });
    LeaveDocument();
  });
}

TEST_F(ProgramSound, StopsWhereTheEarWasInADocumentThatIsCutOffWhileItPlays) {
  const std::string cut = DocumentName("Cut", 3);
  const std::string path = home.AddToQueue(cut, WaveOf(Tone(440, 30, kRate)));
  Run([&] {
    program->ClickRow(program->RowOf(cut));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
    Play();
    ASSERT_TRUE(Until([&] { return Position() > 0.5; }));
    // Farther away than what is read ahead.
    constexpr double kSecondsLeft = 12;
    const auto bytesLeft = static_cast<std::uintmax_t>(44 + kSecondsLeft * kRate * 2);
    std::filesystem::resize_file(path, bytesLeft);
    ExpectUnheardEnd();
    const double reached = Position();
    EXPECT_NEAR(reached, kSecondsLeft, 0.001);
    EXPECT_NEAR(program->Ask([&] { return program->Main().slPosition.Value.Get(); }), 40, 1);

    program->Click("cmdSave");
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    const std::string saved = DocumentName("Cut", 3, static_cast<int>(reached * kRate));
    EXPECT_TRUE(std::filesystem::exists(home.QueuePath() + "/" + saved)) << saved;
  });
}

TEST_F(ProgramSound, StopsWhereTheEarWasWhenMemoryForABlockIsNotToBeHad) {
  Run([&] {
    Open(sweep);
    SetSpeed(150);
    // Each of the large pieces of memory that a block takes is refused once.
    bool refused = true;
    int refusals = 0;
    for (int number = 1; refused; ++number) {
      SCOPED_TRACE(number);
      program->Click("cmdSkipBeg");
      Play();
      refused = program->Ask([&] {
        refuseNumber = number;
        program->Rooms().engine.LoadPlayBuffer();
        return std::exchange(refuseNumber, 0) == 0;
      });
      if (!refused) break;
      ++refusals;
      ExpectUnheardEnd();
      EXPECT_LT(Position(), 9.5);
      ASSERT_LT(number, 30);
    }
    EXPECT_GT(refusals, 0);
    Stop();
    LeaveDocument();
  });
}

TEST_F(ProgramSound, LosesItsServerKeepsThePlaceAndPlaysWhenTheServerIsBack) {
  Run([&] {
    Open(tone);
    const double from = recorder->Seconds();
    Play();
    ASSERT_TRUE(Until([&] { return Position() > 1.3; }));
    server.Kill();
    double reached = Position();
    EXPECT_TRUE(Until([&] {
      std::this_thread::sleep_for(400ms);
      return std::exchange(reached, Position()) == reached;
    }));
    // What the server had for the recorder when it was killed went with it.
    EXPECT_NEAR(reached, AudibleSeconds(recorder->Since(from)), 0.3);
    std::this_thread::sleep_for(1s);
    EXPECT_EQ(Position(), reached);
    Stop();
    EXPECT_EQ(Position(), reached);

    ASSERT_TRUE(server.StartWithPrecedence());
    Record();
    Play();
    ASSERT_TRUE(Until([&] { return Position() > reached + 0.7; }));
    Stop();
    EXPECT_NEAR(Position(), reached + AudibleSeconds(HeardSince(0)), 0.3);
    LeaveDocument();
  });
}

}  // namespace
}  // namespace tavlo::test
