#include "desk.h"

#include <QApplication>
#include <QPixmap>
#include <QScreen>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// How often a gesture is taken for which the machine is too slow.
constexpr int kTakes = 40;
/// A wind jumps at the press, and again after this.
constexpr auto kBetweenJumps = 1s;
/// A second press counts as one of a double press between these, in milliseconds.
constexpr long kDoublePressAfter = 100;
constexpr long kDoublePressBefore = 500;

/// Seconds of silence that are a gap; no tone crosses zero for so long.
constexpr double kGap = 0.005;
/// Seconds without a gap that tell the pitch of a tone.
constexpr double kWhole = 0.25;
/// Seconds of silence that are not taken for a gap.
constexpr double kSilence = 0.5;

/// What sounds between the gaps.
std::vector<Extent> Stretches(const Sound& sound) {
  const Extent audible = Audible(sound);
  std::vector<Extent> stretches;
  std::size_t begin = audible.begin;
  for (const Extent& gap : Pauses(sound, kGap)) {
    stretches.push_back({.begin = begin, .end = gap.begin});
    begin = gap.end;
  }
  stretches.push_back({.begin = begin, .end = audible.end});
  return stretches;
}

/// The first stretch that is long enough to tell a pitch; empty when there is none.
Sound FirstWhole(const Sound& sound) {
  for (const Extent& stretch : Stretches(sound)) {
    const double begin = static_cast<double>(stretch.begin) / sound.rate;
    if (static_cast<double>(stretch.end) / sound.rate >= begin + kWhole) {
      return sound.Between(begin, begin + kWhole);
    }
  }
  return {};
}

std::string ThreeTones() {
  std::vector<std::int16_t> values;
  for (const double hertz : kPartHertz) {
    for (const float value : Tone(hertz, kPartSeconds, kRate).samples) {
      values.push_back(static_cast<std::int16_t>(value * 32767));
    }
  }
  return WaveBytes(values, kRate);
}

/// Around all tests: the program comes up before the first and leaves after the last, with a pedal
/// plugged in.
struct Sitting : testing::Environment {
  explicit Sitting(Desk& ownDesk) : desk(ownDesk) {}
  void SetUp() override { ASSERT_TRUE(desk.program->Begin()) << desk.program->Box(); }
  void TearDown() override {
    EXPECT_TRUE(desk.hardware.PlugPedal() && desk.hardware.PermitPedal());
    EXPECT_TRUE(Until([this] { return desk.UsbPresence() == pedals::UsbPresence::Ready; }));
    desk.program->Exit();
  }

  Desk& desk;
};

}  // namespace

bool TakeQuickly(const std::function<Pace()>& gesture) {
  for (int take = 0; take < kTakes; ++take) {
    const Pace pace = gesture();
    if (pace != Pace::Slow) return pace == Pace::Quick;
  }
  return false;
}

bool TakeWithinAJump(const std::function<bool()>& gesture) {
  return TakeQuickly([&] {
    const auto begun = steady_clock::now();
    if (!gesture()) return Pace::Never;
    return steady_clock::now() - begun < kBetweenJumps ? Pace::Quick : Pace::Slow;
  });
}

bool Desk::LayOut() {
  home.MakeRoot(
      QuietSettings({{"AudioPromptsFlag", "Y"}, {"SkipBegEndFlag", "Y"}, {"WindIncrement", "10"}}));
  home.AddToQueue(document, ThreeTones());
  return server.StartWithPrecedence() && recorder.Start();
}

bool Desk::RunTests() {
  DrivenProgram driven(home);
  program = &driven;
  // The framework owns it from here on.
  testing::AddGlobalTestEnvironment(new Sitting(*this));
  bool passed = false;
  const int status = driven.Run([&] { passed = RUN_ALL_TESTS() == 0; });
  return passed && status == 0;
}

std::string Desk::PedalState() {
  return program->Ask(
      [this] { return program->Windows().configuration.lblPedalState.Value.Get(); });
}

pedals::UsbPresence Desk::UsbPresence() {
  return program->Ask([this] { return program->Rooms().usbPedal.Presence(); });
}

bool Desk::Playing() {
  return program->Ask([this] { return program->Rooms().engine.IsPlaying; });
}

bool Desk::Winding() {
  return program->Ask([this] { return program->Rooms().transport.tmrRewindForward.Enabled(); });
}

bool Desk::InWork() {
  return program->Ask([this] { return program->Main().cmdSkip.Enabled.Get(); });
}

double Desk::Position() {
  return program->Ask(
      [this] { return program->Rooms().documentInWork.CurrentSamplePosition / kRate; });
}

