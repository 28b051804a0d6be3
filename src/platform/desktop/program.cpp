#include "platform/desktop/program.h"

#include <QApplication>
#include <cstdlib>
#include <utility>

#include "platform/access/access_database.h"
#include "platform/beside/side_thread.h"
#include "platform/bus/bus_connection.h"
#include "platform/bus/mpris_service.h"
#include "platform/bus/portal_keys.h"
#include "platform/convert/plugin_conversion_libraries.h"
#include "platform/curl/curl_ftp_client.h"
#include "platform/desktop/desktop_keys.h"
#include "platform/desktop/detached_programs.h"
#include "platform/desktop/file_handover.h"
#include "platform/desktop/folders.h"
#include "platform/desktop/hang_up.h"
#include "platform/desktop/message_buses.h"
#include "platform/desktop/notifications.h"
#include "platform/desktop/open_folder.h"
#include "platform/desktop/root_lock.h"
#include "platform/desktop/screen_search.h"
#include "platform/desktop/session_end.h"
#include "platform/desktop/startup_feedback.h"
#include "platform/desktop/system_information.h"
#include "platform/desktop/this_process.h"
#include "platform/ffmpeg/ahead_audio_file.h"
#include "platform/ffmpeg/decoder_libraries.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "platform/ffmpeg/sound_meter.h"
#include "platform/libraries/patient_libraries.h"
#include "platform/mixer/pulse_mixer.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_windows.h"
#include "platform/reach/errands_beside.h"
#include "platform/reach/foot_gate.h"
#include "platform/reach/machine_folders.h"
#include "platform/reach/mounted_places.h"
#include "platform/reach/patient_disk.h"
#include "platform/reach/place_errands.h"
#include "platform/serial/posix_serial_port.h"
#include "platform/sound/cubeb_player.h"
#include "platform/sound/prompt_voice.h"
#include "platform/sound/soundtouch_transform.h"
#include "platform/sqlite/patient_settings.h"
#include "platform/usb/plugin_usb_watcher.h"
#include "store/work_folders.h"

namespace tavlo::platform::desktop {
namespace {

/// A site may have its prompts elsewhere and link them. Half a minute of the finest sound is less
/// than this.
constexpr PlainFile::Accepted kPromptFiles{.links = Links::Followed,
                                           .mostBytes = std::uint64_t{64} * 1024 * 1024};

}  // namespace

struct Program::Parts {
  Parts(int& argc, char** argv, std::unique_ptr<pedals::SerialPort> port, const TrustStore& trust,
        const std::vector<std::string>& files, const std::string& sessionBus)
      : application(argc, argv),
        serialPort(port ? std::move(port) : MachinePort()),
        ftpClient(loop, loop, trust),
        bus(loop, loop, sessionBus),
        filesToOpen(files) {
    // The watch, the port and the keys end with the rooms, and nobody lets go of them after that.
    feet.Watch(usbWatcher, [this] { return deck.Built()->usbPedal.ReleaseStops(); });
    if (WatchedFoot* const keys = globalKeys.Foot()) {
      feet.Watch(*keys, [this] { return deck.Built()->farHand.ReleaseStops(); });
    }
    loop.TellChanges = [this] { mediaBus.TellChanges(); };
  }
  ~Parts() { loop.TellChanges = nullptr; }

  std::unique_ptr<pedals::SerialPort> MachinePort() {
    auto machine = std::make_unique<PosixSerialPort>();
    feet.Watch(*machine, [this] { return deck.Built()->serialPedal.ReleaseStops(); });
    return machine;
  }

  void Breathe() {
    if (!sessionEnds) loop.Breathe();
  }

  /// From here on nothing breathes any more: the screen may be gone, and with it the toolkit.
  void EndSession(void (shell::Deck::*how)()) {
    sessionEnds = true;
    errands.StopBreathing();
    (deck.*how)();
  }

  /// When the session ends the process ends here: the session does not wait, and the toolkit could
  /// not close its windows on a screen that is gone. What the next start needs is given back first,
  /// since a call that was left behind keeps the process, and all that it has open, for longer.
  void End(int status) {
    if (!sessionEnds) return loop.Quit(status);
    databases.CloseAll();
    fileHandover.Close();
    rootLock.GiveBack();
    HangUp();
    std::_Exit(status);
  }

