#include "simulation/invariants.h"

#include <algorithm>
#include <set>
#include <vector>

#include "simulation/control_rules.h"
#include "simulation/ftp_rules.h"
#include "simulation/mixer_rules.h"
#include "simulation/other_window.h"

namespace tavlo::simulation {
namespace {

using base::operator""ms;
using forms::MainForm;
using playback::Wind;
using shell::Rooms;

/// Time from one feed of the player to the next.
constexpr base::Duration kOneFeed = 10ms;

bool InWork(Desk& desk) { return desk.Main().cmdSkip.Enabled; }

bool GuardsAreDown(Desk& desk) {
  const window::Guards& guards = desk.Rooms()->mainWindow.guards;
  return guards.MayPlay() && !guards.RefreshIsQuiet();
}

bool PointerIsTheArrow(Desk& desk) {
  if (desk.Main().frmMain.MousePointer == forms::Pointer::Arrow) desk.nothingToDelete = false;
  return desk.Main().frmMain.MousePointer == forms::Pointer::Arrow || desk.nothingToDelete;
}

bool OneWindowShows(Desk& desk) {
  return desk.Main().frmMain.Visible != desk.Config().frmConfiguration.Visible;
}

bool NoWalkHoldsAnything(Desk& desk) { return desk.disk.HeldByWalks() == 0; }

bool NoBoxStands(Desk& desk) { return !desk.loop.MessageBoxOpen(); }

bool DeckRunsWhilePlayingOrWinding(Desk& desk) {
  const Rooms& rooms = *desk.Rooms();
  const bool winds = rooms.transport.WindDirection != Wind::None;
  return desk.Main().DeckRuns == (rooms.engine.IsPlaying || winds);
}

bool OneThingSounds(Desk& desk) {
  const Rooms& rooms = *desk.Rooms();
  const bool winds = rooms.transport.WindDirection != Wind::None;
  return rooms.engine.IsPlaying == desk.player.IsRunning() && !(rooms.engine.IsPlaying && winds);
}

bool WindHasItsTimer(Desk& desk) {
  const playback::Transport& transport = desk.Rooms()->transport;
  return transport.tmrRewindForward.Enabled() == (transport.WindDirection != Wind::None);
}

bool PreviewIsOfTheList(Desk& desk) {
  return !InWork(desk) || !desk.Rooms()->engine.tmrPlaySnipet.Enabled();
}

bool WhatPlaysCanBeStopped(Desk& desk) {
  const MainForm& main = desk.Main();
  const forms::Command& stop = InWork(desk) ? main.cmdStop : main.cmdImportCompleteSnipetStop;
  return !desk.Rooms()->engine.IsPlaying || (stop.Enabled && stop.Visible);
}

bool MiniPlayerMeansWork(Desk& desk) {
  return InWork(desk) == desk.Rooms()->mainWindow.MiniPlayerShows();
}

bool OneViewShows(Desk& desk) {
  const MainForm& main = desk.Main();
  int shown = 0;
  for (const forms::Pane* frame :
       {&main.frameInQueue, &main.frameCompleted, &main.frameImport, &main.frameFtp}) {
    shown += frame->Visible ? 1 : 0;
  }
  return shown == 1;
}

bool ReportsKnowTheView(Desk& desk) {
  const std::string& word = desk.Rooms()->mainWindow.CurrentView;
  return (word == "Queue") == desk.Main().frameInQueue.Visible &&
         (word == "Complete") == desk.Main().frameCompleted.Visible;
}

bool PlayHasADocument(Desk& desk) {
  return !desk.Main().cmdPlay.Enabled || !desk.Rooms()->opening.SelectedQueueFile.empty();
}

bool PlayIsOfTheSelectedDocument(Desk& desk) {
  const Rooms& rooms = *desk.Rooms();
  return !desk.Main().cmdPlay.Enabled ||
         rooms.documentInWork.CurrentDocumentPath ==
             Desk::Path("/Files/InQueue/") + rooms.opening.SelectedQueueFile;
}

bool CompletedKeysNeedRows(Desk& desk) {
  const MainForm& main = desk.Main();
  if (!main.frameCompleted.Visible) return true;
  const bool hasRows = !main.listViewCompleted.Rows().empty();
  return main.cmdMoveToQueue.Enabled == hasRows && main.cmdDeleteOneCompleted.Enabled == hasRows &&
         main.cmdDeleteAllCompleted.Enabled == hasRows;
}

bool WindowIsOnTopAsWished(Desk& desk) {
  if (!desk.Main().frmMain.Visible) return true;
  const bool wished = desk.Config().txtAlwaysOnTop.Value.Get() == "Y";
  if (desk.Main().frmMain.TopMost == wished) desk.staysOnTop = false;
  return desk.Main().frmMain.TopMost == wished || desk.staysOnTop;
}

bool PositionIsInTheDocument(Desk& desk) {
  const playback::AudioEngine& engine = desk.Rooms()->engine;
  if (!engine.HoldsDocument()) return true;
  return desk.Rooms()->documentInWork.CurrentSamplePosition >= 0 &&
         desk.Rooms()->documentInWork.CurrentSamplePosition <=
             desk.Rooms()->documentInWork.FileLength;
}

bool RowsAreCounted(Desk& desk) {
  const auto count = [](const forms::Table& list) { return static_cast<int>(list.Rows().size()); };
  return desk.Rooms()->queue.QueueCount == count(desk.Main().listViewInQueue) &&
         desk.Rooms()->completed.CompletedCount == count(desk.Main().listViewCompleted);
}

bool RowsAreDifferentFiles(const forms::Table& list) {
  std::set<std::string> names;
  for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
    const std::string& name = list.TextAt(row, forms::document_column::FileName);
    if (name.empty() || !names.insert(name).second) return false;
  }
  return true;
}

bool RowsAreDifferentFiles(Desk& desk) {
  return RowsAreDifferentFiles(desk.Main().listViewInQueue) &&
         RowsAreDifferentFiles(desk.Main().listViewCompleted);
}

bool WindIsOfADocumentInWork(Desk& desk) {
  return InWork(desk) || desk.Rooms()->transport.WindDirection == Wind::None;
}

bool PedalsShowWhatCounts(Desk& desk) {
  const pedals::FootPedal& pedal = desk.Rooms()->footPedal;
  const auto agrees = [](bool down, const forms::PedalShape& shape) {
    return (shape.FillColour == forms::PedalShape::kDown) == down;
  };
  return agrees(pedal.LeftPedalDown, desk.Config().ShapeLeftPedal) &&
         agrees(pedal.CenterPedalDown, desk.Config().ShapeCenterPedal) &&
         agrees(pedal.RightPedalDown, desk.Config().ShapeRightPedal);
}

bool SoundIsShapedAsThePageSays(Desk& desk) {
  const forms::ConfigurationForm& config = desk.Config();
  if (!desk.Rooms()->engine.IsPlaying) return true;
  const bool isOn = config.txtEqEnable.Value.Get() == "Y";
  if (desk.player.EqualizerOn != isOn || config.chkEqEnable.Value != isOn) return false;
  if (desk.player.Gains.empty()) return false;
  for (std::size_t band = 0; band < config.sldEQ.size(); ++band) {
    const auto gain = static_cast<float>(-config.sldEQ[band].Value.Get());
    if (desk.player.Gains.back()[band] != gain) return false;
  }
  return true;
}

/// The position is brought up to date at each timer event of the player, and with it what a stop
/// would keep. It stands still under a hand that holds a slider.
bool PositionIsWhereTheEarIs(Desk& desk) {
  const playback::AudioEngine& engine = desk.Rooms()->engine;
  const base::Duration mostLate = desk.player.kTellsEvery + kOneFeed;
  if (!engine.IsPlaying || engine.IsPaused || engine.SliderDragging) return true;
  if (desk.loop.Now() - desk.sliderLetGo <= mostLate) return true;
  const double heard = engine.PlayStartSample + static_cast<double>(desk.player.PlayedSamples());
  const double fastest = desk.player.Rate() * std::max(engine.PlaySpeedPercent / 100.0, 1.0);
  const double mostBehind = fastest * std::chrono::duration<double>(mostLate).count() + 1;
  const double behind = heard - desk.Rooms()->documentInWork.CurrentSamplePosition;
  // A start seeks to a whole sample.
  return behind > -1 && behind <= mostBehind;
}

bool UsbPedalIsReadWhileWatched(Desk& desk) {
  const pedals::UsbPedal& usb = desk.Rooms()->usbPedal;
  const bool isRead = usb.TmrHIDRead.Enabled() || desk.usbWatcher.IsAwaited();
  return !usb.InReadHIDBuffer && isRead == (usb.MyMonitor != 0);
}

bool SerialPedalIsReadWhileItsPortIsOpen(Desk& desk) {
  const bool isRead =
      desk.Rooms()->serialPedal.tmrSerialFootPedal.Enabled() || desk.serialPort.IsAwaited();
  return isRead == desk.serialPort.OpenPort().has_value();
}

/// A key acts only on what the window shows.
bool CompleteIsForWhatShows(Desk& desk) {
  const MainForm& main = desk.Main();
  return !main.cmdComplete.Enabled || InWork(desk) ||
         (main.frameInQueue.Visible && main.listViewInQueue.ListIndex >= 0);
}

bool StripTellsOfWhatShows(Desk& desk) {
  const MainForm& main = desk.Main();
  if (InWork(desk) || (main.frameInQueue.Visible && main.listViewInQueue.ListIndex >= 0)) {
    return true;
  }
  return std::ranges::all_of(main.StatusBar1.Panels.Get(),
                             [](const std::string& text) { return text.empty(); });
}

bool CompleteIsForWhatCameToItsEnd(Desk& desk) {
  return !desk.Main().cmdComplete.Enabled || desk.hearing.CameToItsEnd();
}

bool AlertTimerRuns(Desk& desk) { return desk.Rooms()->waitingWork.tmrWorkWaitingAlert.Enabled(); }

struct Invariant {
  const char* sentence;
  bool (*holds)(Desk& desk);
};
constexpr Invariant kInvariants[] = {
    Invariant{"No guard is up at rest.", &GuardsAreDown},
    Invariant{"The pointer is the arrow at rest.", &PointerIsTheArrow},
    Invariant{"Either the main window or the configuration shows.", &OneWindowShows},
    Invariant{"No box stands at rest.", &NoBoxStands},
    Invariant{"No walk holds a folder or a file at rest.", &NoWalkHoldsAnything},
    Invariant{"The deck runs while it plays or winds.", &DeckRunsWhilePlayingOrWinding},
    Invariant{"At most one thing sounds, and the device knows of it.", &OneThingSounds},
    Invariant{"A wind has its timer.", &WindHasItsTimer},
    Invariant{"A preview belongs to the list.", &PreviewIsOfTheList},
    Invariant{"What plays can be stopped by its key.", &WhatPlaysCanBeStopped},
    Invariant{"The mini-player shows just while a document is in work.", &MiniPlayerMeansWork},
    Invariant{"One view shows.", &OneViewShows},
    Invariant{"The reports know which view shows.", &ReportsKnowTheView},
    Invariant{"Play has a document.", &PlayHasADocument},
    Invariant{"Play is of the document that was selected.", &PlayIsOfTheSelectedDocument},
    Invariant{"The keys of the Completed frame are there for rows.", &CompletedKeysNeedRows},
    Invariant{"The window is on top as the setting says.", &WindowIsOnTopAsWished},
    Invariant{"The position lies in the document.", &PositionIsInTheDocument},
    Invariant{"The rows are counted.", &RowsAreCounted},
    Invariant{"Each row is another file.", &RowsAreDifferentFiles},
    Invariant{"A wind is of a document in work.", &WindIsOfADocumentInWork},
    Invariant{"The pedals on the page are lit as they count.", &PedalsShowWhatCounts},
    Invariant{"The sound is shaped as the page of the equalizer says.",
              &SoundIsShapedAsThePageSays},
    Invariant{"The position is where the ear is.", &PositionIsWhereTheEarIs},
    Invariant{"The mixer page shows the sources as they are.", &MixerPageShowsTheSources},
    Invariant{"The device that was chosen plays.", &ChosenDevicePlays},
    Invariant{"The page lists the devices that there are.", &PageListsThePlayersDevices},
    Invariant{"A watched USB pedal is read.", &UsbPedalIsReadWhileWatched},
    Invariant{"An open serial port is read.", &SerialPedalIsReadWhileItsPortIsOpen},
    Invariant{"Complete is for the document in work or the row that is highlighted.",
              &CompleteIsForWhatShows},
    Invariant{"The strip tells of the document in work or the row that is highlighted.",
              &StripTellsOfWhatShows},
    Invariant{"Complete is for what was brought to its end or can not be played.",
              &CompleteIsForWhatCameToItsEnd},
    Invariant{"The alert timer runs.", &AlertTimerRuns},
};

}  // namespace

