#include "intake/auto_import.h"

#include <string>

#include "intake/import_directories.h"
#include "store/settings_fields.h"

namespace tavlo::intake {
namespace {

/// What the pressed buttons change although the command around them still needs it: the hourglass
/// and the frozen menus keep the exit away.
class AroundCommand {
 public:
  explicit AroundCommand(forms::MainForm& form)
      : form_(form),
        pointer_(form.frmMain.MousePointer),
        file_(form.mnuFile.Enabled),
        view_(form.mnuView.Enabled),
        report_(form.mnuReport.Enabled) {}
  ~AroundCommand() {
    form_.frmMain.MousePointer = pointer_;
    form_.mnuFile.Enabled = file_;
    form_.mnuView.Enabled = view_;
    form_.mnuReport.Enabled = report_;
  }
  AroundCommand(const AroundCommand&) = delete;

 private:
  forms::MainForm& form_;
  const forms::Pointer pointer_;
  const bool file_;
  const bool view_;
  const bool report_;
};

/// What the Import view shows, put back however the run ends. The profile is, too: what is sent by
/// hand next must not go out under another author than the one that was chosen. No hand reaches the
/// view meanwhile: it would choose beside a directory and a profile that only pass by.
class ShownBefore {
 public:
  ShownBefore(forms::MainForm& form, AuthorProfiles& profiles)
      : form_(form),
        profiles_(profiles),
        directory_(form.txtWavImportSubdirectory.Value),
        row_(profiles.ShownRow()) {
    form_.frameImport.Enabled = false;
  }
  ~ShownBefore() {
    form_.frameImport.Enabled = true;
    form_.txtWavImportSubdirectory.Value = directory_;
    profiles_.ShowRow(row_);
  }
  ShownBefore(const ShownBefore&) = delete;

 private:
  forms::MainForm& form_;
  AuthorProfiles& profiles_;
  const std::string directory_;
  const int row_;
};

}  // namespace

AutoImport::AutoImport(window::MainWindow& window, ImportList& list, AuthorProfiles& profiles)
    : form_(window.Form()), config_(window.Config()), list_(list), profiles_(profiles) {}

void AutoImport::AutoImportAll() {
  if (config_.txtAutoImport.Value.Get() == "N") return;
  {
    const ShownBefore before(form_, profiles_);
    const window::Raised running(list_.AutoImportRunning);
    list_.AutoImportTold = false;
    for (int number = 1; number <= kImportDirectories; ++number) ImportDirectory(number);
  }
  ShowDirectoryAgain();
}

void AutoImport::ImportDirectory(int number) {
  const AroundCommand around(form_);
  const bool linked = store::IsYes(form_.txtImportSynchronize.Value.Get());
  const bool shown = linked ? profiles_.ShowProfile(number) : profiles_.ShowFirst();
  // Without its profile the directory waits: its files would go out under the author before.
  if (!shown) return;
  form_.txtWavImportSubdirectory.Value = std::to_string(number - 1);
  form_.cmdRefreshImportList.Press();
  form_.cmdSendAllImportFilesToQueue.Press();
}

void AutoImport::ShowDirectoryAgain() {
  // Rows of the last directory would pass for files of the one whose number shows.
  if (!form_.frameImport.Visible) return;
  const AroundCommand around(form_);
  list_.RefreshImportList(form_.txtWavImportSubdirectory.Value);
  list_.SetImportButtons();
}

}  // namespace tavlo::intake
