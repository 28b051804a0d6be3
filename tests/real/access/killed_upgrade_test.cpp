#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "access/access_bench.h"
#include "settings/stepped_work.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using store::Record;

/// Starts that take old settings over, each killed at every one of its system calls in turn.
struct UpgradeThatIsKilled : testing::Test, AccessBench {
  /// What a root holds before a start that is killed; the next one begins with the same.
  struct Files {
    std::string settings;
    bool hasOld = true;
    bool hasMarker = false;
  };

  UpgradeThatIsKilled() { shipped = BytesOf(Settings()); }

  std::string Marker() const { return Root() + "/PlaceOldDatabaseHere/UpgradeFinished.txt"; }
  std::string Aside() const { return Root() + "/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.md1"; }

  void Lay(const Files& files) const {
    fs::remove_all(Root());
    fs::create_directories(Root() + "/PlaceOldDatabaseHere");
    std::ofstream(Settings(), std::ios::binary) << files.settings;
    if (files.hasOld) PlaceOld(old);
    if (files.hasMarker) std::ofstream(Marker()) << "Tavlo Deck upgrade finished\n";
  }
  /// Every row of the four tables, in their order.
  std::vector<Record> Held() {
    const store::OpenedDatabase opened = databases.Open(Settings());
    EXPECT_TRUE(opened.database) << opened.failure;
    std::vector<Record> rows;
    for (const store::TableShape& shape : store::kTables) {
      for (int row = 0; opened.database && row < shape.rows; ++row) {
        rows.push_back(opened.database->Read(shape.table, row));
      }
    }
    return rows;
  }
  /// The work of one start, for a process of its own: where it is asked, the answer is Yes.
  std::function<bool()> Start() {
    store::OpenedDatabase opened = databases.Open(Settings());
    if (!opened.database) return [] { return false; };
    const auto database = std::shared_ptr<store::SettingsDatabase>(std::move(opened.database));
    if (fs::exists(Old()) && !fs::exists(Marker())) loop.Expect({.reply = base::Reply::Yes});
    return [this, database] {
      store::SettingsStore settings(*database);
      return store::DatabaseUpgrade(loop, disk, folders, databases, settings)
          .UpgradeDatabase()
          .empty();
    };
  }
  /// All files of the root with their bytes.
  std::map<std::string, std::string> Standing() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(Root())) {
      if (entry.is_regular_file()) files[entry.path()] = BytesOf(entry.path());
    }
    return files;
  }
  /// Runs a start from these files again and again, killed one call later each time; `look` then
  /// says what must be so, unless the files stand as one call earlier. The number of calls that
  /// change a file.
  int KillAtEachCall(const Files& files, const std::function<std::function<bool()>()>& start,
                     const std::function<void()>& look) {
    int changes = 0;
    std::map<std::string, std::string> seen;
    for (int call = 1; !HasFailure(); ++call) {
      SCOPED_TRACE("call " + std::to_string(call));
      Lay(files);
      const SteppedWork killed = KillAtCall(call, Moment::BeforeCall, start);
      EXPECT_NE(killed.outcome, Outcome::Failed);
      if (killed.outcome != Outcome::Killed) break;
      changes += killed.changes ? 1 : 0;
      std::map<std::string, std::string> standing = Standing();
      if (standing == seen) continue;
      seen = std::move(standing);
      look();
    }
    return changes;
  }
  /// Whether processes may be followed here at all.
  bool MayFollow() {
    constexpr int kNever = -1;
    const auto nothing = [] { return std::function<bool()>([] { return true; }); };
    return KillAtCall(kNever, Moment::BeforeCall, nothing).outcome == Outcome::Finished;
  }

  const std::string old = BytesOf(kEarly);
  std::string shipped;
};

TEST_F(UpgradeThatIsKilled, LeavesOldOrNewSettingsAndTheNextStartsGoThroughWithIt) {
  if (!MayFollow()) GTEST_SKIP() << "processes may not be followed here";
  const std::vector<Record> before = Held();
  Lay({.settings = shipped});
  ASSERT_TRUE(Start()());
  const std::vector<Record> after = Held();
  ASSERT_NE(before, after);
  const int changes = KillAtEachCall(
      {.settings = shipped}, [this] { return Start(); },
      [&] {
        const std::vector<Record> held = Held();
        EXPECT_TRUE(held == before || held == after)
            << "settings of two releases stand side by side";
        EXPECT_TRUE(held == after || !fs::exists(Marker()));
        EXPECT_TRUE(BytesOf(Old()) == old);
        for (int start = 0; start < 2 && fs::exists(Old()); ++start) EXPECT_TRUE(Start()());
        EXPECT_TRUE(BytesOf(Aside()) == old);
        EXPECT_FALSE(fs::exists(Old()) || fs::exists(Marker()));
        EXPECT_TRUE(Held() == after);
      });
  // The journal, the settings, the marker, and a flush of each.
  EXPECT_GE(changes, 6);
}

TEST_F(UpgradeThatIsKilled, LosesNoDatabaseWhileItIsSetAside) {
  if (!MayFollow()) GTEST_SKIP() << "processes may not be followed here";
  KillAtEachCall(
      {.settings = shipped, .hasMarker = true}, [this] { return Start(); },
      [&] {
        EXPECT_TRUE(BytesOf(fs::exists(Old()) ? Old() : Aside()) == old);
        EXPECT_TRUE(fs::exists(Marker()) || !fs::exists(Old())) << "somebody would be asked again";
        EXPECT_TRUE(Start()());
        EXPECT_FALSE(fs::exists(Old()));
        EXPECT_TRUE(BytesOf(Aside()) == old);
      });
}

TEST_F(UpgradeThatIsKilled, SettingsInAccessFormatAreAdoptedAsAWholeOrStillThere) {
  if (!MayFollow()) GTEST_SKIP() << "processes may not be followed here";
  const std::string aside = Root() + "/Lyrane_Tavlo_Deck.md1";
  const Files files{.settings = old, .hasOld = false};
  Lay(files);
  const std::vector<Record> adopted = Held();
  const auto open = [this]() -> std::function<bool()> {
    return [this] { return databases.Open(Settings()).database != nullptr; };
  };
  const int changes = KillAtEachCall(files, open, [&] {
    EXPECT_TRUE(BytesOf(Settings()) == old || BytesOf(aside) == old);
    EXPECT_TRUE(Held() == adopted);
    EXPECT_TRUE(BytesOf(aside) == old);
    for (const auto& entry : fs::directory_iterator(Root())) {
      EXPECT_NE(entry.path().filename().string().front(), '.') << entry.path();
    }
  });
  EXPECT_GE(changes, 6);
}

}  // namespace
}  // namespace tavlo::test