std::string BrokenInvariant(Desk& desk) {
  for (const Invariant& invariant : kInvariants) {
    if (!invariant.holds(desk)) return std::string("Broken: ") + invariant.sentence;
  }
  const std::string setting = desk.settingsRules.Broken(desk);
  if (!setting.empty()) return setting;
  const std::string afar = BrokenAfar(desk);
  if (!afar.empty()) return afar;
  const std::string server = BrokenServerRule(desk);
  return server.empty() ? BrokenControl(desk) : server;
}

std::string Described(Desk& desk) {
  if (!desk.Rooms()) return "The program has not started.";
  const MainForm& main = desk.Main();
  const Rooms& rooms = *desk.Rooms();
  std::string text = "enabled:";
  for (const forms::Control* control : std::initializer_list<const forms::Control*>{
           &main.cmdPlay, &main.cmdStop, &main.cmdImportCompleteSnipetStop, &main.cmdSkip,
           &main.cmdSave, &main.cmdComplete, &main.listViewInQueue, &main.cmdUpdateFileList,
           &main.mnuFile, &main.mnuView, &main.mnuReport, &main.mnuViewFtp, &main.bConnect,
           &main.bList, &main.bDownload}) {
    if (control->Enabled) text += " " + control->Name + (control->Visible ? "" : " (hidden)");
  }
  const auto add = [&text](const char* name, bool holds) {
    if (holds) text += std::string("; ") + name;
  };
  add("plays", rooms.engine.IsPlaying);
  add("primed", rooms.documentInWork.DocumentPrimed);
  add("holds a document", rooms.engine.HoldsDocument());
  add("winds", rooms.transport.tmrRewindForward.Enabled());
  add("preview timer", rooms.engine.tmrPlaySnipet.Enabled());
  add("mini-player", rooms.mainWindow.MiniPlayerShows());
  add("main window", main.frmMain.Visible);
  add("configuration", desk.Config().frmConfiguration.Visible);
  add(rooms.mainWindow.CurrentView.c_str(), true);
  add(main.bConnect.Caption.Get().c_str(), true);
  add(main.bDownload.Caption.Get().c_str(), true);
  add(main.eMessage.Value.Get().c_str(), true);
  add("hourglass", main.frmMain.MousePointer == forms::Pointer::Hourglass);
  return text + "; at " + std::to_string(rooms.documentInWork.CurrentSamplePosition) + " of " +
         std::to_string(rooms.documentInWork.FileLength) + ", begun at " +
         std::to_string(rooms.engine.PlayStartSample) + " and heard " +
         std::to_string(desk.player.PlayedSamples());
}

}  // namespace tavlo::simulation
