#include "simulation/desk.h"

#include "simulation/places.h"
#include "simulation/purge_rules.h"

namespace tavlo::simulation {
namespace {

using playback::OpenResult;
using store::DiskResult;

/// Height of title and menu bar, as a desktop would measure it.
constexpr forms::Twips kAboveContent = 840;
/// No rule needs as much within one moment.
constexpr int kMostChangesInAMoment = 200'000;
constexpr int kMostBoxes = 8;
/// In so long a document that plays is heard on, at any speed and from any block to the next.
constexpr base::Duration kHeardOn = std::chrono::seconds{1};

bool MayHaveHappened(DiskResult result) {
  return result == DiskResult::Done || result == DiskResult::OutOfReach;
}

}  // namespace

void WatchedLoop::TimersChanged() {
  if (moment_ != Now()) {
    moment_ = Now();
    changesInThisMoment_ = 0;
  }
  if (++changesInThisMoment_ > kMostChangesInAMoment) throw Storm{"The time stands still."};
}

bool WatchedLoop::BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) {
  const std::function<void()> look = OnWait ? OnWait() : nullptr;
  const bool came = SimulatedLoop::BreatheUntil(done, limit);
  if (look) look();
  return came;
}

base::Reply WatchedLoop::ShowBox(const base::MessageBox& box) {
  if (++openBoxes_ > kMostBoxes) throw Storm{"Boxes stand upon boxes: " + box.text};
  if (OnBox) Expect(OnBox(box));
  const base::Reply reply = SimulatedLoop::ShowBox(box);
  --openBoxes_;
  if (OnAnswered) OnAnswered(box, reply);
  return reply;
}

store::Listing WatchedDisk::ListPlainFiles(const std::string& folder) {
  store::Listing listing = SimulatedDisk::ListPlainFiles(folder);
  if (OnListed) OnListed(folder, listing);
  return listing;
}

DiskResult WatchedDisk::Rename(const std::string& from, const std::string& to) {
  const DiskResult renamed = SimulatedDisk::Rename(from, to);
  if (MayHaveHappened(renamed) && OnGone) OnGone(from, to);
  return renamed;
}

DiskResult WatchedDisk::Delete(const std::string& path) {
  if (OnDelete) OnDelete(path);
  const DiskResult deleted = SimulatedDisk::Delete(path);
  if (MayHaveHappened(deleted) && OnGone) OnGone(path, "");
  return deleted;
}

OpenResult SoundsOnDisk::OpenFile(const std::string& path) {
  CloseFile();
  Sounds.clear();
  OutOfReach.clear();
  const bool answers = disk_.LetsOpen(path);
  const std::string contents = disk_.Contents(path);
  if (!answers || !disk_.Has(path) || Barred.contains(contents)) OutOfReach.insert(path);
  const auto recording = Recording::Of(contents);
  if (recording) Sounds[path] = {recording->samples, recording->rate, recording->channels};
  if (const auto hole = Readable.find(contents); recording && hole != Readable.end()) {
    Sounds[path].readable = hole->second;
  }
  const OpenResult opened = SimulatedAudioFile::OpenFile(path);
  const bool told = OpenStatus() >= 0 && opened != OpenResult::OutOfReach;
  if (told && OnOpened) OnOpened(path, recording);
  return opened;
}

