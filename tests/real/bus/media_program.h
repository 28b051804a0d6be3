#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <memory>
#include <string>

#include "support/driven_program.h"
#include "support/real_bus.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {

/// What a shell command says, without the end of its last line; its errors, too.
inline std::string Said(const std::string& command) {
  std::string said;
  FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
  char part[4096];
  while (const std::size_t length = std::fread(part, 1, sizeof part, pipe)) {
    said.append(part, length);
  }
  ::pclose(pipe);
  while (said.ends_with('\n')) said.pop_back();
  return said;
}

inline std::string PlayerCtl(const std::string& command) {
  return Said("playerctl --player=tavlodeck " + command);
}

/// The real program on a bus of its own, with a long document in the Queue, and the desktop's own
/// tools that run players.
struct MediaProgram : testing::Test {
  static constexpr int kRate = 8000;
  static constexpr int kSeconds = 120;

  explicit MediaProgram(const store::Assignments& settings = {}) {
    home.MakeRoot(QuietSettings(settings));
    home.AddToQueue(name, WaveBytes(Chirp(kRate * kSeconds, kRate)));
  }
  void SetUp() override {
    ASSERT_NE(bus.Address(), "");
    // The sound does without that bus, whatever becomes of it.
    ASSERT_TRUE(server.Start());
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.Address().c_str(), 1);
    BeforeStart();
    program = std::make_unique<DrivenProgram>(home);
  }

  virtual void BeforeStart() {}

  void Run(const std::function<void()>& script) {
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      ASSERT_TRUE(Until([] { return PlayerCtl("status") == "Stopped"; }));
      script();
      LeaveDocument();
      program->Exit();
    });
    EXPECT_EQ(status, 0);
  }
  void Select() {
    program->ClickRow(program->RowOf(name));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
  }
  void LeaveDocument() {
    ASSERT_TRUE(program->Until([&] { return program->Main().frmMain.Visible.Get(); }));
    if (InWork()) program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  }
  /// Puts the document in work, standing.
  void Open() {
    Select();
    PlayerCtl("play");
    ASSERT_TRUE(Until([&] { return Playing(); }));
    PlayerCtl("pause");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
  }

  bool InWork() {
    return program->Ask([&] { return program->Rooms().documentInWork.IsInWork(); });
  }
  bool Playing() {
    return program->Ask([&] { return program->Rooms().engine.IsPlaying; });
  }
  double Seconds() {
    return program->Ask([&] { return program->Rooms().documentInWork.CurrentSamplePosition; }) /
           kRate;
  }
  /// By busctl, to the player's object.
  std::string Call(const std::string& interface, const std::string& call) const {
    return BusCtl("call", interface, call);
  }
  std::string Get(const std::string& property) const {
    return BusCtl("get-property", kPlayer, property);
  }
  std::string Set(const std::string& property) const {
    return BusCtl("set-property", kPlayer, property);
  }

  static constexpr const char* kPlayer = "org.mpris.MediaPlayer2.Player";
  static constexpr const char* kRoot = "org.mpris.MediaPlayer2";
  /// A subject that the windows show, and an author's number and system's number that they do not.
  const std::string name = "0815 0 Brown 471199 3 9 2004 14 5 12 2 0 17 cardio 0 0_.wav";
  RealBus bus;
  SoundServer server;
  Home home;
  std::unique_ptr<DrivenProgram> program;

 private:
  std::string BusCtl(const char* verb, const std::string& interface,
                     const std::string& rest) const {
    return Said("busctl '--address=" + bus.Address() + "' " + verb +
                " org.mpris.MediaPlayer2.tavlodeck /org/mpris/MediaPlayer2 " + interface + " " +
                rest);
  }
};

}  // namespace tavlo::test
