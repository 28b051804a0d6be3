#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include "store/settings_fields.h"
#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using forms::By;
using store::Table;
using window::Binding;

/// The stored value of a field whose check box is ticked, and of one whose box is not.
std::string StoredFor(std::string_view field, bool ticked) {
  if (store::FindField(Table::GeneralSettings, field)->form == store::Form::Truth) {
    return ticked ? "-1" : "0";
  }
  // The box of the pedals' sense says the reverse of what is stored.
  const bool reversed = field == "SwapRewFwdPedalFlag";
  return ticked != reversed ? "Y" : "N";
}

/// A deck whose check boxes a hand looks up.
struct SettledDesk : DeckBench {
  const Binding& BindingOf(std::string_view field) {
    return *std::ranges::find(deck.Built()->binding.Bindings(), field, &Binding::field);
  }
  /// Brings the page or the view to the front that a control stands on, as a hand does.
  void BringToFront(const forms::Control& control) {
    if (&control.Home() == &form.frmMain) return form.mnuViewImport.Press(By::Hand);
    form.mnuConfiguration.Press(By::Hand);
    config.frmConfiguration.Activate();
    const forms::Pane* page = control.Parent;
    while (page->Parent != &config.frmConfiguration) page = page->Parent;
    config.tabConfiguration.RowClick(config.TabOf(*page));
  }
  void CloseConfiguration() { config.mnuClose.Press(By::Hand); }
};

/// Fields of the general settings that have a check box.
std::set<std::string_view> FieldsWithACheckBox() {
  std::set<std::string_view> fields;
  for (const store::Field& field : store::FieldsOf(Table::GeneralSettings)) {
    const bool has = field.form == store::Form::YesNo || field.form == store::Form::Truth;
    if (has) fields.insert(field.name);
  }
  return fields;
}

TEST(CheckBoxes, AreTickedAsTheirFieldIsStoredAndAClickStoresTheOther) {
  std::set<std::string_view> clicked;
  for (const std::string_view field : FieldsWithACheckBox()) {
    for (const bool ticked : {true, false}) {
      SCOPED_TRACE(std::string(field) + (ticked ? " ticked" : " not ticked"));
      SettledDesk desk;
      desk.StartWith({{std::string(field), StoredFor(field, ticked)}});
      const Binding& binding = desk.BindingOf(field);
      desk.BringToFront(*binding.check);
      EXPECT_EQ(binding.check->Value, ticked);
      if (!binding.check->Reachable()) continue;
      clicked.insert(field);
      binding.check->Click();
      EXPECT_EQ(binding.check->Value, !ticked);
      desk.CloseConfiguration();
      EXPECT_EQ(desk.Stored(field), StoredFor(field, !ticked));
    }
  }
  EXPECT_EQ(clicked, FieldsWithACheckBox());
}

}  // namespace
}  // namespace tavlo::test
