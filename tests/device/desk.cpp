#include "desk.h"

#include <QApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdlib>
#include <vector>

#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

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

Sound Desk::Listen(double seconds) {
  const double from = recorder.Seconds();
  Until([&] { return recorder.Seconds() > from + seconds; });
  return recorder.Since(from);
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
