#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "intake/import_directories.h"
#include "mixer_page/sound_control.h"
#include "platform/sqlite/sqlite_settings.h"
#include "settings/walk.h"
#include "store/settings_fields.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using store::Table;

using Place = std::pair<Table, std::string>;

/// The sources of all tests, one behind the other.
std::string TestSources() {
  std::string all;
  for (const auto& entry : fs::recursive_directory_iterator(TAVLO_TESTS)) {
    if (entry.path().extension() == ".cpp") all += ReadFile(entry.path());
  }
  return all;
}

bool IsATest(const std::string& sources, const std::string& name) {
  const std::size_t dot = name.find('.');
  const std::string words = "(" + name.substr(0, dot) + ", " + name.substr(dot + 1) + ")";
  for (const char* const kind : {"TEST", "TEST_F", "TEST_P"}) {
    if (sources.find(kind + words) != sources.npos) return true;
  }
  return false;
}

TEST(WalkOverTheSettings, ComesPastEveryFieldOfTheDatabaseOnce) {
  std::multiset<Place> listed;
  for (const WalkedSetting& walked : WalkedSettings()) listed.insert({walked.table, walked.field});
  for (const FixedSetting& fixed : FixedSettings()) {
    listed.insert({fixed.table, std::string(fixed.field)});
    EXPECT_NE(fixed.reason, "") << fixed.field;
  }
  std::multiset<Place> fields;
  for (const store::Field& field : store::AllFields()) {
    fields.insert({field.table, std::string(field.name)});
  }
  std::vector<Place> others;
  std::ranges::set_symmetric_difference(fields, listed, std::back_inserter(others));
  for (const auto& [table, field] : others) {
    ADD_FAILURE() << field << " of " << store::ShapeOf(table).name
                  << " is listed twice, not at all, or does not exist";
  }
}

TEST(WalkOverTheSettings, SaysOfEachWhereItIsSeenToAct) {
  const std::string sources = TestSources();
  for (const WalkedSetting& walked : WalkedSettings()) {
    const bool isSeen = walked.acts || !walked.seenBy.empty();
    EXPECT_NE(isSeen, !walked.withoutEffect.empty()) << walked.field;
    if (walked.seenBy.empty()) continue;
    EXPECT_TRUE(IsATest(sources, std::string(walked.seenBy))) << walked.seenBy;
  }
}

