#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "forms/main_form.h"
#include "window/row_binding.h"

namespace tavlo::ftp {

/// What a profile says of its server, as it was saved last.
struct ServerProfile {
  std::string address;
  std::string user;
  std::string password;
  std::string directory;
  bool deleteFiles = false;
  bool autoListAndDownload = false;
  bool passive = false;
  /// The import directory that files of no known type go to; "" is the root of all.
  std::string parseGenericPointer;
};

/// The servers that there are to choose from on the Ftp view: the names of all profiles, and the
/// one that the choice stands on. On the loop's thread.
class ServerList {
 public:
  /// The profiles are those of the Ftp page; only what is saved of them is looked at.
  ServerList(forms::MainForm& form, window::RowBinding& profiles);

  /// Fills `comboFtpServerNames` anew and puts the stored choice back.
  void BuildFtpServers();
  /// The name that is chosen; empty when none is.
  const std::string& ChosenName() const;
  /// The profile of the first row with the chosen name, read now. Nothing when there is none.
  std::optional<ServerProfile> Chosen() const;

 private:
  void TakeChoice();
  std::string Value(int row, std::string_view field) const;

  forms::MainForm& form_;
  window::RowBinding& profiles_;
};

}  // namespace tavlo::ftp
