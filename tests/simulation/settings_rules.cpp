#include "simulation/settings_rules.h"

#include <algorithm>
#include <utility>

#include "simulation/desk.h"
#include "simulation/trace.h"

namespace tavlo::simulation {
namespace {

using store::Table;
using window::Binding;
using window::Saving;

/// What a database keeps of a value.
std::string Kept(const std::string& value) { return value.substr(0, value.find('\0')); }

/// What must be stored in the field as soon as it is saved. The place of the mini-player is put
/// into its controls for the configuration, too, which is not the place that is remembered.
std::string Meant(const Binding& binding, Desk& desk) {
  const window::MainWindow& window = desk.Rooms()->mainWindow;
  if (binding.field == "PlayerTop") return window.PlayerTopText;
  if (binding.field == "PlayerLeft") return window.PlayerLeftText;
  return Kept(binding.Shown());
}

/// Whether a hand or a rule may have changed the control and its time to be saved is still to come.
bool IsStillToBeSaved(const Binding& binding, Desk& desk) {
  // Measured or calibrated by hand, it is saved with the next place.
  if (binding.field == "TitleBarHeight") return true;
  if (binding.saving == Saving::AtChange || binding.saving == Saving::WithPlace) return false;
  if (binding.saving == Saving::WithItsRow && desk.serversAreUnsaved) return true;
  return desk.Config().frmConfiguration.Visible;
}

bool Writes(const test::SimulatedDatabase::Save& save, std::string_view field) {
  return std::ranges::find(save.fields, field, &std::pair<std::string, std::string>::first) !=
         save.fields.end();
}

/// The fields of the mini-player's place are saved together.
bool PlaceIsSavedWhole(const test::SimulatedDatabase& database) {
  return std::ranges::all_of(database.Saves, [](const auto& save) {
    return Writes(save, "PlayerTop") == Writes(save, "PlayerLeft") &&
           Writes(save, "PlayerTop") == Writes(save, "TitleBarHeight");
  });
}

}  // namespace

std::string SettingsRules::Broken(Desk& desk) {
  if (!PlaceIsSavedWhole(*desk.Settings()))
    return "A part of the place of the mini-player is saved.";
  if (desk.Config().frmConfiguration.Visible) desk.serversAreUnsaved = false;
  window::SettingsBinding& binding = desk.Rooms()->binding;
  const std::string wrong = BrokenField(desk, Table::GeneralSettings, 0, binding.Bindings());
  if (!wrong.empty()) return wrong;
  const window::RowBinding& profile = binding.FtpProfile();
  return BrokenField(desk, Table::FtpSettings, profile.Row(), profile.Bindings());
}

std::string SettingsRules::BrokenField(Desk& desk, Table table, int row,
                                       const std::vector<Binding>& bindings) {
  const test::SimulatedDatabase& database = *desk.Settings();
  for (const Binding& binding : bindings) {
    const Pair now{.shown = Meant(binding, desk),
                   .stored = database.Value(table, row, binding.field)};
    const auto [first, isFirst] = asLoaded_.emplace(binding.field, now);
    const bool asItWasLoaded = isFirst || first->second == now;
    if (now.shown == now.stored || asItWasLoaded) continue;
    if (IsStillToBeSaved(binding, desk)) continue;
    if (database.WasRefused(table, row, binding.field)) continue;
    return std::string(binding.field) + " is stored as " + Readable(now.stored) + " and shown as " +
           Readable(now.shown);
  }
  return "";
}

}  // namespace tavlo::simulation
