#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "platform/ffmpeg/ahead_audio_file.h"
#include "platform/ffmpeg/sound_meter.h"
#include "platform/qt/qt_loop.h"
#include "platform/reach/mounted_places.h"
#include "platform/reach/patient_disk.h"
#include "platform/sound/cubeb_player.h"
#include "platform/sound/soundtouch_transform.h"
#include "playback/audio_engine.h"
#include "playback/equalizer.h"
#include "playback/mixer_page.h"
#include "store/document_files.h"

namespace tavlo::bench {

class Silence : public playback::Voice {
  void PlayPrompt(playback::PromptName) override {}
  void StopPrompt() override {}
};

class NoSources : public playback::SourceMixer {
  void SelectDevice(int, const std::string&) override {}
  int SourceCount() const override { return 0; }
  std::vector<std::string> DevicesNow() const override { return {}; }
  void SelectSource(int) override {}
  std::string SourceName() const override { return ""; }
  bool SourceHasVolume() const override { return false; }
  int SourceVolume() const override { return 0; }
  bool SourceHasBalance() const override { return false; }
  int SourceBalance() const override { return 0; }
  bool SourceHasMute() const override { return false; }
  bool SourceMute() const override { return false; }
  int SourceHasAdvanced() const override { return -1; }
  void SetSourceVolume(int) override {}
  void SetSourceBalance(int) override {}
  void SetSourceMute(bool) override {}
};

class NothingToHush : public platform::Hush {
  void Silence() override {}
};

class NothingToCount : public store::RescueCount {
  void CountRescued() override {}
};

/// The program's loop. Nobody is there to close a box, so one ends the process with its text.
class LoopWithoutHands : public platform::qt::QtLoop {
 protected:
  base::Reply ShowBox(const base::MessageBox& box) override;
};

/// What the lists and the retrieval build on, over the real disk of a home: the loop, the name
/// parser and the measuring of lengths are the program's. No window shows and nothing sounds. Needs
/// the QApplication.
struct QuietRooms {
  explicit QuietRooms(const std::string& home);

  LoopWithoutHands loop;
  forms::MainForm form{loop};
  forms::ConfigurationForm config{loop};
  window::MainWindow window{form, config, [] {}};
  NothingToHush hush;
  platform::FootGate feet{hush};
  platform::MountedPlaces places;
  platform::PlaceErrands errands{loop, loop, places, feet};
  const std::shared_ptr<platform::MeasuredFiles> measured =
      std::make_shared<platform::MeasuredFiles>();
  platform::SoundMeters meters{measured};
  platform::PatientDisk disk{errands, meters, [this] { loop.Breathe(); }};
  platform::AheadAudioFile file{loop, errands, [this] { loop.Breathe(); }, measured};
  platform::SoundTouchTransform transform;
  platform::CubebPlayer player{loop};
  Silence voice;
  NoSources sources;
  playback::Equalizer equalizer{loop, config, player};
  playback::MixerPage mixerPage{config, player, sources};
  playback::DocumentInWork document{form.cmdSkip};
  playback::AudioEngine engine{loop,  window,    document, {file, transform, player},
                               voice, equalizer, mixerPage};
  store::WorkFolders folders;
  store::DocumentNames names{loop};
  store::FileMoves moves{disk, folders};
  NothingToCount rescued;
  const store::DocumentFiles files{disk, folders, names, moves, rescued};
};

}  // namespace tavlo::bench
