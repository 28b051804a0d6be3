#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "forms/configuration_form.h"
#include "forms/main_form.h"

/// Which control shows which setting.
namespace tavlo::window {

/// How the value of a control comes into the database.
enum class Saving {
  Listed,      ///< Assigned when the configuration closes.
  GoesAlong,   ///< Written together with what is listed, behind it.
  AtChange,    ///< Written whenever it changes: its control stands on the main window.
  WithPlace,   ///< Written with the place of the mini-player only.
  WithItsRow,  ///< Assigned when the row that shows is saved, of a table with several.
  Never        ///< Only shown.
};

/// What a stored text says when its check box is ticked.
enum class Tick { Yes, No };

/// One field and the controls that stand for it. A text holds the stored text; a check box alone
/// holds a stored truth. Both together are a pair: the text holds "Y" or "N", and the box is what a
/// hand clicks.
struct Binding {
  std::string_view field;
  Saving saving;
  forms::Text* text = nullptr;
  forms::Choice* check = nullptr;
  /// Of a pair. The box of the pedals' sense is the one that is ticked for a stored "N".
  Tick tick = Tick::Yes;

  /// The value as it is stored.
  std::string Shown() const;
  void Show(const std::string& stored) const;

  bool IsPair() const { return text && check; }
  /// Sets the box of a pair from its text. Whatever is not "Y" counts as "N".
  void ShowTick() const;
  /// Sets the text of a pair from its box.
  void TakeTick() const;
};

/// The pairs among the bindings whose boxes stand on a pane.
std::vector<Binding> PairsOn(const forms::Pane& pane, const std::vector<Binding>& bindings);

/// What stands on the configuration window for the one row of the general settings, in the order in
/// which it is written.
std::vector<Binding> ConfigurationBindings(forms::ConfigurationForm& config);
/// What stands on the main window for that row.
std::vector<Binding> MainBindings(forms::MainForm& main);
/// What stands on the Ftp page for the server profile that shows, in the order in which it is
/// written.
std::vector<Binding> FtpBindings(forms::ConfigurationForm& config);
/// What stands on the Import view for the author profile that shows, in the order in which it is
/// written.
std::vector<Binding> AuthorBindings(forms::MainForm& main);

}  // namespace tavlo::window
