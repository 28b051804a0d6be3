#include "support/home.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "platform/sqlite/sqlite_settings.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

std::string ContentsOf(const fs::directory_entry& entry) {
  if (entry.is_symlink()) return "-> " + fs::read_symlink(entry.path()).string();
  if (entry.is_directory()) return "folder";
  if (!entry.is_regular_file()) return "other";
  std::ifstream in(entry.path(), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

void Home::MakeRoot(const store::Assignments& settings) const {
  for (const char* folder : {"/Prompts", "/Fascia", "/Files/InQueue"}) {
    fs::create_directories(Root() + folder);
  }
  platform::SqliteSettingsDatabases databases({.root = Root(), .revision = "0.1.0"});
  ASSERT_EQ(databases.Create(SettingsPath()), "");
  if (!settings.empty()) Store(store::Table::GeneralSettings, 0, settings);
}

void Home::Store(store::Table table, int row, const store::Assignments& fields) const {
  platform::SqliteSettingsDatabases databases({.root = Root(), .revision = "0.1.0"});
  const store::OpenedDatabase opened = databases.Open(SettingsPath());
  ASSERT_TRUE(opened.database) << opened.failure;
  ASSERT_TRUE(opened.database->Write(table, row, fields)) << opened.database->LastFailure();
}

std::string Home::AddToQueue(const std::string& name, const std::string& bytes) const {
  const std::string path = QueuePath() + "/" + name;
  std::ofstream(path, std::ios::binary) << bytes;
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
  return path;
}

std::map<std::string, std::string> Home::Everything() const {
  std::map<std::string, std::string> all;
  for (const auto& entry : fs::recursive_directory_iterator(Path())) {
    all[entry.path().string().substr(Path().size())] = ContentsOf(entry);
  }
  return all;
}

store::Assignments QuietSettings(const store::Assignments& others) {
  store::Record settings{{"AutoPreview", "0"},
                         {"AudioPromptsFlag", "N"},
                         {"AutoQueueDocumentFlag", "N"},
                         {"AutoBackspace", "0"}};
  for (const auto& [field, value] : others) settings[field] = value;
  return {settings.begin(), settings.end()};
}

std::string DocumentName(const std::string& author, int minute, int savedPosition) {
  return "0007 0 " + author + " 1234 3 9 2004 14 " + std::to_string(minute) + " 12 2 0 17 cardio " +
         std::to_string(savedPosition) + " 0_.wav";
}

}  // namespace tavlo::test