void Desk::StandAt(double seconds) {
  program->Do([&] {
    program->Rooms().footPedal.Reset();
    program->Rooms().documentInWork.CurrentSamplePosition = seconds * kRate;
  });
}

bool Desk::Sees(bool left, bool center, bool right) {
  return program->Ask([&] {
    const pedals::FootPedal& pedal = program->Rooms().footPedal;
    return pedal.LeftPedalDown == left && pedal.CenterPedalDown == center &&
           pedal.RightPedalDown == right;
  });
}

bool Desk::UsbRests() {
  return program->Ask([this] { return !program->Rooms().usbPedal.TmrHIDRead.Enabled(); });
}

bool Desk::Select() {
  program->ClickRow(program->RowOf(document));
  return program->Until([this] { return program->Main().cmdPlay.Enabled.Get(); });
}

bool Desk::Begin() {
  return Select() && hardware.Press({2, 0}) && Until([this] { return InWork() && !Playing(); });
}

bool Desk::PutBack() {
  if (InWork()) program->Click("cmdSkip");
  return Until([this] { return program->IsReady(); });
}

void Desk::Choose(const char* kind, const char* port) {
  program->Do([&] {
    forms::ConfigurationForm& settings = program->Windows().configuration;
    settings.txtSerialFootPedalComPort.Value = port;
    settings.txtUSBorSerialFootPedal.Value = kind;
  });
}

void Desk::AllowDoublePress(bool allowed) {
  program->Do([&] { program->Windows().configuration.txtSkipBegEnd.Value = allowed ? "Y" : "N"; });
}

bool Desk::PressTwice(const std::function<void(bool down)>& hold,
                      double playback::Transport::*lastPress) {
  const auto pressed = [&] {
    return program->Ask([&] { return program->Rooms().transport.*lastPress; });
  };
  const auto millisecondsAfter = [](double later, double earlier) {
    return std::lround((later - earlier) * 1000);
  };
  return TakeQuickly([&] {
    StandAt(1.5 * kPartSeconds);
    hold(true);
    if (!Until([&] { return pressed() != 0; })) return Pace::Never;
    const double first = pressed();
    hold(false);
    const bool mayFollow =
        Until([&] { return SeesNone(); }) && Until([&] {
          const double now =
              program->Ask([this] { return program->Loop().WallClock().SecondsSinceMidnight(); });
          return std::abs(millisecondsAfter(now, first)) > kDoublePressAfter;
        });
    if (!mayFollow) return Pace::Never;
    hold(true);
    if (!Until([&] { return pressed() != first; })) return Pace::Never;
    const long between = millisecondsAfter(pressed(), first);
    hold(false);
    if (!Until([&] { return SeesNone(); })) return Pace::Never;
    const bool isDouble = between > kDoublePressAfter && between < kDoublePressBefore;
    return isDouble ? Pace::Quick : Pace::Slow;
  });
}

double Desk::HeardSince(double moment) const {
  const Sound sound = recorder.Since(moment);
  std::size_t heard = 0;
  for (const Extent& stretch : Stretches(sound)) heard += stretch.end - stretch.begin;
  return static_cast<double>(heard) / sound.rate;
}

bool Desk::SoundsSince(double moment, double seconds) const {
  return Until([&] { return HeardSince(moment) > seconds; });
}

double Desk::PitchSince(double moment) const {
  Sound whole;
  Until([&] {
    whole = FirstWhole(recorder.Since(moment));
    return !whole.samples.empty();
  });
  return PitchOf(whole);
}

bool Desk::FallsSilent() const {
  const double from = recorder.Seconds();
  return Until([&] {
    const double now = recorder.Seconds();
    return now >= from + kSilence && AudibleSeconds(recorder.Since(now - kSilence)) == 0;
  });
}

void Desk::Picture(const std::string& name) {
  const char* const folder = std::getenv("TAVLO_SCREENSHOTS");
  if (!folder) return;
  EXPECT_TRUE(program->Ask([&] {
    const QPixmap picture = QApplication::primaryScreen()->grabWindow(0);
    return picture.save(QString("%1/%2.png").arg(folder, QString::fromStdString(name)));
  }));
}

void AtTheDesk::TearDown() {
  EXPECT_TRUE(desk->hardware.UnplugPedal());
  EXPECT_TRUE(desk->hardware.UnplugSerialBox());
  EXPECT_TRUE(Until([] { return desk->UsbPresence() == pedals::UsbPresence::NoPedal; }));
  EXPECT_TRUE(Until([] { return !desk->Playing() && !desk->Winding(); }));
  desk->Choose("U");
  desk->AllowDoublePress(true);
  EXPECT_TRUE(desk->PutBack());
}

}  // namespace tavlo::test
