#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/loop.h"
#include "ftp/server_list.h"
#include "simulation/chance.h"
#include "simulation/conditions.h"
#include "simulation/desk.h"
#include "simulation/foot.h"
#include "simulation/ledger.h"
#include "simulation/mixer_hand.h"
#include "simulation/other_window.h"
#include "simulation/takings.h"
#include "simulation/trace.h"

namespace tavlo::simulation {

/// Acts through the doors of the controls that a hand can reach, and through nothing else. What is
/// out of reach is tried too, now and then.
class Typist {
 public:
  /// The ledger is told what the typist agrees to delete.
  Typist(Desk& desk, Ledger& ledger, const Conditions& conditions, Chance chance, Trace& trace);

  /// What somebody else does while a box stands or a command waits.
  std::function<void()> OnMeanwhile;

  /// Somebody puts another dictation there.
  std::function<void(const std::string& path)> OnRival;

  /// One act of a typist who sits down in front of whatever shows.
  void Act();
  /// Lets some time pass, from nothing to hours.
  void WaitAWhile();
  /// Closes what stands over the list, leaves an open document, and presses Refresh. False when
  /// none of it could be reached.
  bool GoHome();
  /// The same, and then opens the view that the menu entry leads to. False when it does not show.
  bool GoTo(forms::Command& entry, const forms::Pane& frame);
  /// Plays the first document of the list that can be played and completes it. The empty text, or
  /// what went wrong. Asks for a list that was just refreshed.
  std::string TypeOneDocument();
  /// Has the Import view, which shows, list another directory.
  void TurnToDirectory(int directory);
  /// Nothing that was on its way comes any more.
  void HandsOff() {
    hand_.Stop();
    session_.Stop();
    foot_.Rest();
    otherWindow_.Rest();
    agreedToExit_ = false;
  }
  /// The question whether the program may end was answered with yes since the hands were last off.
  bool AgreedToExit() const { return agreedToExit_; }
  /// The view of the servers is dead until the program starts again.
  bool ServersAreDead() const;
  /// What became of an attempt to fetch all that a server has.
  struct Fetched {
    /// The empty text, or what went wrong.
    std::string wrong;
    /// Whether the profile has what was fetched deleted on the server. Nothing where no profile can
    /// log in, and nothing was tried.
    std::optional<bool> deletes = {};
  };
  /// Servers are no longer looked at unattended.
  void StopAutoRetrieve();
  /// Fetches all that the server has by the first profile that can log in, and logs out.
  Fetched FetchAll();
  /// The empty text, or an exit that was refused or offered against the state of the connection.
  std::string ExitedWrongly() { return std::exchange(exitedWrongly_, ""); }
  /// The empty text, or what goes on against the pedals.
  std::string DisobeyedPedal() { return foot_.Disobeyed(); }
  /// The same against the keys and media keys of other windows.
  std::string DisobeyedFromAfar() { return otherWindow_.Disobeyed(); }
  /// The same against the hand on the mixer page.
  std::string DisobeyedMixer() { return mixerHand_.Disobeyed(); }
  /// The same of what keys have taken that they may not take.
  std::string TookWrongly() { return takings_.TakeFault(); }
  /// The same of hands that waited for a folder without an answer for longer than they may.
  std::string WaitedTooLong() { return std::exchange(waitedTooLong_, ""); }
  /// Whether boxes are answered at once and nothing happens meanwhile.
  void StayCalm(bool calm);

 private:
  struct Habit {
    const char* name;
    int weight;
    void (Typist::*act)();
  };
  static const std::vector<Habit>& Habits();

