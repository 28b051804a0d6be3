#include "lists/work_alert.h"

#include <string>
#include <utility>

namespace tavlo::lists {
namespace {

using base::operator""ms;

/// The timer ticks twenty times in its interval's number of seconds.
constexpr int kTicksOfACheck = 20;
/// A count over a share that is slow leaves the deck to the typist for a while after each piece.
constexpr int kTicksBeforeTheNextPiece = 15;
constexpr base::Duration kBeforeThePrompt = 1000ms;
/// The prompt is heard before the message stops all else.
constexpr base::Duration kBeforeTheMessage = 2500ms;

constexpr const char* kTitle = "Tavlo Deck - New Dictation Alert";
constexpr const char* kPriorityTitle = "Tavlo Deck - New Priority Dictation Alert";

}  // namespace

struct WorkAlert::Words {
  playback::PromptName prompt;
  const char* text;
  const char* title;
};

const WorkAlert::Words& WorkAlert::InQueue(bool priority) {
  static constexpr Words kAny{"NewDocInQ", "New dictation has arrived!", kTitle};
  static constexpr Words kPriority{"NewPriorityDocInQ", "New priority dictation has arrived!",
                                   kPriorityTitle};
  return priority ? kPriority : kAny;
}

const WorkAlert::Words& WorkAlert::InImport(bool priority) {
  static constexpr Words kAny{"NewDocInImport", "New dictation is available for import!", kTitle};
  static constexpr Words kPriority{
      "NewPriorityDocInImport", "New priority dictation is available for import!", kPriorityTitle};
  return priority ? kPriority : kAny;
}

/// The window stands above all others, and the desktop tells somebody who does not see it, until
/// the alert is over.
class WorkAlert::InFront {
 public:
  InFront(WorkAlert& alert, const char* title, const char* text) : alert_(alert) {
    forms::Window& window = alert_.form_.frmMain;
    window.TopMost = true;
    const bool inSight = window.WindowShape != forms::Shape::Minimized;
    if (!inSight || !window.HasKeyboard) alert_.notifier_.Notify(title, text);
  }
  ~InFront() {
    if (stays_) return;
    alert_.ForgetNotification();
    alert_.form_.frmMain.TopMost = false;
    // Who has pinned the window has it pinned again.
    alert_.window_.ApplyAlwaysOnTop();
  }
  InFront(const InFront&) = delete;

  /// Until somebody turns to the window.
  void Stay() { stays_ = true; }

