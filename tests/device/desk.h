#pragma once

#include <gtest/gtest.h>

#include <functional>
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

/// Seconds that may sound beyond where the program stopped; what sounds on is far longer.
inline constexpr double kMostAfterStop = 0.6;

/// How one take of a gesture went that says something only when it was quick.
enum class Pace {
  Quick,
  Slow,   ///< The machine took too long over it.
  Never,  ///< What it waits for did not come.
};
/// Takes a gesture from a clean beginning until the machine was quick enough for it. False when the
/// machine never was, or what the gesture waits for did not come.
bool TakeQuickly(const std::function<Pace()>& gesture);
/// Takes a gesture with a side pedal that must be over before the wind jumps a second time. The
/// gesture is false when what it waits for did not come.
bool TakeWithinAJump(const std::function<bool()>& gesture);

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
  /// Puts the document in work there, as if no pedal had been pressed yet. No pedal is down and
  /// nothing plays or winds.
  void StandAt(double seconds);
  /// What the program has seen of the pedals is this.
  bool Sees(bool left, bool center, bool right);
  bool SeesNone() { return Sees(false, false, false); }
  /// The program has acted on all that the USB pedal has said.
  bool UsbRests();
  /// Selects the document; true when it can be played.
  bool Select();
  /// Selects the document and touches the center pedal, so that the other pedals are listened to.
  bool Begin();
  /// Puts the document back into the Queue if it is in work; true when the list is there again.
  bool PutBack();
  /// Chooses the kind of pedal as the settings page does.
  void Choose(const char* kind, const char* port = kSerialPort);
  void AllowDoublePress(bool allowed);
  /// Stands in the middle of the document and presses a side pedal twice, in the time that makes a
  /// double press of it by the program's own clock. `hold` presses the pedal or lets it go;
  /// `lastPress` is where the program remembers its presses. Returns with the pedal up.
  bool PressTwice(const std::function<void(bool down)>& hold,
                  double playback::Transport::*lastPress);

  // Sound is asked for from a moment of the recording on. A machine that is busy makes gaps in it.

  /// Seconds that have sounded since then, without the gaps.
  double HeardSince(double moment) const;
  /// Waits until so many seconds have sounded since then; false when they never do.
  bool SoundsSince(double moment, double seconds) const;
  /// The pitch of the first whole stretch of sound since then, which is waited for; 0 when none
  /// comes.
  double PitchSince(double moment) const;
  /// Waits until nothing sounds any more; false when something always does.
  bool FallsSilent() const;

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
