#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "shell/deck.h"
#include "simulation/alerts.h"
#include "simulation/conditions.h"
#include "simulation/control_walk.h"
#include "simulation/hearing.h"
#include "simulation/landing.h"
#include "simulation/settings_rules.h"
#include "support/simulated_platform.h"

namespace tavlo::simulation {

/// The program no longer lets the time pass. Thrown through the rules, because nothing below could
/// end it otherwise.
struct Storm {
  std::string what;
};

/// A loop that asks somebody for the answer to every box and ends a program that runs in circles.
class WatchedLoop : public test::SimulatedLoop {
 public:
  std::function<Answer(const base::MessageBox&)> OnBox;
  /// Runs once a box has closed, before the rule that asked goes on.
  std::function<void(const base::MessageBox&, base::Reply)> OnAnswered;
  /// Runs when the program begins to wait for an answer; what it gives runs when that is over.
  std::function<std::function<void()>()> OnWait;

  bool BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) override;
  void TimersChanged() override;

 protected:
  base::Reply ShowBox(const base::MessageBox& box) override;

 private:
  int openBoxes_ = 0;
  int changesInThisMoment_ = 0;
  base::MonotonicTime moment_;
};

/// Tells of everything that the program moves, renames or deletes, or asks for without an answer.
class WatchedDisk : public test::SimulatedDisk {
 public:
  using SimulatedDisk::SimulatedDisk;

  /// `to` is empty where something was deleted.
  std::function<void(const std::string& from, const std::string& to)> OnGone;
  /// Runs before something is deleted.
  std::function<void(const std::string& path)> OnDelete;

  /// A folder was listed, or walked over.
  std::function<void(const std::string& folder, const store::Listing& listing)> OnListed;

  store::Listing ListPlainFiles(const std::string& folder) override;
  store::DiskResult Rename(const std::string& from, const std::string& to) override;
  store::DiskResult Delete(const std::string& path) override;
};

/// Decodes what stands on the disk, wherever it was moved to.
class SoundsOnDisk : public test::SimulatedAudioFile {
 public:
  explicit SoundsOnDisk(test::SimulatedDisk& disk) : disk_(disk) {}

  /// Contents of files that may not be opened.
  std::set<std::string> Barred;
  /// Contents of files that can be read up to this sample and no further.
  std::map<std::string, playback::SampleCount> Readable;
  /// The program could look into a file; what can be heard of it, if anything.
  std::function<void(const std::string& path, const std::optional<Recording>& sound)> OnOpened;

  playback::OpenResult OpenFile(const std::string& path) override;
  /// The sound that is open, or null.
  test::SimulatedSound* Open() { return IsOpen() ? &Sounds.begin()->second : nullptr; }

 private:
  test::SimulatedDisk& disk_;
};

/// The machine with the program on it, which ends and starts again while the disk stays.
class Desk : public test::SimulatedPlatformOf<WatchedLoop, WatchedDisk, SoundsOnDisk> {
 public:
  explicit Desk(const Conditions& conditions);

  Hearing hearing{loop, player};
  SettingsRules settingsRules;
  Alerts alerts{*this};
  Landing landing{*this};
  /// Another deck shares this machine's folders and works on them now.
  bool neighbourIsAtWork = false;
  /// The desktop's mixer has changed and has not told it yet.
  bool mixerNewsDue = false;
  /// Sound devices in the machine. A program finds those that are there when it starts.
  int soundDevices = 2;
  /// The user deleted all documents where no wave was to be found: the hourglass then stays until
  /// the pointer next becomes the arrow.
  bool nothingToDelete = false;
  /// An alert whose work was to appear in an empty list has left the window on top, until somebody
  /// turns to it.
  bool staysOnTop = false;
  /// The walk over the Completed folder breaks off, or does not begin.
  bool completedOutOfReach = false;
  /// The configuration was closed by its frame, which leaves the page of the servers unsaved.
  bool serversAreUnsaved = false;
  /// When a hand last let a slider of the main window go.
  base::MonotonicTime sliderLetGo;
  /// The program has moved, renamed or (`to` is empty) deleted something.
  std::function<void(const std::string& from, const std::string& to)> OnGone;

  /// Starts the program and returns at once; the splash stands.
  void Start();
  /// The desktop's session ends; `now` where the loop would never turn again. Once the program has
  /// ended nothing that it still does reaches the disk.
  void EndSession(bool now);
  bool SessionEnds() const { return sessionEnds_; }
  /// The process is gone, in the middle of whatever it did.
  void Kill();

  shell::Windows& Windows() { return deck_->windows; }
  forms::MainForm& Main() { return deck_->windows.main; }
  forms::ConfigurationForm& Config() { return deck_->windows.configuration; }
  const ControlWalk& Controls() const { return *controls_; }
  shell::Rooms* Rooms() { return deck_->Built(); }
  /// The open settings, or null.
  test::SimulatedDatabase* Settings();
  /// Lets a hand or a foot act; where that puts the position, it was chosen.
  void Choose(const std::function<void()>& act);
  /// The empty text, or that a document which played stood still while the program waited for an
  /// answer of some folder.
  std::string TakeSilence() { return std::exchange(silence_, ""); }
  /// The program is at the step of its start that purges, and this document is so old that its
  /// setting wants it deleted.
  bool PurgeMayDelete(const std::string& path);
  /// The first refresh is done and nothing has ended the program.
  bool AtWork();

 protected:
  void EndProcess(int status) override;

 private:
  void ProvideShare();
  void PlaceServers(const Conditions& conditions);
  /// What feet, winds and other windows put the position to was chosen.
  void WatchFeetAndAfar();
  /// Remembers where the ear is; what it gives looks at where it has come to.
  std::function<void()> FollowTheEar();

  std::string silence_;
  bool sessionEnds_ = false;
  std::optional<shell::Deck> deck_;
  std::optional<ControlWalk> controls_;
};

}  // namespace tavlo::simulation
