#pragma once

#include "playback/audio_engine.h"
#include "playback/document_in_work.h"
#include "playback/preview.h"
#include "playback/transport.h"
#include "playback/voice.h"

namespace tavlo::playback {

/// The player, for the rooms above it.
struct Playback {
  DocumentInWork& document;
  AudioEngine& engine;
  Transport& transport;
  Preview& preview;
  Voice& voice;
};

}  // namespace tavlo::playback
