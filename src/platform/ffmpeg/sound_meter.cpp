#include "platform/ffmpeg/sound_meter.h"

namespace tavlo::platform {
namespace {

using Outcome = store::MeasuredSound::Outcome;

Outcome OutcomeOf(playback::OpenResult result) {
  switch (result) {
    case playback::OpenResult::Opened:
      return Outcome::Opened;
    case playback::OpenResult::Unplayable:
      return Outcome::Unplayable;
    case playback::OpenResult::OutOfReach:
      break;
  }
  return Outcome::OutOfReach;
}

}  // namespace

store::MeasuredSound SoundMeter::Measure(const store::HeldFile& held, Errands::Sign& sign) {
  sign_ = &sign;
  const playback::OpenResult result = file_.OpenHeldFile(held);
  sign_ = nullptr;
  if (file_.OpenStatus() < 0) return {.outcome = Outcome::ProcessInTrouble};
  return {.outcome = OutcomeOf(result),
          .samplesPerSecond = file_.SampleRate(),
          .channels = file_.ChannelCount(),
          .totalSamples = file_.TotalSamples()};
}

}  // namespace tavlo::platform
