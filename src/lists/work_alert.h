#pragma once

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "lists/desktop_notifier.h"
#include "lists/queue_list.h"
#include "lists/waiting_figures.h"
#include "lists/waiting_work.h"
#include "playback/playback.h"
#include "window/main_window.h"

namespace tavlo::lists {

/// What the timer of waiting work does: nothing tells the program that work has arrived, so at each
/// twentieth tick it looks. In one mode it refreshes the Queue; in the other it counts what waits,
/// and tells the typist when there is more of it than at the last look.
class WorkAlert {
 public:
  /// All of them must outlive it.
  struct Parts {
    base::Loop& loop;
    window::MainWindow& window;
    const playback::Playback& playback;
    const QueueList& queue;
    WaitingWork& waitingWork;
    WaitingFigures& figures;
    DesktopNotifier& notifier;
  };
  explicit WorkAlert(const Parts& parts);

  /// Takes away what the desktop shows of an alert: somebody has turned to the deck, or it ends.
  void ForgetNotification() { notifier_.Withdraw(); }

 private:
  struct Words;
  /// How the typist is told of new work; `priority`: of priority documents.
  static const Words& InQueue(bool priority);
  static const Words& InImport(bool priority);
  class InFront;

  void Tick();
  /// A check would come between a person and what is on the screen, or into a list that changes.
  bool MustHoldBack() const;
  bool NoLookForWorkHere() const;
  void RefreshByItself();
  void LookForWork();
  bool AlertsAreOff() const;
  /// With automatic import what waits for the import reaches the Queue by itself.
  bool ImportCountsAsQueue() const;
  /// There is more than at the last look; `priority`: of priority documents.
  bool MoreInQueue(bool priority) const;
  bool MoreInImport(bool priority) const;
  void TellOfBoth(bool priority);
  void TellOfQueueThenImport(bool priority);
  void Tell(const Words& words);
  void SayPrompt(playback::PromptName prompt);
  bool MayBringWorkIn() const;
  /// The refresh that ends an alert.
  void BringWorkIn();

  base::Loop& loop_;
  window::MainWindow& window_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  playback::Voice& voice_;
  const QueueList& queue_;
  WaitingWork& waitingWork_;
  WaitingFigures& figures_;
  DesktopNotifier& notifier_;
  /// A tick is at work, or in one of its waits.
  bool checking_ = false;
  /// The count of a check takes several of its pieces.
  bool countGoesOn_ = false;
};

}  // namespace tavlo::lists