 private:
  WorkAlert& alert_;
  bool stays_ = false;
};

WorkAlert::WorkAlert(const Parts& parts)
    : loop_(parts.loop),
      window_(parts.window),
      form_(parts.window.Form()),
      config_(parts.window.Config()),
      engine_(parts.playback.engine),
      transport_(parts.playback.transport),
      voice_(parts.playback.voice),
      queue_(parts.queue),
      waitingWork_(parts.waitingWork),
      figures_(parts.figures),
      notifier_(parts.notifier) {
  waitingWork_.tmrWorkWaitingAlert.OnTick = [this] { Tick(); };
}

void WorkAlert::Tick() {
  const WatchPause pause(waitingWork_);
  if (MustHoldBack() || ++waitingWork_.AlertTicks < kTicksOfACheck) return;
  // What waits for a server would go on only once the box is answered. The time of such waits
  // counts all the same: where no server answers they are most of it.
  if (window_.guards.ServerIsAwaited()) {
    waitingWork_.AlertTicks = kTicksOfACheck - 1;
    return;
  }
  waitingWork_.AlertTicks = 0;
  const window::Raised checking(checking_);
  if (!std::exchange(countGoesOn_, false)) RefreshByItself();
  LookForWork();
}

bool WorkAlert::MustHoldBack() const {
  // A command of a hand starts the timer within the waits of an alert.
  if (checking_) return true;
  // A second box on top of a question might be answered in its place, and a list that changes
  // refuses the refresh that belongs to an alert.
  if (loop_.MessageBoxOpen() || !window_.guards.ListsMayChange()) return true;
  return NoLookForWorkHere();
}

void WorkAlert::RefreshByItself() {
  if (!config_.chkAutoRefreshMode.Value || form_.cmdSkip.Enabled ||
      engine_.tmrPlaySnipet.Enabled()) {
    return;
  }
  const window::QuietRefreshing quiet(window_.guards);
  form_.cmdUpdateFileList.Press(forms::By::Program);
}

void WorkAlert::LookForWork() {
  if (AlertsAreOff()) return;
  const Counted counted = figures_.CountWaitingWork();
  countGoesOn_ = counted == Counted::NotYet;
  if (countGoesOn_) waitingWork_.AlertTicks = kTicksBeforeTheNextPiece;
  if (counted != Counted::Whole) return;
  const std::string mode = config_.txtWorkWaitingAlertMode.Value;
  if (mode == "P" || mode == "A") TellOfBoth(mode == "P");
}

bool WorkAlert::AlertsAreOff() const {
  const std::string mode = config_.txtWorkWaitingAlertMode.Value;
  return mode == "1" || mode == "0";
}

void WorkAlert::TellOfBoth(bool priority) {
  const bool inQueue = MoreInQueue(priority);
  const bool inImport = MoreInImport(priority);
  if (ImportCountsAsQueue()) {
    if (!inQueue && !inImport) return;
    figures_.SyncLastSeenFigures();
    Tell(InQueue(priority));
    return BringWorkIn();
  }
  if (inQueue) return TellOfQueueThenImport(priority);
  if (!inImport) return;
  figures_.SyncImportFigures();
  Tell(InImport(priority));
  BringWorkIn();
}

void WorkAlert::TellOfQueueThenImport(bool priority) {
  const bool anyInImport = MoreInImport(false);
  const bool priorityInImport = MoreInImport(true);
  figures_.SyncQueueFigures();
  Tell(InQueue(priority));
  // A hand may have switched alerts off in the waits, or turned them to other dictation.
  if (AlertsAreOff()) return BringWorkIn();
  const bool priorityNow = config_.txtWorkWaitingAlertMode.Value.Get() == "P";
  bool inImport = priorityNow ? priorityInImport : anyInImport;
  // Only a look at the import itself, in the waits, makes the second alert needless.
  if (form_.frameImport.Visible && !MoreInImport(priorityNow)) inImport = false;
  // The refresh that ends the first alert takes all figures as seen, and where it finds a folder
  // out of reach it puts the current ones back. So what is told of is taken as seen before it, and
  // what came while the message stood is counted before it, too.
  if (inImport) figures_.SyncImportFigures();
  if (figures_.CountWaitingWork() == Counted::Whole && MoreInImport(priorityNow)) {
    inImport = true;
    figures_.SyncImportFigures();
  }
  BringWorkIn();
  if (!inImport) return;
  Tell(InImport(priorityNow));
  BringWorkIn();
}

bool WorkAlert::MoreInQueue(bool priority) const {
  return priority ? figures_.WaitingQueuePriorityCount > figures_.LastQueuePriorityCount
                  : figures_.WaitingQueueCount > figures_.LastQueueCount;
}

bool WorkAlert::MoreInImport(bool priority) const {
  return priority ? figures_.WaitingImportPriorityCount > figures_.LastImportPriorityCount
                  : figures_.WaitingImportCount > figures_.LastImportCount;
}

bool WorkAlert::ImportCountsAsQueue() const { return config_.txtAutoImport.Value.Get() == "Y"; }

void WorkAlert::Tell(const Words& words) {
  if (waitingWork_.Ended()) return;
  transport_.StopCommand();
  InFront inFront(*this, words.title, words.text);
  SayPrompt(words.prompt);
  if (waitingWork_.Ended()) return;
  // Without a message the typist sees the new work appear, and the window stays on top.
  if (queue_.QueueCount < 1 && MayBringWorkIn()) return inFront.Stay();
  loop_.Show({.title = words.title, .text = words.text, .icon = base::Icon::Information});
}

void WorkAlert::SayPrompt(playback::PromptName prompt) {
  const window::Telling telling(window_.guards);
  loop_.Wait(kBeforeThePrompt);
  if (waitingWork_.Ended()) return;
  voice_.PlayPrompt(prompt);
  loop_.Wait(kBeforeTheMessage);
}

bool WorkAlert::MayBringWorkIn() const {
  // With a document open the list is left alone until the typist has finished it. A hand may have
  // turned to the servers in the waits, or to the settings, where no look for work comes either.
  return !waitingWork_.Ended() && !form_.cmdSkip.Enabled && !NoLookForWorkHere();
}

void WorkAlert::BringWorkIn() {
  if (MayBringWorkIn()) form_.cmdUpdateFileList.Press(forms::By::Program);
}

bool WorkAlert::NoLookForWorkHere() const {
  return form_.frameFtp.Visible || config_.frmConfiguration.Visible;
}

}  // namespace tavlo::lists
