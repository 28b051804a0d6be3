#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/settings_hand.h"
#include "store/settings_database.h"
#include "window/bindings.h"

namespace tavlo::test {

/// A walk over all settings in the windows of the running program.
class Walk {
 public:
  Walk(DrivenProgram& itsProgram, const Home& itsHome)
      : program(itsProgram), home(itsHome), hand(itsProgram) {}

  forms::MainForm& Main() { return hand.Main(); }
  forms::ConfigurationForm& Form() { return hand.Form(); }
  /// A folder of the test's own that a path is set to.
  std::string Folder(const std::string& name) const { return home.Path() + "/" + name; }

  /// Brings to the front what a control stands on: a page, a view, or the deck.
  void Reach(const forms::Control& control);
  /// Back to the deck with its Queue.
  void GoHome();
  /// What the windows hold of a field; "" for one that none shows.
  std::string Shown(store::Table table, std::string_view field);
  /// The row that the windows show of a table.
  int RowOf(store::Table table);

  DrivenProgram& program;
  const Home& home;
  SettingsHand hand;

 private:
  std::vector<window::Binding> Bindings(store::Table table);
};

using Act = std::function<void(Walk&)>;

/// The program is started three times. What excludes something else is changed in the second turn.
enum class Turn { First, Second };

/// A setting that somebody can change in a window.
struct WalkedSetting {
  store::Table table;
  std::string field;
  Turn turn;
  /// Changes it by hand. Empty where the setting before it in the list brings it along.
  Act change;
  /// Expects, after a restart, that what was set is in force. Empty where that is seen elsewhere.
  Act acts;
  /// The test that starts from the stored value and sees it act: "Suite.Name". Empty where `acts`
  /// sees it, or where the setting has no effect.
  std::string_view seenBy = {};
  /// Why nothing can be seen of it.
  std::string_view withoutEffect = {};
};

/// A setting that no window changes.
struct FixedSetting {
  store::Table table;
  std::string_view field;
  std::string_view reason;
};

/// In the order of the walk.
const std::vector<WalkedSetting>& WalkedSettings();
const std::vector<FixedSetting>& FixedSettings();

}  // namespace tavlo::test
