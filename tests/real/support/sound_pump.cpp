#include "support/sound_pump.h"

#include <algorithm>
#include <utility>

namespace tavlo::test {

using playback::SampleArray;
using playback::SampleCount;

SoundPump::SoundPump(playback::AudioPlayer& player, playback::AudioTransform& transform)
    : player_(player), transform_(transform) {
  const auto request = [this] {
    ++Requests;
    LoadPlayBuffer();
  };
  player.OnEndArrayPlay = request;
  player.OnRequestOnLoadArray = request;
  player.OnEndPlay = [this] { ++Ends; };
  player.OnTimer = [this](SampleCount samples, double left, double right) {
    Positions.push_back(static_cast<double>(startSample_ + samples));
    LoudestLevel = std::max({LoudestLevel, left, right});
  };
}

void SoundPump::Load(const Sound& document, int channels) {
  document_ = document;
  channels_ = channels;
  readPosition_ = 0;
  player_.SetOutputFormat(document.rate, channels);
  blockSamples_ = player_.MillisecondsToSamples(500);
}

void SoundPump::Play() {
  owed_ = 0;
  startSample_ = readPosition_;
  transform_.Reset(document_.rate);
  if (!player_.StartOutput()) return;
  LoadPlayBuffer();
  LoadPlayBuffer();
}

double SoundPump::Stop() {
  owed_ = 0;
  player_.StopOutput();
  readPosition_ = static_cast<SampleCount>(Positions.back());
  return Positions.back();
}

void SoundPump::Seek(SampleCount target) {
  owed_ = 0;
  player_.ClearQueue();
  readPosition_ = target;
  startSample_ = target;
  transform_.Reset(document_.rate);
  LoadPlayBuffer();
  LoadPlayBuffer();
}

void SoundPump::LetCome() {
  heldBack_ = false;
  for (; owed_ > 0; --owed_) LoadPlayBuffer();
  player_.HoldRequestOpen(false);
}

void SoundPump::LoadPlayBuffer() {
  if (heldBack_) {
    ++owed_;
    return player_.HoldRequestOpen(true);
  }
  const auto total = static_cast<SampleCount>(document_.samples.size()) / channels_;
  const SampleCount end = std::min(readPosition_ + blockSamples_, total);
  if (end == readPosition_) return;
  SampleArray block{.channels = channels_,
                    .sourceBegin = static_cast<double>(readPosition_),
                    .sourceEnd = static_cast<double>(end),
                    .last = end == total};
  block.values.assign(document_.samples.begin() + readPosition_ * channels_,
                      document_.samples.begin() + end * channels_);
  readPosition_ = end;
  if (channels_ == 2) {
    SampleArray left = transform_.SplitLeft(block);
    SampleArray right = transform_.SplitRight(block);
    transform_.ChangeSpeed(left, SpeedPercent);
    transform_.ChangeSpeed(right, SpeedPercent);
    block = transform_.JoinChannels(left, right);
  } else {
    transform_.ChangeSpeed(block, SpeedPercent);
  }
  player_.QueueArray(std::move(block));
  ++Blocks;
}

}  // namespace tavlo::test
