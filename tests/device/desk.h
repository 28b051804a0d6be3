#pragma once

#include <gtest/gtest.h>

#include <string>

#include "hardware.h"
#include "support/driven_program.h"
#include "support/sound_analysis.h"
#include "support/sound_recorder.h"
#include "support/sound_server.h"

namespace tavlo::test {

/// Samples for each second of the document.
inline constexpr int kRate = 16000;
/// The document is one tone for so long, then a higher one, then a third.
inline constexpr double kPartSeconds = 20;
inline constexpr double kPartHertz[] = {440, 660, 880};

/// How far a measured pitch may be off, in cents. An emulated machine stutters now and then, and
/// each pause lowers the figure; the tone of another part is 500 away at least.
inline constexpr double kPitchTolerance = 250;

/// A desk with the real program on it, its loudspeaker recorded, and pedals that can be plugged
/// into the machine. All tests share the one program, one after the other, on the script's thread.
struct Desk {
  explicit Desk(Hardware& pedals) : hardware(pedals) {}

  /// Lays out a home with one document and starts the sound; false when there is none.
  bool LayOut();
  /// Starts the program, runs every test and leaves it. True when all went well.
  bool RunTests();

  /// What the settings page says of the pedal.
  std::string PedalState();
  /// What the program's watch knows of a USB pedal, whichever kind is chosen.
  pedals::UsbPresence UsbPresence();
  bool Playing();
  bool Winding();
  /// The document has been played and has not been put back.
  bool InWork();
  /// Seconds into the document.
  double Position();
  /// Selects the document; true when it can be played.
  bool Select();
  /// Selects the document and touches the center pedal, so that the other pedals are listened to.
  bool Begin();
  /// Puts the document back into the Queue if it is in work; true when the list is there again.
  bool PutBack();
  /// Chooses the kind of pedal as the settings page does.
  void Choose(const char* kind, const char* port = kSerialPort);
  void AllowDoublePress(bool allowed);
  /// What sounds during the next moment.
  Sound Listen(double seconds);

  /// Saves a picture of the whole screen in the folder that TAVLO_SCREENSHOTS names, or nowhere.
  void Picture(const std::string& name);

  Hardware& hardware;
  SoundServer server;
  SoundRecorder recorder;
  Home home;
  const std::string document = DocumentName("Tone", 1);
  DrivenProgram* program = nullptr;
};

/// What each test of pedals begins and ends with.
struct AtTheDesk : testing::Test {
  void TearDown() override;

  /// The desk of this process, which main lays out before the first test.
  static inline Desk* desk = nullptr;
};

}  // namespace tavlo::test