Desk::Desk(const Conditions& conditions) {
  hasInformationTool = false;
  ProvideShare();
  usbWatcher.CanTell = !conditions.watcherIsPolled;
  serialPort.CanTell = !conditions.portIsPolled;
  file.OnOpened = [this](const std::string& path, const std::optional<Recording>& sound) {
    hearing.Opened(path, sound);
  };
  disk.OnGone = [this](const std::string& from, const std::string& to) {
    hearing.Renamed(from, to);
    landing.Gone(from, to);
    if (OnGone) OnGone(from, to);
  };
  disk.OnListed = [this](const std::string& folder, const store::Listing& listing) {
    if (!neighbourIsAtWork) alerts.Listed(folder, listing);
  };
  notifier.OnNotified = [this](const auto& notification) { alerts.Notified(notification); };
  loop.OnWait = [this] { return FollowTheEar(); };
  mixer.Devices = {{{.name = "Output"}, {.name = "Tavlo Deck"}, {.name = "Microphone"}},
                   {{.name = "Headset", .volume = 20'000}}};
  if (conditions.freshRoot) {
    disk.WithFolder("/home/typist");
    return;
  }
  for (const char* folder :
       {"/Files/InQueue", "/Files/Completed", "/Files/FtpQueue", "/Files/eW2Queue",
        "/Files/dS2Queue", "/Files/eU2Queue", "/Prompts", "/Fascia"}) {
    disk.WithFolder(Path(folder));
  }
  disk.WithFile(Path("/Files/ImportQueue/short.wav"), Recording{.samples = 4000}.Contents());
  disk.WithFile(Path("/Files/ImportQueue/long.wav"), Recording{.samples = 80'000}.Contents());
  disk.WithFileSystemAt(kShareOfDecks).WithFolder(std::string(kShareOfDecks) + "3");
  disk.WithFolder(kDesktop);
  for (const std::string& folder : conditions.fileSystems) disk.WithFileSystemAt(Path(folder));
  PlaceSettings(conditions.settings);
  PlaceServers(conditions);
}

void Desk::PlaceServers(const Conditions& conditions) {
  test::SettingsTables tables = databases.Look(SettingsPath());
  std::vector<store::Record>& rows = tables.at(store::Table::FtpSettings);
  for (std::size_t row = 0; row < conditions.servers.size(); ++row) {
    for (const auto& [field, value] : conditions.servers[row]) rows.at(row).at(field) = value;
  }
  databases.Place(SettingsPath(), tables);
}

void Desk::ProvideShare() {
  const std::string& share = test::kShare;
  for (const char* name : {"Welcome", "Complete", "RewindTone", "ForwardEnd"}) {
    disk.WithFile(share + "/Prompts/" + name + ".wav", name);
  }
  disk.WithFile(share + "/Fascia/Graphite.png", "Graphite").WithFile(share + "/PedalWatch.so");
}

void Desk::Start() {
  ended.reset();
  // Another process has a player of its own, which begins unshaped.
  player.EqualizerOn = false;
  player.Gains.clear();
  player.Devices = soundDevices;
  player.Added.clear();
  player.SelectDevice(0);
  hearing.Forget();
  settingsRules.Forget();
  deck_.emplace(Edges());
  controls_.emplace(deck_->windows);
  Main().frmMain.AboveContent = kAboveContent;
  deck_->Start();
  if (!Rooms()) return;
  WatchFeetAndAfar();
  alerts.Follow();
}

void Desk::WatchFeetAndAfar() {
  for (base::Timer* timer :
       {&Rooms()->transport.tmrRewindForward, &Rooms()->serialPedal.tmrSerialFootPedal,
        &Rooms()->usbPedal.TmrHIDRead}) {
    timer->OnTick = [this, tick = timer->OnTick] { Choose(tick); };
  }
  for (base::Timer* timer :
       {&Rooms()->farKeys.tmrFarKeys, &Rooms()->mediaPlayer.tmrMediaCommands}) {
    timer->OnTick = [this, tick = timer->OnTick] {
      Choose(tick);
      // A slider may have been among it.
      sliderLetGo = loop.Now();
    };
  }
}

std::function<void()> Desk::FollowTheEar() {
  if (!player.IsRunning() || !player.Connected) return nullptr;
  return [this, begun = loop.Now(), heard = player.PlayedSamples(), starts = player.Starts,
          stops = player.Stops, clears = player.Clears] {
    const bool sameRun =
        player.Starts == starts && player.Stops == stops && player.Clears == clears;
    if (!sameRun || loop.Now() - begun < kHeardOn || player.PlayedSamples() > heard) return;
    silence_ = "What plays stands still while a folder gives no answer.";
  };
}

void Desk::Choose(const std::function<void()>& act) {
  if (!Rooms()) return act();
  const playback::DocumentInWork& documentInWork = Rooms()->documentInWork;
  const forms::Command& complete = Main().cmdComplete;
  const double before = documentInWork.CurrentSamplePosition;
  const bool wasAtItsEnd = complete.Enabled;
  act();
  if (documentInWork.CurrentSamplePosition != before)
    hearing.Chosen(documentInWork.CurrentSamplePosition);
  // A foot may have gone to the end and on from there before anybody looked.
  if (!wasAtItsEnd && complete.Enabled) hearing.Chosen(documentInWork.FileLength);
}

void Desk::EndSession(bool now) {
  sessionEnds_ = true;
  now ? deck_->EndSessionNow() : deck_->EndSession();
}

void Desk::EndProcess(int status) {
  SimulatedPlatformOf::EndProcess(status);
  // The process is gone at once, whatever command was under way.
  if (sessionEnds_) disk.CrashAtOperation(0);
}

void Desk::Kill() {
  sessionEnds_ = false;
  controls_.reset();
  deck_.reset();
  ftp.ForgetProcess();
  handover.ForgetProcess();
  keys.ForgetProcess();
  bus.ForgetProcess();
  nothingToDelete = false;
  staysOnTop = false;
  // The machine takes back what a process held.
  player.StopOutput();
  file.CloseFile();
  promptControl.Close();
}

test::SimulatedDatabase* Desk::Settings() {
  return Rooms() ? dynamic_cast<test::SimulatedDatabase*>(Rooms()->database.get()) : nullptr;
}

bool Desk::PurgeMayDelete(const std::string& path) {
  constexpr int kMostDays = 22;
  constexpr int kMinutesOfADay = 24 * 60;
  const std::string folder = Path(kCompleted);
  // The columns are made by the step behind the purge.
  if (!Rooms() || !Main().listViewCompleted.Columns().empty() || !path.starts_with(folder)) {
    return false;
  }
  const auto age = AgeByName(path.substr(folder.size()), loop.WallClock());
  const int days = Rooms()->binding.DeleteCompletedFiles;
  return age && days > 0 && days <= kMostDays && *age > days * kMinutesOfADay;
}

bool Desk::AtWork() {
  if (ended || !Rooms() || Rooms()->refresh.tmrGetAllJobs.Enabled()) return false;
  return Main().frmMain.Visible || Config().frmConfiguration.Visible;
}

}  // namespace tavlo::simulation
