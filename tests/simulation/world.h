#pragma once

#include <string>
#include <vector>

#include "simulation/chance.h"
#include "simulation/conditions.h"
#include "simulation/desk.h"
#include "simulation/ledger.h"
#include "simulation/neighbour.h"
#include "simulation/recorders.h"
#include "simulation/server_side.h"
#include "simulation/trace.h"

namespace tavlo::simulation {

/// All that is neither the program nor its typist: recorders that drop files, people who take them
/// away, disks that fail, sound cards that are pulled out.
class World {
 public:
  World(Desk& desk, Ledger& ledger, const Conditions& conditions, Chance chance, Trace& trace);

  /// One thing happens.
  void Act();
  /// A step of the day begins, in which other programs come in between a few times at most. An
  /// alert of what they bring looks into the folders, where they would come in between again.
  void BeginStep() { betweenThisStep_ = 0; }
  void DropDictation();
  /// Documents that were completed on other days, some of which a purge may take.
  void KeepCompleted(int count);
  /// Some dictations come into the folders that the deck takes files from.
  void TransferSome();
  /// A dictation comes under this very name, if it is free.
  void DropAt(const std::string& path);
  /// The disk's faults end; a disk that crashed works again.
  void MendDisk();
  /// All that was broken is mended, every program has closed its files.
  void MendAll();
  /// What may have struck since the last call.
  Blow TakeStruck();
  /// Whether the other programs wait until the program is done.
  void StayCalm(bool calm) { calm_ = calm; }
  /// A folder was late since the last call.
  bool TakeLate();
  /// The program is gone. What it left behind at a late folder may still happen.
  void ForgetProgram();
  /// A claim that nobody has given back, or a finished file that a pass should have taken; empty
  /// when there is none. Asks for a run of the passes just before.
  std::string LeftBehind() const;
  /// Numbers of the import directories in which a claim stands.
  std::vector<int> ClaimedDirectories() const;
  /// What the server still has though the program has just fetched all, and deleted it there if
  /// `deletes`; empty when nothing is wrong.
  std::string LeftOnServer(bool deletes) const { return serverSide_.LeftThere(deletes); }
  /// The desktop's session ended in the middle of whatever the program did.
  void EndSession();
  /// The power is gone: what other programs were writing stays as it is.
  void LosePower();

 private:
  struct Event {
    const char* name;
    int weight;
    bool Conditions::*needs;
    void (World::*happen)();
  };
  static const std::vector<Event>& Events();

  // Dictations come and go.
  void DropMany();
  void BeginSlowDrop();
  void WriteIntoDropFolder() { recorders_.Begin(); }
  void GoOnWriting() { recorders_.GoOn(); }
  void LetNeighbourSweep();
  void ActAtTheServer() { serverSide_.Act(); }
  void PutOnDesktop();
  /// What comes between two operations of the program.
  void ActInBetween();
  void TakeAway();
  void Collect();
  void Change();
  void InterfereWithNextCopy();
  void MakeReadOnly();
  // Things break.
  void FailDisk();
  void FillDisk();
  void KillSoon();
  void BreakListing();
  void RemoveEmptyFolder();
  void SlowFolder();
  void StallFolder();
  void StallSoon();
  /// All folders answer again, and what was left behind has happened or not.
  void AnswerLate();
  std::string SomePlace();
  test::SimulatedPlaces::Late SomeOutcome();
  /// A folder that stalls comes back by itself, perhaps while a call waits for it.
  void MayComeBackSoon();
  void BarFile();
  void BreakSound();
  void BreakReading();
  void MendReading();
  void LoseBlock();
  void CutOff();
  void MendSound();
  // Somebody works on the desktop's mixer.
  void TurnSource();
  void AddSource();
  void RemoveSource();
  void PlugDevice();
  void PullDevice();
  void TellMixer();
  /// Some source of some device, or null.
  test::SimulatedSource* SomeSource();
  /// The mixer has changed, which it tells now or later.
  void MixerChanged();
  void BreakConversion();
  void MendConversion();
  void RefuseSettings();
  void AcceptSettings();

  std::string NewContents();
  /// Full paths of the folders of documents and of those that are swept or imported from.
  std::vector<std::string> AllFolders() const;
  std::string SomeFolder();
  /// A name that nothing bears in the folder; empty when luck had none.
  std::string FreeName(const std::string& folder);
  /// A name beside that of some dictation; empty when there is none.
  std::string LookAlike();
  /// Full path of some known dictation in the folder; empty when there is none.
  std::string SomeDictation(const std::string& folder);
  void ForgetAllCopies(const std::string& contents);
  /// Somebody saves a file anew that the program has just copied and not yet deleted.
  void ChangeSourceOf(const std::string& copied);
  void MendFolders();
  void Note(const std::string& what) { trace_.Note("  world: " + what); }

  Desk& desk_;
  Ledger& ledger_;
  const Conditions& conditions_;
  Chance chance_;
  Trace& trace_;
  /// What may happen under the day's conditions.
  std::vector<Event> possible_;
  Recorders recorders_;
  Neighbour neighbour_;
  ServerSide serverSide_;
  bool calm_ = false;
  bool inBetween_ = false;
  int betweenThisStep_ = 0;
  int sourcesSoFar_ = 0;
  bool diskFailing_ = false;
  bool struck_ = false;
  bool killed_ = false;
  bool wasLate_ = false;
  base::Timer comesBack_;
};

}  // namespace tavlo::simulation
