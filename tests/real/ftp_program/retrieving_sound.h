#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "ftp_program/watched_loop.h"
#include "pedals/pedal_pipe.h"
#include "support/driven_program.h"
#include "support/home.h"
#include "support/sound_recorder.h"
#include "support/sound_server.h"

namespace tavlo::test {

/// The real program with a sound card and a pedal: it plays a long tone, and automatic retrieval is
/// on.
class RetrievingSound : public testing::Test {
 protected:
  void SetUp() override;
  /// A home as it is before the first start.
  void Prepare();

  /// Runs the program from the moment at which it does so to its end.
  void Run(const std::function<void()>& script);

  // For the script.

  forms::MainForm& Main() { return program->Main(); }
  std::string Folder(const std::string& name) const { return home->Root() + "/Files/" + name; }
  bool Playing();
  double Position();
  /// The next tick of the retrieval comes now.
  void Tick();
  void AwaitTurns(int turns = 30);
  /// What was heard since that moment of the recording, with what is on its way to the ear.
  Sound HeardSince(double from) const;
  /// It is the tone without a gap and without a click.
  static void ExpectUnbroken(const Sound& heard);

  SoundServer server;
  SoundRecorder recorder;
  std::optional<Home> home;
  std::optional<PedalPipe> foot;
  std::optional<DrivenProgram> program;
  std::optional<WatchedLoop> watch;

 private:
  void SwitchRetrievalOn();

  const AmpleSupply supply_;
};

}  // namespace tavlo::test
