#include "ftp/server_profiles.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "ftp/server_address.h"

namespace tavlo::ftp {
namespace {

constexpr std::size_t kLongestName = 255;

/// Raises a flag for as long as it lives.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
  ~Raised() { flag_ = false; }
  Raised(const Raised&) = delete;

 private:
  bool& flag_;
};

bool IsOfAName(std::string_view character) {
  if (character.size() != 1) return false;
  const char c = character.front();
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

}  // namespace

std::string CutServerName(std::string_view text) {
  std::string_view name = base::FirstCharacters(text, kLongestName);
  const std::size_t length = base::CharacterCount(name);
  std::size_t left = length;
  for (std::size_t position = 1; position <= length; ++position) {
    const std::string_view before = base::FirstCharacters(name, position - 1);
    const std::string_view upTo = base::FirstCharacters(name, position);
    if (IsOfAName(upTo.substr(before.size())) || left == 0) continue;
    name = base::FirstCharacters(name, --left);
  }
  return std::string(name);
}

ServerProfiles::ServerProfiles(forms::ConfigurationForm& config, window::RowBinding& profiles,
                               intake::AuthorProfiles& authors, ServerList& servers)
    : config_(config), profiles_(profiles), authors_(authors), servers_(servers) {
  WireName();
  WireSteps();
  WireCopies();
  config_.eServer.OnChange = [this] { ShowProtection(); };
  for (forms::Choice* const box :
       {&config_.chkFtpFileDeleteMode, &config_.chkFtpAutoListAndDownload,
        &config_.chkFtpPassiveMode}) {
    box->OnClick = [this] { FocusAway(); };
  }
}

void ServerProfiles::WireName() {
  config_.txtFtpName.OnChange = [this] {
    // What the rule itself writes is not cut once more.
    if (!cutting_) ApplyNameRule();
  };
}

void ServerProfiles::WireSteps() {
  struct Key {
    forms::Command& command;
    bool (window::RowBinding::*move)();
  };
  for (const Key& key : {Key{config_.cmdFtpFirst, &window::RowBinding::MoveToFirst},
                         Key{config_.cmdFtpPrevious, &window::RowBinding::MoveToPrevious},
                         Key{config_.cmdFtpNext, &window::RowBinding::MoveToNext},
                         Key{config_.cmdFtpLast, &window::RowBinding::MoveToLast}}) {
    key.command.OnPress = [this, move = key.move] { Step(move); };
  }
  config_.txtFtpServerID.OnChange = [this] { ShowPlace(); };
}

void ServerProfiles::WireCopies() {
  config_.cmdFtpClear.OnPress = [this] {
    Write({.passive = true, .parseGenericPointer = "1"});
    FocusAway();
  };
  config_.cmdFtpMemorize.OnPress = [this] {
    MemorizedFtpProfile = OnThePage();
    config_.cmdFtpClone.Enabled = true;
    FocusAway();
  };
  config_.cmdFtpClone.OnPress = [this] {
    if (MemorizedFtpProfile) Write(*MemorizedFtpProfile);
    FocusAway();
  };
}

void ServerProfiles::WindowOpens() {
  authors_.FillServerLink();
  if (config_.txtFtpName.Value.Get().empty()) ApplyNameRule();
  ShowPlace();
}

void ServerProfiles::WindowCloses(window::ConfigurationExit exit) {
  if (exit == window::ConfigurationExit::ByMenu) SaveFtpConfigSettings();
}

void ServerProfiles::SaveFtpConfigSettings() {
  profiles_.Save();
  servers_.BuildFtpServers();
}

void ServerProfiles::ApplyNameRule() {
  forms::Text& name = config_.txtFtpName;
  std::string cut = CutServerName(name.Value.Get());
  if (cut.empty()) cut = "Ftp" + config_.txtFtpServerID.Value.Get();
  {
    const Raised cutting(cutting_);
    name.Value = std::move(cut);
  }
  servers_.BuildFtpServers();
}

void ServerProfiles::Step(bool (window::RowBinding::*move)()) {
  (profiles_.*move)();
  servers_.BuildFtpServers();
  ShowPlace();
  FocusAway();
}

void ServerProfiles::ShowPlace() {
  const int row = profiles_.Row();
  config_.dataFtpSettings.Caption = config_.txtFtpServerID.Value;
  for (forms::Command* const back : {&config_.cmdFtpFirst, &config_.cmdFtpPrevious}) {
    back->Enabled = row > 0;
  }
  for (forms::Command* const onwards : {&config_.cmdFtpNext, &config_.cmdFtpLast}) {
    onwards->Enabled = row + 1 < profiles_.RowCount();
  }
}

void ServerProfiles::ShowProtection() {
  forms::ProtectionText& line = config_.lblFtpUnprotected;
  const std::string& text = config_.eServer.Value;
  const std::optional<ServerAddress> address = ReadServerAddress(text);
  line.Warns = !text.empty() && (!address || address->protection == Protection::None);
  if (text.empty()) {
    line.Value = "";
  } else if (!address) {
    line.Value = "This address can not be read; ftp.example.com would be one.";
  } else if (address->protection == Protection::None) {
    line.Value = "The password travels unprotected; ask for ftps:// or ftpes://.";
  } else {
    line.Value = "The password and the files travel protected.";
  }
}

ServerProfiles::MemorizedProfile ServerProfiles::OnThePage() const {
  return {.name = config_.txtFtpName.Value,
          .server = config_.eServer.Value,
          .user = config_.eUser.Value,
          .password = config_.ePass.Value,
          .directory = config_.eServerDir.Value,
          .autoListAndDownload = config_.chkFtpAutoListAndDownload.Value,
          .passive = config_.chkFtpPassiveMode.Value,
          .deleteFiles = config_.chkFtpFileDeleteMode.Value,
          .parseGenericPointer = config_.txtFtpParseGenericPointer.Value};
}

void ServerProfiles::Write(const MemorizedProfile& profile) {
  config_.txtFtpName.Value = profile.name;
  config_.eServer.Value = profile.server;
  config_.eUser.Value = profile.user;
  config_.ePass.Value = profile.password;
  config_.eServerDir.Value = profile.directory;
  config_.chkFtpAutoListAndDownload.Value = profile.autoListAndDownload;
  config_.chkFtpPassiveMode.Value = profile.passive;
  config_.chkFtpFileDeleteMode.Value = profile.deleteFiles;
  config_.txtFtpParseGenericPointer.Value = profile.parseGenericPointer;
}

}  // namespace tavlo::ftp
