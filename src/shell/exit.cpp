#include "shell/exit.h"

#include <utility>

namespace tavlo::shell {
namespace {

using base::operator""ms;

constexpr base::Duration kFirstWait = 1000ms;
constexpr base::Duration kBothWaits = 2000ms;

}  // namespace

Exit::Exit(base::Loop& loop, Windows& windows, Rooms& rooms,
           std::function<void(int status)> endProcess)
    : loop_(loop), form_(windows.main), rooms_(rooms), endProcess_(std::move(endProcess)) {
  form_.mnuExit.OnPress = [this] { ExitByMenu(); };
  form_.frmMain.OnCloseRequest = [this] { ExitByFrame(); };
}

void Exit::ExitByFrame() {
  if (ListIsChanging() || FtpIsConnected()) return;
  // A close during work is dropped without a word.
  if (form_.frmMain.MousePointer == forms::Pointer::Hourglass) return;
  StopSound();
  if (DocumentIsOpen()) return;
  if (UserAgrees()) EndUnlessADocumentIsOpen();
}

void Exit::ExitByMenu() {
  // The File menu is disabled while a document is open, so that is not asked for.
  if (ListIsChanging()) return;
  StopSound();
  if (FtpIsConnected()) return;
  if (UserAgrees()) EndUnlessADocumentIsOpen();
}

void Exit::EndSession() {
  // A box in that pass would keep the pressed key from being carried out.
  if (rooms_.finishing.OutcomeIsDue() && !loop_.MessageBoxOpen()) {
    loop_.Post([this] { EndSession(); });
    return;
  }
  EndSessionNow();
}

void Exit::EndSessionNow() {
  if (std::exchange(sessionEnded_, true)) return;
  StopSound();
  rooms_.finishing.StoreAtOnce();
  rooms_.engine.CloseFile();
  rooms_.prompts.Close();
  rooms_.authorProfiles.StoreEdits();
  rooms_.configuration.SaveAtOnce();
  rooms_.completedPurge.WriteLog();
  // Last of what is stored: many files take longer than whoever ends everything may wait.
  rooms_.openedFiles.End();
  rooms_.ftp.Release();
  rooms_.usbPedal.Drop();
  EndFromAfar();
  rooms_.workAlert.ForgetNotification();
  endProcess_(0);
}

void Exit::StopSound() {
  rooms_.engine.StopPlay();
  rooms_.prompts.StopPrompt();
  rooms_.engine.tmrPlaySnipet.Stop();
}

/// Its command would go on behind the window that is gone.
bool Exit::ListIsChanging() const { return !rooms_.mainWindow.guards.ListsMayChange(); }

bool Exit::FtpIsConnected() {
  if (form_.bConnect.Caption.Get() != "Disconnect") return false;
  ShowExitBox("The Ftp must be disconnected before you may exit the Tavlo Deck",
              base::Icon::Warning, base::Buttons::Ok);
  return true;
}

bool Exit::DocumentIsOpen() {
  if (!rooms_.documentInWork.IsInWork()) return false;
  ShowExitBox("You must Skip, Save, or Complete this dictation before you may exit the Tavlo Deck",
              base::Icon::Warning, base::Buttons::Ok);
  return true;
}

bool Exit::UserAgrees() {
  return ShowExitBox("Are you sure you want to exit the Tavlo Deck?", base::Icon::Question,
                     base::Buttons::YesNo) == base::Reply::Yes;
}

void Exit::EndUnlessADocumentIsOpen() {
  // Pedals work under the question too, so a foot may have begun a document meanwhile.
  // Automatic retrieval may have logged in meanwhile, too.
  StopSound();
  if (!DocumentIsOpen() && !FtpIsConnected()) End();
}

void Exit::End() {
  rooms_.openedFiles.End();
  // What the thaw leaves to hands, as the import directories, would work on in the waits.
  const window::ListPause pause(rooms_.mainWindow.guards);
  rooms_.usbPedal.StopReading();
  rooms_.serialPedal.Stop();
  EndFromAfar();
  rooms_.waitingWork.End();
  rooms_.ftp.End();
  rooms_.workAlert.ForgetNotification();
  rooms_.transport.StopWindAndPreview();
  rooms_.mainWindow.DisableWindowControls();
  form_.cmdStop.Enabled = false;
  form_.cmdPlay.Enabled = false;
  form_.cmdImportCompleteSnipetStop.Enabled = false;
  // A document that was heard to its end may be completed without Play. In the waits that would
  // thaw the window, and Auto Queue and Play could put the next one in work.
  form_.cmdComplete.Enabled = false;
  // The hourglass drops a second close request in the waits.
  form_.frmMain.MousePointer = forms::Pointer::Hourglass;
  const base::MonotonicTime begun = loop_.Now();
  StoreSettings();
  WaitUntil(begun + kFirstWait);
  rooms_.engine.CloseFile();
  rooms_.prompts.Close();
  rooms_.ftp.Release();
  WaitUntil(begun + kBothWaits);
  rooms_.usbPedal.StopWatch();
  form_.frmMain.Visible = false;
  // A profile may have been typed into meanwhile.
  rooms_.authorProfiles.StoreEdits();
  rooms_.binding.Flush();
  endProcess_(0);
}

void Exit::EndFromAfar() {
  rooms_.farKeys.End();
  rooms_.mediaPlayer.End();
  rooms_.waysFromAfar.Withdraw();
}

/// A disk that gives no answer may keep the settings waiting for longer than the waits of the end
/// take. Nobody shall look at the window meanwhile, and the next start shall not wait for both.
void Exit::StoreSettings() {
  base::Timer tmrHideWindow(loop_, "tmrHideWindow", kBothWaits, base::TimerKind::Feed);
  tmrHideWindow.OnTick = [this] { form_.frmMain.Visible = false; };
  tmrHideWindow.Start();
  rooms_.authorProfiles.StoreEdits();
  rooms_.binding.Flush();
}

void Exit::WaitUntil(base::MonotonicTime moment) {
  const base::MonotonicTime now = loop_.Now();
  if (now < moment) loop_.Wait(moment - now);
}

base::Reply Exit::ShowExitBox(const char* text, base::Icon icon, base::Buttons buttons) {
  return loop_.Show({.title = "Tavlo Deck - Exit", .text = text, .icon = icon, .buttons = buttons});
}

}  // namespace tavlo::shell
