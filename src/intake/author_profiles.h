#pragma once

#include <cstdint>
#include <string>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "intake/import_list.h"
#include "window/main_window.h"
#include "window/row_binding.h"

namespace tavlo::intake {

/// The editor of the 26 author profiles, one for each import directory. The boxes are bound to the
/// profile that shows: what is typed into them is stored when another one is shown, and there is no
/// command for it. On the loop's thread; what it is handed must outlive it.
class AuthorProfiles {
 public:
  AuthorProfiles(window::MainWindow& window, window::RowBinding& profile, ImportList& list);

  /// The list index that was chosen last in `comboAuthorLastName`.
  std::uint8_t ImportProfileIndex = 0;
  /// The name box was clicked, so the lists of names may not be up to date.
  bool AuthorListStale = false;
  /// The name as the pointer last moved over the profile.
  std::string EditedAuthorName;

  /// Fills both lists of names and chooses `ImportProfileIndex` again, for a view that is entered.
  void EnterLists();
  /// Fills the list of names beside a server's profile and chooses the one that it is linked to.
  void FillServerLink();
  /// Shows the profile of a number, 1 to 26. False when there is none; then the one that shows
  /// stays.
  bool ShowProfile(int number);
  bool ShowFirst();
  /// The row that shows, for `ShowRow`, which shows it again.
  int ShownRow() const { return profile_.Row(); }
  void ShowRow(int row);
  /// Stores what was typed into the profile that shows.
  void StoreEdits();

 private:
  void WireFilters();
  void WirePriority();
  /// Says what document the profile on show makes of a file.
  void ShowDocument();
  void WireChoice();
  void WireServerLink();
  void ChooseProfile();
  void FollowPointer();
  void FillLists();
  void FillNames(forms::Table& list) const;
  void ShowServerLink();
  /// Stores what was typed, then shows the row.
  bool MoveTo(int row);

  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  window::MainWindow& window_;
  window::RowBinding& profile_;
  ImportList& list_;
};

}  // namespace tavlo::intake
