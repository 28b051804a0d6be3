#include "window/main_window.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/text.h"

namespace tavlo::window {
namespace {

using forms::Shape;
using forms::Twips;

/// A full window is at least this high; what is lower is a mini-player on its way.
constexpr Twips kLowestFullHeight = 6001;

/// A deck that refreshes by itself may have something to say each minute while nobody is there.
/// More than these are not read, and nothing that stays to be done stands here alone.
constexpr std::size_t kMostNotices = 20;

/// No screen is as large; what is stored has no bound.
constexpr std::int64_t kFarthest = 1'000'000;

Twips TwipsOf(const std::string& text) {
  return static_cast<Twips>(std::clamp(base::WholeNumberValue(text), -kFarthest, kFarthest));
}

}  // namespace

MainWindow::MainWindow(forms::MainForm& form, forms::ConfigurationForm& config,
                       std::function<void()> storePlayerPosition)
    : form_(form), config_(config), storePlayerPosition_(std::move(storePlayerPosition)) {
  form_.frmMain.OnResize = [this] { HandleResize(); };
  form_.frmMain.OnCommandByHand = [this] { ForgetNotice(); };
}

bool MainWindow::QueueDocumentShows() const {
  return MiniPlayerShows() || (form_.frameInQueue.Visible && form_.listViewInQueue.ListIndex >= 0);
}

void MainWindow::OfferComplete() {
  if (QueueDocumentShows()) form_.cmdComplete.Enabled = true;
}

void MainWindow::Say(const std::string& text) {
  if (text.empty() || std::find(notices_.begin(), notices_.end(), text) != notices_.end()) return;
  notices_.push_back(text);
  if (notices_.size() > kMostNotices) notices_.erase(notices_.begin());
  ShowNotices();
}

void MainWindow::SayWhile(bool so, const std::string& text) {
  if (so) return Say(text);
  std::erase(notices_, text);
  ShowNotices();
}

void MainWindow::SayHowFar(const std::string& text) {
  SayWhile(false, howFar_);
  howFar_ = text;
  Say(howFar_);
}

void MainWindow::ForgetNotice() {
  notices_.clear();
  ShowNotices();
}

void MainWindow::ShowNotices() {
  std::string all;
  for (const std::string& notice : notices_) all += (all.empty() ? "" : " ") + notice;
  form_.lblNotice.Value = all;
  form_.lblNotice.Visible = !all.empty();
}

void MainWindow::SetWindowControlsEnabled(bool enabled) {
  forms::Control* const controls[] = {
      &form_.mnuView,
      &form_.mnuFile,
      &form_.mnuReport,
      &form_.listViewInQueue,
      &form_.listViewCompleted,
      &form_.listViewImport,
      &form_.cmdRefreshImportList,
      &form_.cmdUpdateFileList,
      &form_.cmdMoveToQueue,
      &form_.cmdDeleteAllCompleted,
      &form_.cmdDeleteAllImportFile,
      &form_.cmdDeleteOneCompleted,
      &form_.cmdDeleteOneImportFile,
      &form_.cmdSendAllImportFilesToQueue,
      &form_.cmdSendImportFileToQueue,
      &form_.cmdNormalSpeed,
      &form_.cmdEQ,
      &form_.Slider1,
      &form_.sldVol,
      &form_.slPosition,
  };
  for (forms::Control* control : controls) control->Enabled = enabled;
}

void MainWindow::EnterMiniPlayer() {
  // A minimized window still has the place that it had before; it was not put there as a player.
  if (MiniPlayerShows() && form_.frmMain.WindowShape == Shape::Normal) SavePlayerPosition();
  form_.frameFiles.Visible = false;
  form_.framePlayer.Top = 0;
  // What the desktop cannot undo is not offered, and then an older wish for it does not count.
  if (config_.txtMinimizeMiniPlayer.Value.Get() == "Y" && config_.chkMinimizeMiniPlayer.Visible) {
    form_.frmMain.WindowShape = Shape::Minimized;
    return;
  }
  form_.frmMain.WindowShape = Shape::Normal;
  TakePlayerHeight();
  TakeStoredPlace();
}

void MainWindow::LeaveMiniPlayer() {
  form_.frameFiles.Visible = true;
  form_.frmMain.Height = WindowHeight;
  form_.frmMain.Width = WindowWidth;
  form_.frmMain.Centre();
  form_.framePlayer.Top = PlayerFrameTop;
}

void MainWindow::SavePlayerPosition() {
  const forms::Window& window = form_.frmMain;
  if (window.Left < 0 || window.Top < 0) return;
  RememberPlayerPlace(window.Left, window.Top);
}

void MainWindow::CenterMiniPlayer() {
  form_.frmMain.Centre();
  // The full window is higher than the mini-player, so their middles are not one place.
  const forms::Window& window = form_.frmMain;
  RememberPlayerPlace(window.ScreenLeft + (window.ScreenWidth - window.Width) / 2,
                      window.ScreenTop + (window.ScreenHeight - PlayerHeight()) / 2);
}

void MainWindow::RememberPlayerPlace(Twips left, Twips top) {
  PlayerLeftText = std::to_string(left);
  PlayerTopText = std::to_string(top);
  form_.txtPlayerLeft.Value = PlayerLeftText;
  form_.txtPlayerTop.Value = PlayerTopText;
  if (storePlayerPosition_) storePlayerPosition_();
}

void MainWindow::RestoreMinimized(bool atStoredPlace) {
  if (form_.frmMain.WindowShape != Shape::Minimized) return;
  form_.frmMain.WindowShape = Shape::Normal;
  TakePlayerHeight();
  if (atStoredPlace) TakeStoredPlace();
}

void MainWindow::ShowConfiguration() {
  form_.frmMain.Visible = false;
  config_.frmConfiguration.Centre();
  config_.frmConfiguration.Visible = true;
}

void MainWindow::ApplyAlwaysOnTop() {
  form_.frmMain.TopMost = config_.txtAlwaysOnTop.Value.Get() == "Y";
}

void MainWindow::MeasureTitleBar() {
  if (!form_.txtTitleBarHeight.Value.Get().empty() || form_.frmMain.AboveContent == 0) return;
  form_.txtTitleBarHeight.Value = std::to_string(form_.frmMain.AboveContent);
}

Twips MainWindow::PlayerHeight() {
  MeasureTitleBar();
  return TwipsOf(form_.txtTitleBarHeight.Value) + form_.framePlayer.Height;
}

void MainWindow::TakePlayerHeight() { form_.frmMain.Height = PlayerHeight(); }

void MainWindow::TakeStoredPlace() {
  form_.frmMain.Left = TwipsOf(PlayerLeftText);
  form_.frmMain.Top = TwipsOf(PlayerTopText);
}

void MainWindow::HandleResize() {
  if (resizing_ || form_.frmMain.WindowShape != Shape::Normal) return;
  resizing_ = true;
  if (MiniPlayerShows()) {
    if (PlayRequested) {
      TakePlayerHeight();
      TakeStoredPlace();
    }
  } else if (form_.frmMain.Height >= kLowestFullHeight) {
    WindowHeight = form_.frmMain.Height;
    WindowWidth = form_.frmMain.Width;
  }
  resizing_ = false;
}

}  // namespace tavlo::window
