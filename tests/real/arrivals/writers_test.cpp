#include "arrivals/writers.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "arrivals/arrivals.h"
#include "arrivals/length.h"
#include "arrivals/retrieving_deck.h"
#include "support/screen.h"
#ifdef TAVLO_MOUNTS
#include "support/stalling_mount.h"
#endif

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr unsigned kSeed = 20'040'309;

/// The drop folders of a home, the folder in which the program stands among them, and those in
/// which their files arrive.
struct DropFolders : testing::Test {
  void SetUp() override {
    for (const auto& [folder, path] : paths) fs::create_directories(path);
    fs::create_directories(Files("ImportQueue"));
    home.MakeRoot(Settings());
  }

  std::string Files(const std::string& name) const { return home.Root() + "/Files/" + name; }
  store::Assignments Settings() const {
    store::Assignments settings = QuietSettings();
    settings.emplace_back("Ew2QueuePath", paths.at(DropFolder::Ew2));
    settings.emplace_back("Ds2QueuePath", paths.at(DropFolder::Ds2));
    settings.emplace_back("Eu2QueuePath", paths.at(DropFolder::Eu2));
    return settings;
  }
  /// Nobody may be kept from writing and renaming there.
  void AllowAll() const {
    for (const auto& [folder, path] : paths) fs::permissions(path, fs::perms::all);
  }
  std::vector<std::string> AllDropFolders() const {
    std::vector<std::string> all;
    for (const auto& [folder, path] : paths) all.push_back(path);
    return all;
  }

  /// Lets the writers write while the program retrieves, until each file has arrived once.
  void Run(const Writers::PathOf& pathOf, RetrievingDeck::Setup setup = {}) {
    const std::vector<Delivery> deliveries = MakeDeliveries(Length().files, kSeed);
    setup.current = paths.at(DropFolder::Current);
    RetrievingDeck deck(home, setup);
    ASSERT_TRUE(deck.AwaitFirstList());
    Writers writers(deliveries, pathOf, PaceOfWriters(), kSeed);
    AwaitArrivals(writers, deck);
    const int refreshes = deck.Refreshes();
    EXPECT_EQ(deck.End(), 0);
    RecordProperty("refreshes", refreshes);
    EXPECT_GT(refreshes, 1) << "nothing was retrieved while they wrote";
    const std::vector<std::string> targets{home.QueuePath(), Files("ImportQueue"),
                                           Files("Rescued")};
    ExpectEachOnce(deliveries, targets, [&](std::size_t at) { return writers.StoodStill(at); });
    EXPECT_EQ(NamesIn({Files("Rescued")}), 0);
  }

  /// Where a program's own folders are those of the writers.
  Writers::PathOf PathsAsTheyAre() const {
    return [this](DropFolder folder, int) { return paths.at(folder) + "/"; };
  }

  Home home;
  TemporaryFolder current;
  std::map<DropFolder, std::string> paths{
      {DropFolder::Current, current.Path()}, {DropFolder::Ftp, Files("FtpQueue")},
      {DropFolder::Ew2, Files("eW2Queue")},  {DropFolder::Ds2, Files("dS2Queue")},
      {DropFolder::Eu2, Files("eU2Queue")},
  };

 private:
  static base::Duration PaceOfWriters() {
    return Length().time * Writers::kProcesses / Length().files;
  }
  /// Ends when the drop folders are empty behind the last writer. Gives up when nothing moves.
  void AwaitArrivals(Writers& writers, const RetrievingDeck& deck) const {
    int left = -1;
    while (Until([&] {
      const int now = NamesIn(AllDropFolders());
      return now != left || (now == 0 && writers.Over());
    })) {
      left = NamesIn(AllDropFolders());
      if (left == 0 && writers.Over()) return;
    }
    ADD_FAILURE() << left << " files do not arrive, after " << deck.Refreshes() << " refreshes";
  }
};

using WrittenFiles = DropFolders;

TEST_F(WrittenFiles, ArriveOnceAndWholeWhileTheirWritersStillWrite) { Run(PathsAsTheyAre()); }

TEST_F(WrittenFiles, OfAnotherUserArriveOnceAndWhole) {
  if (::getuid() != 0) GTEST_SKIP() << "no other user can be had";
  constexpr uid_t kTypist = 4711;
  AllowAll();
  for (const auto& entry : fs::recursive_directory_iterator(home.Path())) {
    if (entry.is_directory()) fs::permissions(entry.path(), fs::perms::all);
  }
  ASSERT_EQ(::chown(home.Path().c_str(), kTypist, kTypist), 0);
  ASSERT_EQ(::chown(home.SettingsPath().c_str(), kTypist, kTypist), 0);
  Run(PathsAsTheyAre(), {.user = kTypist});
}

#ifdef TAVLO_MOUNTS
struct WrittenFilesOfAShare : DropFolders {
  WrittenFilesOfAShare() {
    for (const DropFolder folder : {DropFolder::Ew2, DropFolder::Ds2, DropFolder::Eu2}) {
      const std::string name = fs::path(paths[folder]).filename();
      fs::create_directories(server.Path() + "/" + name);
      paths[folder] = mount.Path() + "/" + name;
    }
  }
  void SetUp() override {
    if (!mount.Fault().empty()) GTEST_SKIP() << mount.Fault();
    DropFolders::SetUp();
  }

  TemporaryFolder server;
  TemporaryFolder point;
  StallingMount mount{server.Path(), point.Path()};
};

TEST_F(WrittenFilesOfAShare, ArriveOnceAndWholeThoughNobodyMayTellThatTheyAreOpen) {
  const auto pathOf = [this](DropFolder folder, int process) {
    std::string path = paths.at(folder) + "/";
    // Half of the writers work on other machines, of which only the server knows.
    const bool elsewhere = process % 2 == 0 && path.starts_with(mount.Path());
    return elsewhere ? mount.Behind() + path.substr(mount.Path().size()) : path;
  };
  Run(pathOf, {.onAShare = true});
}
#endif

}  // namespace
}  // namespace tavlo::test
