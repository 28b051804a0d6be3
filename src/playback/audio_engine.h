#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "playback/audio_objects.h"
#include "playback/document_in_work.h"
#include "playback/equalizer.h"
#include "playback/mixer_page.h"
#include "playback/voice.h"
#include "window/main_window.h"

namespace tavlo::playback {

/// How the measuring of a document before its first sound ended.
enum class Primed {
  Yes,
  Refused,     ///< The process is in trouble; nothing was changed.
  Unplayable,  ///< The file cannot be played.
  OutOfReach,  ///< The file is gone, or its folder cannot be reached.
  Empty,       ///< The file holds less than a millisecond of sound.
};

/// The glue around the three audio objects: two half-second blocks are kept in flight, each read
/// from the file, stretched to the playback speed and queued; the player asks for the next one.
///
/// A block that the file gives late is owed: the ear hears a gap, which the quiet line tells when
/// it lasts, and the document goes on when the block has come. A stop, a seek and another document
/// forget what is owed.
class AudioEngine {
 public:
  AudioEngine(base::Loop& loop, window::MainWindow& window, DocumentInWork& document,
              const AudioObjects& objects, Voice& voice, Equalizer& equalizer,
              MixerPage& mixerPage);
  ~AudioEngine();

  bool IsPlaying = false;
  bool IsPaused = false;
  /// Counts how often a document began to sound.
  std::uint64_t StartsOfPlay = 0;
  /// A document begins to sound, and its first blocks are read next.
  std::function<void()> OnStartPlay = [] {};
  int PlaySpeedPercent = 100;
  /// Sample of the file at which the current run of blocks began.
  double PlayStartSample = 0;
  SampleCount BufferSampleCount = 0;
  /// A slider is held down; the position display stands still.
  bool SliderDragging = false;
  /// Milliseconds as decimal text.
  std::string FilePositionText;

  /// Ends a preview.
  base::Timer tmrPlaySnipet;

  /// Once, at start-up: the device list, the selected device. Without a sound card it says so, and
  /// all but the sound goes on.
  void InitializeNCTcontrol();
  /// Opens and measures the document's CurrentDocumentPath and shows its length.
  Primed Prime();
  void CloseFile();
  /// True from a good Prime to the next CloseFile. A scan closes the file under a primed document.
  bool HoldsDocument() const { return holdsDocument_; }

  /// Puts the document's volume back, which a prompt may have overwritten.
  void ApplyDocumentVolume();
  void StartPlay();
  void StopPlay();
  /// Silence at once, for a rule that stops the document after something that may take its time. To
  /// the rules nothing has happened before that stop.
  void HushPlay() { player_.Silence(); }
  /// Reads, stretches and queues one block, now or when the file gives it. A fault loses the block
  /// without a word; then nothing more of the run is loaded, and the end that follows was not
  /// heard.
  void LoadPlayBuffer();
  /// Pauses and goes on without the transport's taking notice. Kept ready; no key calls it.
  void PausePlay();
  /// Plays on from another sample while the output runs.
  void ContinueFrom(SampleCount target);

  AudioFile& File() { return file_; }
  AudioPlayer& Player() { return player_; }

 private:
  /// Moves to the sample at which a run begins; returns the one that was reached.
  SampleCount BeginRunAt(SampleCount target);
  void LoadFirstBlocks();
  void LoadOwedBlocks();
  /// Loads the next block of the file. False when it is late.
  bool LoadNextBlock();
  void QueueBlock(SampleArray block);
  void StretchBlock(SampleArray& block);
  void ForgetOwedBlocks();
  /// Tells the player of what is owed, and the person of a gap that lasts.
  void FollowOwedBlocks();
  void HandleTimer(SampleCount currentSamples, double levelLeft, double levelRight);
  /// Whether the run that has ended reached the ear to the end of the document.
  bool HeardToItsEnd() const;
  void HandleEndPlay();
  void ShowHardwareFault();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  window::MainWindow& window_;
  DocumentInWork& document_;
  AudioFile& file_;
  AudioTransform& transform_;
  AudioPlayer& player_;
  Voice& voice_;
  Equalizer& equalizer_;
  MixerPage& mixerPage_;
  bool holdsDocument_ = false;
  /// A block of this run was lost, or could not be read to its end. What is behind it may not
  /// sound, for the ear would pass over the hole.
  bool runIsBroken_ = false;
  /// No block of this run has been queued yet.
  bool runIsFresh_ = false;
  /// Blocks that were asked for and are late.
  int owedBlocks_ = 0;
  /// Asks again for what is owed, since a loop that only breathes is not told that it has come.
  base::Timer retryOwed_;
  base::Timer tellGap_;
};

}  // namespace tavlo::playback
