#include "shell/menus.h"

#include <utility>

namespace tavlo::shell {

Menus::Menus(const Platform& platform, forms::AboutForm& about, window::MainWindow& window,
             window::ConfigurationWindow& configuration, const playback::Playback& playback,
             std::string programVersionText)
    : loop_(platform.loop),
      showSystemInformation_(platform.showSystemInformation),
      form_(window.Form()),
      about_(about),
      window_(window),
      configuration_(configuration),
      engine_(playback.engine),
      voice_(playback.voice),
      programVersionText_(std::move(programVersionText)) {
  form_.mnuMinimize.OnPress = [this] { form_.frmMain.WindowShape = forms::Shape::Minimized; };
  form_.mnuAbout.OnPress = [this] { ShowAbout(); };
  form_.cmdEQ.OnPress = [this] { ShowEqualizer(); };
  about_.mnuSystemInfo.OnPress = [this] { ShowSystemInformation(); };
  about_.mnuClose.OnPress = [this] { about_.frmAbout.Visible = false; };
  about_.frmAbout.OnCloseRequest = [this] { about_.frmAbout.Visible = false; };
}

void Menus::ShowAbout() {
  voice_.StopPrompt();
  engine_.tmrPlaySnipet.Stop();
  about_.lblVersion.Value = "Version " + programVersionText_;
  about_.frmAbout.Centre();
  about_.frmAbout.Visible = true;
}

void Menus::ShowSystemInformation() {
  if (showSystemInformation_()) return;
  loop_.Show({.title = "Tavlo Deck",
              .text = "System Information Is Unavailable At This Time",
              .icon = base::Icon::Information});
}

void Menus::ShowEqualizer() {
  if (window_.guards.TransportMayAct()) {
    form_.txtPlayerTop.Value = std::to_string(form_.frmMain.Top.Get());
    form_.txtPlayerLeft.Value = std::to_string(form_.frmMain.Left.Get());
    configuration_.ConfigOpenOnEqualizer = true;
    window_.ShowConfiguration();
    return;
  }
  window_.FocusAway();
}

}  // namespace tavlo::shell
