#pragma once

#include <string>
#include <vector>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "playback/audio_engine.h"
#include "playback/equalizer.h"
#include "playback/position_display.h"
#include "playback/preview.h"
#include "playback/sound_shaping.h"
#include "playback/transport.h"
#include "support/simulated_audio.h"
#include "support/simulated_loop.h"
#include "window/main_window.h"

namespace tavlo::test {

/// The playback room on simulated edges, with one document of ten seconds at 8000 Hz ready to be
/// played.
struct PlaybackBench {
  SimulatedLoop loop;
  forms::MainForm form{loop};
  forms::ConfigurationForm config{loop};
  int placesStored = 0;
  window::MainWindow window{form, config, [this] { ++placesStored; }};
  SimulatedAudioFile file;
  SimulatedTransform transform;
  SimulatedPlayer player{loop};
  std::vector<std::string> prompts;
  bool configurationShown = false;
  playback::Hooks hooks;
  playback::AudioEngine engine{loop, form, config, window, file, transform, player, hooks};
  playback::Transport transport{loop, form, config, window, engine, hooks};
  playback::PositionDisplay position{form, window, engine, transport};
  playback::SoundShaping shaping{form, window, engine};
  playback::Equalizer equalizer{loop, config, player};
  playback::Preview preview{form, config, window, engine, transport, hooks};

  PlaybackBench() {
    hooks.playPrompt = [this](std::string_view name) { prompts.emplace_back(name); };
    hooks.applyEqualizer = [this] { equalizer.ApplyStored(); };
    hooks.showConfiguration = [this] { configurationShown = true; };
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
    engine.CurrentDocumentPath = "/doc.wav";
    file.Sounds["/doc.wav"] = sound;
  }

  /// A hand presses Play on the selected document.
  void Play() {
    form.cmdPlay.Enabled = true;
    form.cmdPlay.Press(forms::By::Hand);
  }
};

}  // namespace tavlo::test
