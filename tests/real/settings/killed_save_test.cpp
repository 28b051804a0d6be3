#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/sqlite/sqlite_settings.h"
#include "settings/stepped_work.h"
#include "store/settings_fields.h"
#include "store/settings_store.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"
#include "support/temporary_folder.h"
#include "window/settings_binding.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using store::Record;
using store::Table;
using window::Binding;
using window::Saving;

/// The settings of a real database in their controls, as the program has them.
struct OpenSettings {
  explicit OpenSettings(store::OpenedDatabase opened) : database(std::move(opened.database)) {
    binding.Load();
  }

  std::unique_ptr<store::SettingsDatabase> database;
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  store::SettingsStore settings{*database};
  store::WorkFolders folders{disk, "/root"};
  forms::MainForm main{loop};
  forms::ConfigurationForm config{loop};
  window::SettingsBinding binding{loop, main, config, settings, folders};
};

/// A save that somebody's change ends in.
struct Save {
  const char* name;
  /// The bindings that it writes.
  std::vector<Binding> (*bindings)(OpenSettings&);
  bool (*run)(OpenSettings&);

  friend std::ostream& operator<<(std::ostream& out, const Save& save) { return out << save.name; }
};

std::vector<Binding> OfTheKinds(OpenSettings& open, std::vector<Saving> kinds) {
  std::vector<Binding> chosen = open.binding.Bindings();
  std::erase_if(chosen, [&](const Binding& binding) {
    return std::ranges::find(kinds, binding.saving) == kinds.end();
  });
  return chosen;
}

std::vector<Binding> Written(std::vector<Binding> row) {
  std::erase_if(row, [](const Binding& binding) { return binding.saving == Saving::Never; });
  return row;
}

const Save kSaves[] = {
    {.name = "Configuration",
     .bindings =
         [](OpenSettings& open) {
           return OfTheKinds(open, {Saving::Listed, Saving::GoesAlong});
         },
     .run = [](OpenSettings& open) { return open.binding.SaveConfigurationFields(); }},
    {.name = "ServerProfile",
     .bindings = [](OpenSettings& open) { return Written(open.binding.FtpProfile().Bindings()); },
     .run = [](OpenSettings& open) { return open.binding.FtpProfile().Save(); }},
    {.name = "AuthorProfile",
     .bindings =
         [](OpenSettings& open) { return Written(open.binding.AuthorProfile().Bindings()); },
     .run = [](OpenSettings& open) { return open.binding.AuthorProfile().Save(); }},
    {.name = "PlaceOfTheMiniPlayer",
     .bindings = [](OpenSettings& open) { return OfTheKinds(open, {Saving::WithPlace}); },
     .run = [](OpenSettings& open) { return open.binding.SavePlayerPlace(); }},
};

/// Another value than the one that shows, and of one text one that takes several pages of the file.
void Change(const Binding& binding) {
  constexpr std::size_t kPages = 20'000;
  if (!binding.text) return binding.Show(store::TruthText(!binding.check->Value));
  const std::size_t length = binding.field == "CustomDisplay" ? kPages : 0;
  binding.Show("new " + std::string(binding.field) + std::string(length, 'x'));
}

class SaveThatIsKilled : public testing::TestWithParam<Save> {
 protected:
  SaveThatIsKilled() {
    EXPECT_EQ(databases.Create(shipped), "");
    before = Held(shipped);
  }

  /// Every row of the four tables, in their order.
  std::vector<Record> Held(const std::string& file) {
    std::vector<Record> rows;
    const store::OpenedDatabase opened = databases.Open(file);
    EXPECT_TRUE(opened.database) << opened.failure;
    if (!opened.database) return rows;
    for (const store::TableShape& shape : store::kTables) {
      for (int row = 0; row < shape.rows; ++row) {
        rows.push_back(opened.database->Read(shape.table, row));
      }
    }
    return rows;
  }

  /// Saves into a database as shipped, and is killed at that call.
  SteppedWork SaveUntil(int call, Moment moment) {
    std::error_code none;
    fs::remove(path + "-journal", none);
    fs::copy_file(shipped, path, fs::copy_options::overwrite_existing);
    return KillAtCall(call, moment, [this]() -> std::function<bool()> {
      store::OpenedDatabase opened = databases.Open(path);
      if (!opened.database) return [] { return false; };
      const auto open = std::make_shared<OpenSettings>(std::move(opened));
      for (const Binding& binding : GetParam().bindings(*open)) Change(binding);
      return [open] { return GetParam().run(*open); };
    });
  }

  const TemporaryFolder folder;
  const std::string shipped = folder / "shipped.mdb";
  const std::string path = folder / "Lyrane_Tavlo_Deck.mdb";
  platform::SqliteSettingsDatabases databases{{.root = "/root", .revision = "1.2.3"}};
  std::vector<Record> before;
};

TEST_P(SaveThatIsKilled, LeavesAllOldOrAllNewValuesWhicheverCallItWasIn) {
  constexpr int kNever = -1;
  const SteppedWork whole = SaveUntil(kNever, Moment::BeforeCall);
  if (whole.outcome == Outcome::NotPermitted) {
    GTEST_SKIP() << "processes may not be followed here, so none is killed at a chosen call";
  }
  ASSERT_EQ(whole.outcome, Outcome::Finished);
  const std::vector<Record> after = Held(path);
  ASSERT_NE(after, before);

  int changes = 0;
  bool isNew = false;
  const auto look = [&](const SteppedWork& save) {
    const std::vector<Record> held = Held(path);
    EXPECT_TRUE(held == before || held == after) << "the values of two saves stand side by side";
    EXPECT_FALSE(isNew && held == before) << "a later call takes the save back";
    isNew = held == after;
    changes += save.changes ? 1 : 0;
  };
  for (int call = 1; !HasFailure(); ++call) {
    SCOPED_TRACE("call " + std::to_string(call));
    const SteppedWork save = SaveUntil(call, Moment::BeforeCall);
    if (save.outcome == Outcome::Finished) break;
    ASSERT_EQ(save.outcome, Outcome::Killed);
    look(save);
    if (!save.writes) continue;
    SCOPED_TRACE("half written");
    const SteppedWork half = SaveUntil(call, Moment::HalfWritten);
    ASSERT_EQ(half.outcome, Outcome::Killed);
    look(half);
  }
  EXPECT_TRUE(isNew) << "the last call comes before the save is done";
  // The old page goes into the journal, the new one into the file; both are flushed, and the
  // journal is emptied.
  EXPECT_GE(changes, 5);
}

INSTANTIATE_TEST_SUITE_P(Settings, SaveThatIsKilled, testing::ValuesIn(kSaves),
                         [](const auto& save) { return std::string(save.param.name); });

TEST_P(SaveThatIsKilled, HoldsEveryValueOnceItIsDone) {
  store::OpenedDatabase opened = databases.Open(shipped);
  ASSERT_TRUE(opened.database) << opened.failure;
  OpenSettings open(std::move(opened));
  const std::vector<Binding> bindings = GetParam().bindings(open);
  for (const Binding& binding : bindings) Change(binding);
  ASSERT_TRUE(GetParam().run(open));
  open.database.reset();
  std::size_t changed = 0;
  const std::vector<Record> after = Held(shipped);
  for (std::size_t row = 0; row < after.size(); ++row) {
    for (const auto& [field, value] : after[row]) {
      if (before[row].at(field) != value) ++changed;
    }
  }
  EXPECT_EQ(changed, bindings.size());
}

}  // namespace
}  // namespace tavlo::test
