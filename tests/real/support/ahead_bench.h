#pragma once

#include "platform/ffmpeg/ahead_audio_file.h"
#include "support/errands_at_hand.h"
#include "support/plain_loop.h"

namespace tavlo::test {

/// A file that is read ahead, with a loop that it can wake.
struct AheadBench {
  AheadBench() : file(loop, errands, [this] { loop.Breathe(); }) { CountNews(); }
  explicit AheadBench(platform::AheadAudioFile::NewFile newFile)
      : file(
            loop, errands, [this] { loop.Breathe(); }, std::move(newFile)) {
    CountNews();
  }

  /// The next block, as the program takes it: one that is late is asked for again once it is told.
  /// What never comes stays late.
  playback::SampleArray Take(playback::SampleCount samples) {
    int told = Told;
    playback::SampleArray block = file.ReadArray(samples);
    while (block.late) {
      ++LateBlocks;
      if (!loop.WaitUntil([&] { return Told != told; }, kPatience)) return block;
      told = Told;
      block = file.ReadArray(samples);
    }
    return block;
  }

  PlainLoop loop;
  ErrandsAtHand errands;
  int Told = 0;
  int LateBlocks = 0;
  platform::AheadAudioFile file;

 private:
  void CountNews() {
    file.OnReady = [this] { ++Told; };
  }
};

}  // namespace tavlo::test
