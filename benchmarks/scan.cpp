// Scans the Queue of a home twice, as the program does at its start and at a refresh, and says how
// long each scan took: the list, the name parser, the disk and the measuring of lengths are the
// real ones; only no window shows.
#include <QApplication>
#include <chrono>
#include <cstdio>
#include <string>

#include "lists/queue_list.h"
#include "platform/ffmpeg/ahead_audio_file.h"
#include "platform/ffmpeg/sound_meter.h"
#include "platform/qt/qt_loop.h"
#include "platform/reach/mounted_places.h"
#include "platform/reach/patient_disk.h"
#include "platform/sound/cubeb_player.h"
#include "platform/sound/soundtouch_transform.h"

namespace {

using namespace tavlo;

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

double SecondsOf(lists::QueueList& queue) {
  const auto begin = std::chrono::steady_clock::now();
  queue.RefreshQueueList();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_scan HOME\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  platform::qt::QtLoop loop;
  forms::MainForm form(loop);
  forms::ConfigurationForm config(loop);
  window::MainWindow window(form, config, [] {});
  NothingToHush hush;
  platform::FootGate feet(hush);
  platform::MountedPlaces places;
  platform::PlaceErrands errands(loop, loop, places, feet);
  const auto measured = std::make_shared<platform::MeasuredFiles>();
  platform::SoundMeters meters(measured);
  platform::PatientDisk disk(errands, meters, [&loop] { loop.Breathe(); });
  platform::AheadAudioFile file(
      loop, errands, [&loop] { loop.Breathe(); }, measured);
  platform::SoundTouchTransform transform;
  platform::CubebPlayer player(loop);
  Silence voice;
  NoSources sources;
  playback::Equalizer equalizer(loop, config, player);
  playback::MixerPage mixerPage(config, player, sources);
  playback::DocumentInWork document(form.cmdSkip);
  playback::AudioEngine engine(loop, window, document, {file, transform, player}, voice, equalizer,
                               mixerPage);
  store::WorkFolders folders(disk, std::string(argv[1]) + "/Lyrane/TavloDeck");
  store::DocumentNames names(loop);
  store::FileMoves moves(disk, folders);
  lists::QueueList queue(loop, window, {disk, folders, names, moves}, engine);

  const double first = SecondsOf(queue);
  const double again = SecondsOf(queue);
  if (queue.QueueCount == 0) {
    std::fprintf(stderr, "bench_scan: no documents in %s\n", folders.InQueuePath.c_str());
    return 1;
  }
  std::printf("first=%.6f again=%.6f\n", first, again);
  return 0;
}
