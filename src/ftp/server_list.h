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
  /// The import directory that files of no known type go to, as its number, "0" to "25". What is
  /// stored becomes a part of a path, so nothing but such a number comes through: of any text its
  /// number counts, as the page shows it, and for a number without a directory this is "", the
  /// import folder itself.
  std::string parseGenericPointer;
};

/// The servers that there are to choose from on the Ftp view: the names of all profiles, and the
/// one that the choice stands on. On the loop's thread.
class ServerList {
 public:
  /// The profiles are those of the Ftp page; only what is saved of them is looked at. Both must
  /// outlive it.
  ServerList(forms::MainForm& form, window::RowBinding& profiles);

  /// Fills `comboFtpServerNames` anew and puts the stored choice back, which counts as no choice: a
  /// message stays, and a type of files that a hand chose stays. A stored number that no row has
  /// chooses none and is kept.
  void BuildFtpServers();
  /// The name that is chosen; empty when none is.
  const std::string& ChosenName() const;
  /// The profile of the first row with the chosen name, read now. Nothing when there is none.
  std::optional<ServerProfile> Chosen() const;

 private:
  void TakeChoice();
  /// Chooses the type of files that the profile asks for, where there is such a type.
  void ChooseFileType(const std::string& type);
  std::optional<int> ChosenRow() const;
  std::string Value(int row, std::string_view field) const;

  forms::MainForm& form_;
  window::RowBinding& profiles_;
  /// What was taken from a profile last. A list that is built again does not take it again.
  std::string takenFileType_;
};

}  // namespace tavlo::ftp