/// The real program with two sound devices, two pictures for its face, and work that waits.
class SettingsWalk : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.Start());
    PlugInOutput("Second");
    home_.MakeRoot(QuietSettings({{"ShowCustomDisplay", "N"},
                                  // A port that no machine has.
                                  {"SerialFootPedalComPort", "999"},
                                  {"SwapRewFwdPedalFlag", "N"}}));
    for (const char* const name : {"a.png", "b.png"}) {
      QImage picture(64, 64, QImage::Format_RGB32);
      picture.fill(Qt::black);
      ASSERT_TRUE(picture.save(QString::fromStdString(home_.Root() + "/Fascia/" + name)));
    }
    home_.AddToQueue(DocumentName("Brown"), WaveBytes(Chirp(60 * 8000, 8000)));
    for (const char* const folder : {"ew2", "ds2", "eu2", "import"}) {
      fs::create_directories(home_.Path() + "/" + folder);
    }
    for (int directory = 1; directory < intake::kImportDirectories; ++directory) {
      fs::create_directory(home_.Path() + "/import/" + std::to_string(directory));
    }
  }

  void RunProgram(const std::function<void(Walk&)>& script) {
    DrivenProgram program(home_);
    const int status = program.Run([&] {
      ASSERT_TRUE(program.Begin());
      ASSERT_EQ(program.Box(), "");
      Walk walk(program, home_);
      script(walk);
      walk.GoHome();
      program.Exit();
    });
    EXPECT_EQ(status, 0);
  }
  /// Goes through the settings of a turn, and keeps what the windows hold in the end.
  void Change(Walk& walk, Turn turn) {
    for (const WalkedSetting& walked : WalkedSettings()) {
      SCOPED_TRACE(walked.field);
      if (walked.turn == turn && walked.change) walked.change(walk);
    }
    walk.GoHome();
    for (const WalkedSetting& walked : WalkedSettings()) {
      const Place place{walked.table, walked.field};
      shown_[place] = walk.Shown(walked.table, walked.field);
      rows_[walked.table] = walk.RowOf(walked.table);
    }
  }
  /// The window shows again what was set, and it is in force.
  void ExpectInForce(Walk& walk, Turn turn) {
    walk.program.Do([&] {
      const int row = rows_[Table::FtpSettings];
      EXPECT_TRUE(walk.program.Rooms().binding.FtpProfile().MoveTo(row));
    });
    for (const WalkedSetting& walked : WalkedSettings()) {
      if (walked.turn != turn) continue;
      SCOPED_TRACE(walked.field);
      const Place place{walked.table, walked.field};
      EXPECT_EQ(walk.Shown(walked.table, walked.field), shown_[place]);
      if (walked.acts) walked.acts(walk);
    }
  }

  std::map<Place, std::string> Stored() {
    platform::SqliteSettingsDatabases databases({.root = home_.Root(), .revision = "0.1.0"});
    const store::OpenedDatabase opened = databases.Open(home_.SettingsPath());
    EXPECT_TRUE(opened.database) << opened.failure;
    std::map<Place, std::string> stored;
    for (const store::Field& field : store::AllFields()) {
      const std::string name(field.name);
      stored[{field.table, name}] = opened.database->Read(field.table, rows_[field.table]).at(name);
    }
    return stored;
  }
  void ExpectStored(Turn turn, const std::map<Place, std::string>& before) {
    const std::map<Place, std::string> stored = Stored();
    for (const WalkedSetting& walked : WalkedSettings()) {
      if (walked.turn != turn) continue;
      const Place place{walked.table, walked.field};
      EXPECT_EQ(stored.at(place), shown_[place]) << walked.field;
      EXPECT_NE(stored.at(place), before.at(place)) << walked.field << " was not changed";
    }
  }

  /// Work for the next start: a note in an import directory, and an old completed document.
  void Deliver() {
    const std::string note = home_.Path() + "/import/3/note.wav";
    std::ofstream(note, std::ios::binary) << WaveBytes(Chirp(8000, 8000));
    const std::string old = home_.CompletedPath() + "/" + DocumentName("Old", 7);
    std::ofstream(old, std::ios::binary) << "of 2004";
    for (const std::string& file : {note, old}) {
      fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(1));
    }
  }

  SoundServer server_;
  Home home_;
  std::map<Place, std::string> shown_;
  /// The rows that were changed; the second server is the one that is chosen.
  std::map<Table, int> rows_{{Table::FtpSettings, 1}};
};

TEST_F(SettingsWalk, FindsEverySettingAgainAndInForceAfterARestart) {
  const auto shipped = Stored();
  RunProgram([&](Walk& walk) { Change(walk, Turn::First); });
  ExpectStored(Turn::First, shipped);
  const auto first = Stored();
  Deliver();
  RunProgram([&](Walk& walk) {
    ExpectInForce(walk, Turn::First);
    Change(walk, Turn::Second);
  });
  ExpectStored(Turn::Second, first);
  RunProgram([&](Walk& walk) { ExpectInForce(walk, Turn::Second); });
  for (const FixedSetting& fixed : FixedSettings()) {
    if (fixed.field == "TitleBarHeight" || fixed.field == "Revision") continue;
    const Place place{fixed.table, std::string(fixed.field)};
    EXPECT_EQ(Stored().at(place), shipped.at(place)) << fixed.field;
  }
}

}  // namespace
}  // namespace tavlo::test
