#pragma once

#include <vector>

#include "playback/audio_objects.h"
#include "support/sound_analysis.h"

namespace tavlo::test {

/// Feeds a document to a player as the program does: blocks of 500 ms, two in flight, each
/// stretched to the speed of the moment.
class SoundPump {
 public:
  SoundPump(playback::AudioPlayer& player, playback::AudioTransform& transform);

  /// The document and its channels, interleaved.
  void Load(const Sound& document, int channels = 1);
  void Play();
  /// Stops; returns the position that the ear has reached, in document samples.
  double Stop();
  /// Goes on from another place while it plays.
  void Seek(playback::SampleCount target);
  /// From now on the blocks that are asked for are late.
  void HoldBack() { heldBack_ = true; }
  /// They come, and no block is late any more.
  void LetCome();

  float SpeedPercent = 100;
  int Blocks = 0;    ///< Blocks queued.
  int Requests = 0;  ///< Events that asked for one.
  int Ends = 0;
  std::vector<double> Positions;  ///< What the timer events told, as document samples.
  double LoudestLevel = 0;

 private:
  void LoadPlayBuffer();

  playback::AudioPlayer& player_;
  playback::AudioTransform& transform_;
  Sound document_;
  int channels_ = 1;
  playback::SampleCount readPosition_ = 0;
  playback::SampleCount startSample_ = 0;
  playback::SampleCount blockSamples_ = 0;
  bool heldBack_ = false;
  int owed_ = 0;  ///< Blocks that were asked for and are late.
};

}  // namespace tavlo::test
