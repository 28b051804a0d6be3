#include "settings/walk.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/screen.h"

namespace tavlo::test {
namespace {

bool StandsOn(const forms::Pane& pane, const forms::Control& control) {
  const forms::Pane* around = control.Parent;
  while (around && around != &pane) around = around->Parent;
  return around == &pane;
}

}  // namespace

void Walk::Reach(const forms::Control& control) {
  const bool configures = program.Ask([&] { return Form().frmConfiguration.Visible.Get(); });
  if (&control.Home() == &Main().frmMain) {
    if (configures) hand.CloseConfiguration();
    const struct {
      const forms::Pane& frame;
      char letter;
    } views[] = {{Main().frameImport, 'i'}, {Main().frameFtp, 't'}};
    for (const auto& view : views) {
      const bool shows = program.Ask([&] { return view.frame.Visible.Get(); });
      if (StandsOn(view.frame, control) && !shows) {
        hand.ShowView(static_cast<std::uint32_t>(view.letter), view.frame);
      }
    }
    return;
  }
  if (!configures) {
    GoHome();
    hand.OpenConfiguration();
  }
  for (const forms::Pane* const page : Form().Pages()) {
    const bool shows = program.Ask([&] { return page->Visible.Get(); });
    if (StandsOn(*page, control) && !shows) hand.TurnTo(*page);
  }
}

void Walk::GoHome() {
  if (program.Ask([&] { return Form().frmConfiguration.Visible.Get(); })) hand.CloseConfiguration();
  if (!program.Ask([&] { return Main().frameInQueue.Visible.Get(); })) {
    hand.ShowView('q', Main().frameInQueue);
  }
  EXPECT_TRUE(Until([&] { return program.IsReady(); })) << program.Box();
}

std::vector<window::Binding> Walk::Bindings(store::Table table) {
  window::SettingsBinding& settings = program.Rooms().binding;
  if (table == store::Table::FtpSettings) return settings.FtpProfile().Bindings();
  if (table == store::Table::ImportAuthors) return settings.AuthorProfile().Bindings();
  return settings.Bindings();
}

std::string Walk::Shown(store::Table table, std::string_view field) {
  return program.Ask([&]() -> std::string {
    for (const window::Binding& binding : Bindings(table)) {
      if (binding.field == field) return binding.Shown();
    }
    return {};
  });
}

int Walk::RowOf(store::Table table) {
  return program.Ask([&] {
    window::SettingsBinding& settings = program.Rooms().binding;
    if (table == store::Table::FtpSettings) return settings.FtpProfile().Row();
    if (table == store::Table::ImportAuthors) return settings.AuthorProfile().Row();
    return 0;
  });
}

}  // namespace tavlo::test
