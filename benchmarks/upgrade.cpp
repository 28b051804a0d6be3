// Takes an old release's settings over into those of a new root, as the first start behind an
// update does: the loop, the disk, the database, the reader of old files and the rule are the
// program's; only nobody has to answer the question.
//
//     bench_upgrade HOME OLD
//
// It says how long the rule took, for how much of that it waited for the disk, for how many
// milliseconds of its processor the loop was held at most, and how many fields were taken over.
#include <QApplication>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "flush_time.h"
#include "loop_hold.h"
#include "platform/access/access_database.h"
#include "platform/qt/qt_loop.h"
#include "platform/reach/foot_gate.h"
#include "platform/reach/mounted_places.h"
#include "platform/reach/patient_disk.h"
#include "platform/reach/place_errands.h"
#include "platform/sqlite/patient_settings.h"
#include "quiet_rooms.h"
#include "store/database_upgrade.h"
#include "store/settings_fields.h"

namespace {

namespace fs = std::filesystem;
using namespace tavlo;
using store::Table;

/// The program's loop, with somebody who agrees to everything at once.
class AgreeingLoop : public platform::qt::QtLoop {
 protected:
  base::Reply ShowBox(const base::MessageBox& box) override {
    return box.buttons == base::Buttons::YesNo ? base::Reply::Yes : base::Reply::Ok;
  }
};

struct UpgradeRooms {
  explicit UpgradeRooms(std::string installRoot) : root(std::move(installRoot)) {}

  const std::string root;
  AgreeingLoop loop;
  bench::NothingToHush hush;
  platform::FootGate feet{hush};
  platform::MountedPlaces places;
  platform::PlaceErrands errands{loop, loop, places, feet};
  platform::SoundMeters meters{std::make_shared<platform::MeasuredFiles>()};
  platform::PatientDisk disk{errands, meters, [this] { loop.Breathe(); }};
  store::WorkFolders folders{disk, root};
  platform::PatientSettingsDatabases databases{
      errands, store::ShippedDatabase{.root = root, .revision = "bench"},
      [](const std::string& path) {
        return platform::OpenAccessDatabase(path, TAVLO_ACCESS_READER);
      }};
};

int Fail(const std::string& why) {
  std::fprintf(stderr, "bench_upgrade: %s\n", why.c_str());
  return 1;
}

/// Fields whose value is not that of a new database.
int Taken(store::SettingsDatabase& settings, const store::ShippedDatabase& shipped) {
  int taken = 0;
  for (const store::TableShape& shape : store::kTables) {
    for (int row = 0; row < shape.rows; ++row) {
      const store::Record record = settings.Read(shape.table, row);
      for (const store::Field& field : store::FieldsOf(shape.table)) {
        taken += record.at(std::string(field.name)) != store::ShippedValue(field, row, shipped);
      }
    }
  }
  return taken;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: bench_upgrade HOME OLD\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const std::string root = std::string(argv[1]) + "/Lyrane/TavloDeck";
  fs::remove_all(root);
  fs::create_directories(root + "/PlaceOldDatabaseHere");
  UpgradeRooms rooms(root);
  fs::copy_file(argv[2], rooms.folders.OldDatabasePath());
  const std::string path = rooms.folders.SettingsDatabasePath();
  if (std::string failure = rooms.databases.Create(path); !failure.empty()) return Fail(failure);
  const store::OpenedDatabase opened = rooms.databases.Open(path);
  if (!opened.database) return Fail(opened.failure);
  store::SettingsStore settings(*opened.database);
  store::DatabaseUpgrade upgrade(rooms.loop, rooms.disk, rooms.folders, rooms.databases, settings);

  bench::LoopHold hold;
  const double flushedBefore = bench::FlushSeconds();
  const auto begin = std::chrono::steady_clock::now();
  const std::string failure = upgrade.UpgradeDatabase();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  if (!failure.empty()) return Fail(failure);
  std::printf("seconds=%.6f flush=%.6f held=%.3f taken=%d\n", seconds.count(),
              bench::FlushSeconds() - flushedBefore, hold.Milliseconds(),
              Taken(*opened.database, {.root = root, .revision = "bench"}));
  return 0;
}
