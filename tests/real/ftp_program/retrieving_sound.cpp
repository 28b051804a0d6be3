#include "ftp_program/retrieving_sound.h"

#include <QApplication>

#include "ftp_program/ftp_deck.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_analysis.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

constexpr int kRate = 8000;
constexpr double kTone = 440;
/// Longer than any test goes on with it.
constexpr double kToneSeconds = 900;
/// So many seconds later the recording has everything.
constexpr double kTail = 0.6;

std::string LongTone() {
  std::vector<std::int16_t> values;
  for (const float value : Tone(kTone, kToneSeconds, kRate).samples) {
    values.push_back(static_cast<std::int16_t>(value * 32767));
  }
  return WaveBytes(values, kRate);
}

}  // namespace

void RetrievingSound::SetUp() {
  ASSERT_TRUE(server.StartWithPrecedence());
  ASSERT_TRUE(recorder.Start());
  Prepare();
}

void RetrievingSound::Prepare() {
  foot.reset();
  home.emplace();
  home->MakeRoot(QuietSettings());
  home->AddToQueue(DocumentName("Tone"), LongTone());
  foot.emplace(home->Root() + "/PedalWatch.so");
}

void RetrievingSound::Run(const std::function<void()>& script) {
  program.emplace(*home);
  const int status = program->Run([&] {
    ASSERT_TRUE(program->Begin());
    SwitchRetrievalOn();
    program->ClickRow(0);
    ASSERT_TRUE(program->Until([&] { return Main().cmdPlay.Enabled.Get(); }));
    program->Click("cmdPlay");
    ASSERT_TRUE(Until([&] { return Playing() && Position() > 0; }));
    program->Do([&] { watch.emplace(program->Loop()); });
    script();
    program->Do([&] {
      watch->ExpectNothingHeldIt();
      watch.reset();
    });
    program->Click("cmdStop");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    ASSERT_TRUE(program->Until([&] { return Main().bConnect.Caption.Get() == "Connect"; }));
    program->Exit();
  });
  EXPECT_EQ(status, 0);
  program.reset();
}

void RetrievingSound::SwitchRetrievalOn() {
  ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
  program->Keys({keys::kAlt, 'f'});
  program->Keys({'c'});
  forms::ConfigurationForm& config = program->Windows().configuration;
  ASSERT_TRUE(program->Until([&] { return config.frmConfiguration.Visible.Get(); }));
  program->Keys({keys::kAlt, 'f'});
  program->Click("chkFtpAutoRetrieve");
  EXPECT_TRUE(program->Until([&] { return config.chkFtpAutoRetrieve.Value.Get(); }));
  program->Keys({keys::kEscape});
  ASSERT_TRUE(program->Until([&] { return !config.frmConfiguration.Visible.Get(); }));
}

bool RetrievingSound::Playing() {
  return program->Ask([&] { return program->Rooms().engine.IsPlaying; });
}

double RetrievingSound::Position() {
  return program->Ask([&] { return program->Rooms().documentInWork.CurrentSamplePosition; }) /
         kRate;
}

void RetrievingSound::Tick() {
  program->Do([&] {
    program->Loop().Post([&] { program->Rooms().ftp.autoRetrieve.tmrFtpAutoRetrieve.OnTick(); });
  });
}

void RetrievingSound::AwaitTurns(int turns) {
  const int before = program->Ask([&] { return watch->Ticks(); });
  EXPECT_TRUE(program->Until([&] { return watch->Ticks() >= before + turns; }));
}

Sound RetrievingSound::HeardSince(double from) const {
  EXPECT_TRUE(recorder.Pass(kTail));
  return recorder.Since(from);
}

void RetrievingSound::ExpectUnbroken(const Sound& heard) {
  EXPECT_GT(AudibleSeconds(heard), 0.5);
  EXPECT_NEAR(AudibleSeconds(heard), heard.Seconds(), 0.05);
  EXPECT_TRUE(Pauses(heard, 0.005).empty());
  EXPECT_LT(LargestStep(heard), 3 * SlopeOfTone(kTone, 0.5, heard.rate));
}

}  // namespace tavlo::test
