#include "shell/branding.h"

namespace tavlo::shell {

Branding::Branding(forms::MainForm& form, forms::ConfigurationForm& config, forms::AboutForm& about,
                   store::SettingsStore& settings, store::DocumentNames& names)
    : form_(form), config_(config), about_(about), settings_(settings), names_(names) {}

void Branding::ApplyBranding() {
  settings_.ReadInto(OEMLogoName, store::Table::GeneralSettings, "OEMLogo");
  const bool brisel = OEMLogoName == "KRT";
  const bool sorel = OEMLogoName == "SorelTek";
  form_.frmMain.Caption = "Tavlo Deck";
  form_.lblCustomDisplay.Visible = false;
  if (config_.txtShowCustomDisplay.Value.Get() == "Y") {
    form_.lblCustomDisplay.Value = config_.txtCustomDisplay.Value.Get();
    form_.lblCustomDisplay.Visible = true;
  }
  about_.lblAboutDescription.Value =
      "Retrieve and play audio files from digital portable recorders, pc dictate stations, "
      "digital dictation systems, and ftp sites";
  form_.picBriselBitMap.Visible = brisel;
  form_.lblBriselName.Visible = brisel;
  form_.picSorelLogo.Visible = sorel;
  names_.DateFormat = sorel ? "DDMMYY" : "MMDDYY";
}

}  // namespace tavlo::shell