  void PressCommand();
  void ClickRow();
  void ClickHeader();
  void ChangeView();
  void ClickCompletedRow();
  void WorkOnCompleted();
  void ClickImportRow();
  /// Chooses directories and profiles, sends, deletes and drops files over the list.
  void WorkOnImports();
  void DropFiles();
  /// Opens files with the deck from the file manager.
  void OpenFiles();
  /// Some files of the desktop that were not taken to the deck yet.
  std::vector<std::string> FreshOnDesktop() const;
  /// They are taken there now, and copies of them may come.
  void TakeThere(const std::vector<std::string>& paths);
  void NoteImportConsent(const base::MessageBox& box);
  /// The typist has agreed that the file of that row of the Import list be deleted.
  void NoteConsentFor(const std::string& shown);
  /// Chooses a document, does something else, and asks for Complete as if nothing had been.
  void FinishAfterSomethingElse();
  /// Finishes a document while the name that it would get is taken.
  void FinishBesideRival();
  void EndSession();
  void LookAtAbout();
  /// Connects, lists, moves files, downloads, halts and disconnects.
  void WorkOnServers();
  void WorkOneKeyOfServers();
  void FetchSome();
  /// Halts a run that is on, or logs out.
  void LogOut();
  void LeaveServers();
  /// Logs out, behind the end of a run that is on. False when that does not end.
  bool LogsOut();
  void TurnToServerPage();
  void SwitchAutoRetrieve();
  /// Steps over the profiles of servers, types into them, and copies one to another.
  void EditServers();
  void TypeIntoServer();
  void ClickOn(forms::Choice& choice);
  /// Turns to a profile that can log in. Nothing when there is none.
  std::optional<ftp::ServerProfile> ChooseGoodServer();
  void LookAtExit(const base::MessageBox& box);
  void ChooseAndPlay();
  void PlayToTheEnd();
  void Finish();
  void DragSlider();
  void WorkThePedals() { foot_.Act(); }
  void WorkFromAfar() { otherWindow_.Act(); }
  void ChooseKeys();
  void ShapeTheSound();
  void WorkTheMixer();
  /// Turns automatic refresh, alerts and automatic import on and off, and sets their seconds.
  void ChooseAlerts();
  void Place();
  void Calibrate();
  void AskToClose();
  void ClickChoice();
  void TypeText();
  void ClickInAList();
  void ClickSomewhere();
  void TurnPage();
  void Interrupt();

  void Press(forms::Command& command);
  void Drag(forms::Range& slider);
  void ClickRowOf(forms::Table& table, int row);
  void ClickSomeRowOf(forms::Table& table);
  /// A click, and now and then a second one right after it.
  template <typename C>
  void PointAt(C& place);
  /// One of the controls, as a rule one that a hand can reach.
  template <typename C>
  C& Some(const std::vector<Touchable<C>>& controls);
  template <typename C>
  static std::vector<Touchable<C>> WithinReach(const std::vector<Touchable<C>>& controls);
  /// Opens the configuration, where most controls stand, if none of these is within reach, and
  /// sometimes though one is.
  template <typename C>
  void ComeNear(const std::vector<Touchable<C>>& controls);
  /// The desktop tells a window that it has become the active one.
  void ActivateWindows();
  WatchedLoop::Answer AnswerBox(const base::MessageBox& box);
  void NoteConsent(const base::MessageBox& box, base::Reply reply);
  /// Closes what stands over the main window and leaves an open document. True once the menus are
  /// within reach.
  bool ComeToTheLists();
  base::Duration SomeTime();
  /// How long the program has waited in vain for folders, all in all.
  base::Duration WaitedInVain() const;
  bool Seen(const forms::Control& control) const;
  void Note(const std::string& what) { trace_.Note("  typist: " + what); }

  Desk& desk_;
  Ledger& ledger_;
  const Conditions& conditions_;
  Chance chance_;
  Trace& trace_;
  Foot foot_;
  MixerHand mixerHand_;
  Takings takings_;
  OtherWindow otherWindow_;
  /// Acts in the middle of a command that waits.
  base::Timer hand_;
  /// Ends the desktop's session, perhaps while a call waits for a folder.
  base::Timer session_;
  int actsUnderWay_ = 0;
  bool calm_ = false;
  bool configurationStood_ = false;
  bool agreedToExit_ = false;
  std::string waitedTooLong_;
  std::string exitedWrongly_;
  /// The completed document that was clicked last.
  std::string clickedCompleted_;
  /// Full paths of the files on the desktop that were dropped over a list, or opened with the deck.
  std::set<std::string> dropped_;
};

template <typename C>
C& Typist::Some(const std::vector<Touchable<C>>& controls) {
  const std::vector<Touchable<C>> reached = WithinReach(controls);
  const bool anyOfAll = reached.empty() || chance_.OneIn(10);
  return *chance_.PickByWeight(anyOfAll ? controls : reached).control;
}

template <typename C>
std::vector<Touchable<C>> Typist::WithinReach(const std::vector<Touchable<C>>& controls) {
  std::vector<Touchable<C>> reached;
  std::ranges::copy_if(controls, std::back_inserter(reached),
                       [](const Touchable<C>& next) { return next.control->Reachable(); });
  return reached;
}

}  // namespace tavlo::simulation
