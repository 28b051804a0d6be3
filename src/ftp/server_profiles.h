#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "forms/configuration_form.h"
#include "ftp/server_list.h"
#include "intake/author_profiles.h"
#include "window/configuration_page.h"
#include "window/row_binding.h"

namespace tavlo::ftp {

/// A name that a list of servers can be searched by: each character that is no letter of the
/// alphabet and no digit costs the last one of the text, wherever it stands, and so does each
/// position that the shortened text has no character for any more. So one key too many goes, and of
/// a pasted text the end. A name has 255 characters at most.
std::string CutServerName(std::string_view text);

/// The page of the 25 server profiles. What stands on it belongs to the profile that shows, and is
/// saved when another one is shown and when the window is closed by its menu. On the loop's thread;
/// what it is handed must outlive it.
class ServerProfiles : public window::ConfigurationPage {
 public:
  ServerProfiles(forms::ConfigurationForm& config, window::RowBinding& profiles,
                 intake::AuthorProfiles& authors, ServerList& servers);

  forms::Pane& Frame() override { return config_.frameFtp; }
  void WindowOpens() override;
  /// By its frame the window closes without a save; what was typed stays on the page.
  void WindowCloses(window::ConfigurationExit exit) override;

  /// Saves the profile that shows, changed or not, and builds the list of servers anew. The saver
  /// tells of a save that fails.
  void SaveFtpConfigSettings();

 private:
  /// What Memorize took from the page, for the run.
  struct MemorizedProfile {
    std::string name;
    std::string server;
    std::string user;
    std::string password;
    std::string directory;
    bool autoListAndDownload = false;
    bool passive = false;
    bool deleteFiles = false;
    std::string parseGenericPointer;
  };

  void WireName();
  void WireSteps();
  void WireCopies();
  void ApplyNameRule();
  void Step(bool (window::RowBinding::*move)());
  void ShowPlace();
  void ShowProtection();
  MemorizedProfile OnThePage() const;
  void Write(const MemorizedProfile& profile);
  void FocusAway() { config_.frmConfiguration.FocusOn(config_.txtFocus); }

  forms::ConfigurationForm& config_;
  window::RowBinding& profiles_;
  intake::AuthorProfiles& authors_;
  ServerList& servers_;
  std::optional<MemorizedProfile> MemorizedFtpProfile;
  bool cutting_ = false;
};

}  // namespace tavlo::ftp
