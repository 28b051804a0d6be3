#pragma once

#include <string>
#include <vector>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "playback/audio_engine.h"
#include "playback/document_in_work.h"
#include "playback/equalizer.h"
#include "playback/mixer_page.h"
#include "playback/position_display.h"
#include "playback/preview.h"
#include "playback/sound_shaping.h"
#include "playback/transport.h"
#include "support/recording_voice.h"
#include "support/simulated_platform.h"
#include "window/main_window.h"

namespace tavlo::test {

/// The playback room on simulated edges, with one document of ten seconds at 8000 Hz ready to be
/// played.
struct PlaybackBench : SimulatedPlatform {
  forms::MainForm form{loop};
  forms::ConfigurationForm config{loop};
  int placesStored = 0;
  window::MainWindow window{form, config, [this] { ++placesStored; }};
  RecordingVoice voice;
  /// What was spoken, by the names of the recordings.
  std::vector<std::string>& prompts = voice.spoken;
  playback::Equalizer equalizer{loop, config, player};
  playback::MixerPage mixerPage{config, player, mixer};
  playback::DocumentInWork documentInWork{form.cmdSkip};
  playback::AudioEngine engine{loop,  window,    documentInWork, {file, transform, player},
                               voice, equalizer, mixerPage};
  playback::Transport transport{loop, window, documentInWork, engine, voice};
  playback::PositionDisplay position{window, documentInWork, engine, transport};
  playback::SoundShaping shaping{window, engine};
  playback::Preview preview{window, documentInWork, engine, voice};

  PlaybackBench() {
    form.frmMain.Visible = true;
    window.WindowHeight = form.frmMain.Height;
    window.WindowWidth = form.frmMain.Width;
    form.txtTitleBarHeight.Value = "840";
    form.txtVolume.Value = "50000";
    config.sliderABS.Value = 0;
    config.txtAutoPreview.Value = "5";
    config.txtWindIncrement.Value = "3";
    config.txtAccelerateWindIncrement.Value = "N";
    config.txtMinimizeMiniPlayer.Value = "N";
    Lay({.samples = 80'000, .rate = 8000, .channels = 1});
    // The document is the highlighted row of the Queue, as it is once a typist has chosen it.
    form.listViewInQueue.Add("doc.wav");
    form.listViewInQueue.ListIndex = 0;
  }

  /// Puts that sound under the path that Play opens.
  void Lay(const SimulatedSound& sound) {
    documentInWork.CurrentDocumentPath = "/doc.wav";
    file.Sounds["/doc.wav"] = sound;
  }

  /// A hand presses Play on the selected document.
  void Play() {
    form.cmdPlay.Enabled = true;
    form.cmdPlay.Press(forms::By::Hand);
  }
};

}  // namespace tavlo::test
