#include "shell/opened_files.h"

#include <algorithm>
#include <utility>

namespace tavlo::shell {
namespace {

using base::operator""ms;

/// Nobody tells when a hand could reach the list again, so it is looked at.
constexpr base::Duration kBetweenLooks = 500ms;

constexpr const char* kForLater =
    "The opened files come into the Queue when this dictation is finished.";

std::string TooManyInWords(std::size_t count) {
  if (count == 0) return {};
  return std::to_string(count) + (count == 1 ? " more file was" : " more files were") +
         " not taken: at most " + std::to_string(OpenedFiles::kMost) + " may wait at a time.";
}

}  // namespace

OpenedFiles::OpenedFiles(const Parts& parts)
    : tmrOpenedFiles(parts.loop, "tmrOpenedFiles", kBetweenLooks),
      loop_(parts.loop),
      form_(parts.window.Form()),
      config_(parts.window.Config()),
      window_(parts.window),
      documentInWork_(parts.documentInWork),
      droppedFiles_(parts.droppedFiles),
      handover_(parts.handover) {
  tmrOpenedFiles.OnTick = [this] { Look(); };
}

void OpenedFiles::Begin(const std::vector<std::string>& given) {
  Add(given);
  handover_.Listen([this](const std::vector<std::string>& paths) { Come(paths); });
}

void OpenedFiles::Add(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (waiting_.size() == kMost) {
      ++tooMany_;
    } else if (std::ranges::find(waiting_, path) == waiting_.end()) {
      // Who opens a file that shows nowhere yet opens it again.
      waiting_.push_back(path);
    }
  }
  if (!waiting_.empty()) tmrOpenedFiles.StartDue();
}

void OpenedFiles::Come(const std::vector<std::string>& paths) {
  Add(paths);
  if (documentInWork_.IsInWork()) window_.Say(kForLater);
  ComeToFront();
}

void OpenedFiles::ComeToFront() {
  if (config_.frmConfiguration.Visible) return config_.frmConfiguration.ComeToFront();
  forms::Window& window = form_.frmMain;
  const bool minimized = window.WindowShape == forms::Shape::Minimized;
  // Who has the deck minimized while a document plays has it back at its end. A box that came up
  // over a minimized one stands in front by itself.
  frontIsOwed_ = minimized && (documentInWork_.IsInWork() || loop_.MessageBoxOpen());
  if (frontIsOwed_) return;
  window.WindowShape = forms::Shape::Normal;
  window.ComeToFront();
}

void OpenedFiles::Look() {
  tmrOpenedFiles.Stop();
  if (MayTake()) return Take();
  tmrOpenedFiles.Start();
}

bool OpenedFiles::MayTake() const {
  if (loop_.MessageBoxOpen() || documentInWork_.IsInWork()) return false;
  if (!window_.guards.ListsMayChange() || !form_.frmMain.Visible) return false;
  // Somebody who is logged in at a server has no menus, and so no way to the Queue.
  const bool mayTurnToQueue = form_.frameInQueue.Visible || form_.mnuView.Enabled;
  return mayTurnToQueue && form_.listViewInQueue.Enabled && form_.cmdUpdateFileList.Enabled;
}

void OpenedFiles::Take() {
  const std::vector<std::string> paths = std::exchange(waiting_, {});
  window_.SayWhile(false, kForLater);
  if (frontIsOwed_) ComeToFront();
  droppedFiles_.TakeIntoQueue(paths);
  window_.Say(TooManyInWords(std::exchange(tooMany_, 0)));
}

void OpenedFiles::End() {
  handover_.Close();
  tmrOpenedFiles.Stop();
  droppedFiles_.CopyIntoQueue(std::exchange(waiting_, {}));
}

}  // namespace tavlo::shell