  bool sessionEnds = false;
  const StartupFeedback startupFeedback;
  QApplication application;
  Notifications notifications;
  const std::string root = InstallRoot();
  qt::QtLoop loop;
  CubebPlayer audioPlayer{loop};
  MountedPlaces places;
  FootGate feet{audioPlayer};
  PlaceErrands errands{loop, loop, places, feet};
  const std::shared_ptr<MeasuredFiles> measured = std::make_shared<MeasuredFiles>();
  SoundMeters meters{measured};
  PatientDisk disk{errands, meters, [this] { Breathe(); }};
  MachineFolders browsableFolders{errands, places, HomeFolder()};
  PatientSettingsDatabases databases{
      errands, store::ShippedDatabase{.root = root, .revision = TAVLO_REVISION},
      [reader = AccessReader()](const std::string& path) {
        return OpenAccessDatabase(path, reader);
      }};
  PatientLibraries libraryInspector{errands};
  AheadAudioFile audioFile{loop, errands, [this] { Breathe(); }, measured};
  SoundTouchTransform audioTransform;
  SideThread promptThread;
  PromptVoice promptVoice{loop, audioPlayer,
                          std::make_shared<FfmpegAudioFile>(std::function<void()>(), kPromptFiles),
                          promptThread};
  PulseMixer sourceMixer{loop, loop};
  const std::unique_ptr<pedals::SerialPort> serialPort;
  const store::WorkFolders libraries{disk, root};
  PluginUsbWatcher usbWatcher{errands, libraries.PedalWatchPath()};
  PluginConversionLibraries conversionLibraries{errands, libraries};
  ErrandsBeside startErrands{errands};
  DetachedPrograms programs{startErrands};
  CurlFtpClient ftpClient;
  BusConnection bus;
  DesktopKeys globalKeys{loop, [this] { return std::make_unique<PortalKeys>(loop, bus); }};
  /// It gives the lock back by an errand, which looks at the pedals and at held keys.
  RootLock rootLock{errands, root};
  /// Its door closes before the root is given back, for the next copy opens one under that name.
  SocketHandover fileHandover{loop, loop, root};
  MprisService mediaBus{bus};
  const std::vector<std::string> filesToOpen;
  shell::Deck deck{{.loop = loop,
                    .disk = disk,
                    .browsableFolders = browsableFolders,
                    .databases = databases,
                    .libraryInspector = libraryInspector,
                    .audioFile = audioFile,
                    .audioTransform = audioTransform,
                    .audioPlayer = audioPlayer,
                    .promptMediaControl = promptVoice,
                    .sourceMixer = sourceMixer,
                    .serialPort = *serialPort,
                    .usbWatcher = usbWatcher,
                    .conversionLibraries = conversionLibraries,
                    .notifier = notifications,
                    .ftpClient = ftpClient,
                    .programStarter = programs,
                    .fileHandover = fileHandover,
                    .globalKeys = globalKeys.Keys(),
                    .mediaBus = mediaBus,
                    .claimOwner = ThisProcess(),
                    .installRoot = root,
                    .shareFolder = ShareFolder(),
                    .filesToOpen = filesToOpen,
                    .claimRoot = [this] { return rootLock.Claim(); },
                    .showSystemInformation = ShowSystemInformation,
                    .openFolder = [](const std::string& folder) { return OpenFolder(folder); },
                    .endProcess = [this](int status) { End(status); }}};
  qt::QtWindows windows{loop,
                        audioPlayer,
                        deck.windows.main,
                        deck.windows.splash,
                        deck.windows.about,
                        deck.windows.configuration};
  DecoderLibraries decoderLibraries;
};

Program::Program(int& argc, char** argv, std::unique_ptr<pedals::SerialPort> serialPort,
                 const TrustStore& trust, const std::vector<std::string>& files) {
  // One that is silent now may wake up, and media keys then work.
  const std::string sessionBus = SessionBusAddress();
  LeaveSilentBuses();
  const ScreenSearch search;
  parts_ = std::make_unique<Parts>(argc, argv, std::move(serialPort), trust, files, sessionBus);
  qt::PrepareApplication();
}

Program::~Program() = default;

int Program::Run() {
  parts_->loop.Post([this] {
    parts_->deck.Start();
    if (parts_->deck.Built()) {
      parts_->decoderLibraries.LoadBeside();
    } else {
      // It has handed over its files, or said in a box why it can not go on.
      parts_->startupFeedback.End();
    }
  });
  const auto end = [this](void (shell::Deck::*how)()) {
    return [this, how] { parts_->EndSession(how); };
  };
  const SessionEnd session(
      {.ends = end(&shell::Deck::EndSession), .screenGone = end(&shell::Deck::EndSessionNow)});
  return parts_->loop.Run();
}

shell::Deck& Program::Deck() { return parts_->deck; }

qt::QtLoop& Program::Loop() { return parts_->loop; }

}  // namespace tavlo::platform::desktop
