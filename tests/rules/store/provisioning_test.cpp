#include "store/provisioning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::DiskResult;

const std::string kHalfMade = "/home/typist/Lyrane/.TavloDeck.new";

/// Makes a database that is one file on the simulated disk.
class DatabaseMaker : public store::SettingsDatabases {
 public:
  explicit DatabaseMaker(SimulatedDisk& disk) : disk_(disk) {}

  store::OpenedDatabase Open(const std::string&) override { return {}; }
  store::OpenedDatabase OpenOld(const std::string&) override { return {}; }
  std::string Create(const std::string& path) override {
    if (Fails || disk_.Append(path, "settings") != DiskResult::Done) return "No database.";
    return "";
  }

  bool Fails = false;

 private:
  SimulatedDisk& disk_;
};

struct Installation {
  Installation() {
    disk.WithFolder("/home/typist")
        .WithFile(kShare + "/Prompts/Welcome.wav", "welcome")
        .WithFile(kShare + "/Prompts/AllDone.wav", "all done")
        .WithFile(kShare + "/Fascia/Slate.png", "slate")
        .WithFile(kShare + "/MuLawHeader.so", "plug-in")
        .WithFile(kShare + "/DssCodec/DssCodec8.so", "plug-in");
  }

  std::string Provision() { return store::ProvisionRoot(disk, databases, kRoot, kShare); }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  DatabaseMaker databases{disk};
};

struct ProvisioningTest : testing::Test, Installation {};

TEST_F(ProvisioningTest, FreshRootHoldsSettingsPromptsPicturesAndPlugIns) {
  EXPECT_EQ(Provision(), "");
  EXPECT_EQ(disk.Contents(kRoot + "/Lyrane_Tavlo_Deck.mdb"), "settings");
  EXPECT_EQ(disk.Contents(kRoot + "/Prompts/Welcome.wav"), "welcome");
  EXPECT_EQ(disk.Contents(kRoot + "/Prompts/AllDone.wav"), "all done");
  EXPECT_EQ(disk.Contents(kRoot + "/Fascia/Slate.png"), "slate");
  EXPECT_EQ(disk.LinkTarget(kRoot + "/MuLawHeader.so"), kShare + "/MuLawHeader.so");
  EXPECT_EQ(disk.LinkTarget(kRoot + "/DssCodec/DssCodec8.so"), kShare + "/DssCodec/DssCodec8.so");
}

TEST_F(ProvisioningTest, PlugInThatIsNotInstalledIsNotLinked) {
  EXPECT_EQ(Provision(), "");
  EXPECT_FALSE(disk.Has(kRoot + "/PedalWatch.so"));
  EXPECT_EQ(disk.NamesIn(kRoot + "/DssCodec"), std::vector<std::string>{"DssCodec8.so"});
}

TEST_F(ProvisioningTest, RootIsBuiltBesideAndRenamedLast) {
  EXPECT_EQ(Provision(), "");
  const auto changes = disk.Changes();
  EXPECT_EQ(changes[changes.size() - 2], "Rename " + kHalfMade + " -> " + kRoot);
  EXPECT_EQ(changes.back(), "FlushFolder /home/typist/Lyrane");
  EXPECT_EQ(disk.NamesIn("/home/typist/Lyrane"), std::vector<std::string>{"TavloDeck"});
}

TEST_F(ProvisioningTest, RootThatStandsIsLeftAsItIs) {
  disk.WithFile(kRoot + "/Files/InQueue/a.wav");
  EXPECT_EQ(Provision(), "");
  EXPECT_TRUE(disk.Changes().empty());
  EXPECT_FALSE(disk.Has(kRoot + "/Lyrane_Tavlo_Deck.mdb"));
}

TEST_F(ProvisioningTest, RootThatIsALinkToAFolderStands) {
  disk.WithFolder("/big/deck").WithLink(kRoot, "/big/deck");
  EXPECT_EQ(Provision(), "");
  EXPECT_TRUE(disk.Changes().empty());
}

TEST_F(ProvisioningTest, LeftoverOfACrashIsCleared) {
  disk.WithFile(kHalfMade + "/Prompts/Welcome.wav", "half");
  EXPECT_EQ(Provision(), "");
  EXPECT_EQ(disk.Contents(kRoot + "/Prompts/Welcome.wav"), "welcome");
  EXPECT_FALSE(disk.Has(kHalfMade));
}

TEST_F(ProvisioningTest, LeftoverBesideARootThatStandsIsCleared) {
  disk.WithFolder(kRoot).WithFile(kHalfMade + "/Prompts/Welcome.wav", "half");
  EXPECT_EQ(Provision(), "");
  EXPECT_FALSE(disk.Has(kHalfMade));
}

TEST_F(ProvisioningTest, RootThatCannotBeMadeIsNamed) {
  disk.FailOperation(3, DiskResult::NoAccess, SimulatedDisk::Failing::ForGood);
  const auto failure = Provision();
  EXPECT_EQ(failure, "Tavlo Deck needs its work folder " + kRoot +
                         ".\n\n/home/typist/Lyrane can not be made: access is denied.");
}

TEST_F(ProvisioningTest, FileInThePlaceOfTheRootIsNamedAndKept) {
  disk.WithFile(kRoot, "a file");
  EXPECT_NE(Provision().find(kRoot), std::string::npos);
  EXPECT_EQ(disk.Contents(kRoot), "a file");
}

TEST_F(ProvisioningTest, FileInThePlaceOfTheRootsFolderIsNamedAndKept) {
  disk.WithFile("/home/typist/Lyrane", "a note");
  EXPECT_EQ(Provision(), "Tavlo Deck needs its work folder " + kRoot +
                             ".\n\n/home/typist/Lyrane can not be made: something of that name "
                             "stands there already.");
  EXPECT_EQ(disk.Contents("/home/typist/Lyrane"), "a note");
}

TEST_F(ProvisioningTest, FullDiskIsNamedAndLeavesNothing) {
  disk.SetFreeSpace("/", 9);
  EXPECT_NE(Provision().find("the disk is full"), std::string::npos);
  EXPECT_TRUE(disk.NamesIn("/home/typist/Lyrane").empty());
}

TEST_F(ProvisioningTest, MissingInstalledFilesAreNamed) {
  disk.BreakListing(kShare + "/Prompts");
  EXPECT_NE(Provision().find(kShare + "/Prompts/ can not be read"), std::string::npos);
  EXPECT_FALSE(disk.Has(kRoot));
}

TEST_F(ProvisioningTest, DatabaseThatCannotBeMadeLeavesNoRoot) {
  databases.Fails = true;
  EXPECT_NE(Provision().find("No database."), std::string::npos);
  EXPECT_TRUE(disk.NamesIn("/home/typist/Lyrane").empty());
}

bool RootIsWhole(const SimulatedDisk& disk) {
  return disk.Has(kRoot + "/Lyrane_Tavlo_Deck.mdb") && disk.Has(kRoot + "/Prompts/AllDone.wav") &&
         disk.Has(kRoot + "/Fascia/Slate.png") && disk.Has(kRoot + "/DssCodec/DssCodec8.so");
}

TEST(ProvisioningFaults, CrashAtAnyOperationLeavesAllOrNothingAndTheNextStartMendsIt) {
  bool finished = false;
  for (int nth = 1; !finished; ++nth) {
    SCOPED_TRACE(nth);
    Installation installation;
    installation.disk.CrashAtOperation(nth);
    std::ignore = installation.Provision();
    finished = !installation.disk.Crashed();
    EXPECT_EQ(installation.disk.Has(kRoot), RootIsWhole(installation.disk));
    installation.disk.Heal();
    EXPECT_EQ(installation.Provision(), "");
    EXPECT_TRUE(RootIsWhole(installation.disk));
    EXPECT_FALSE(installation.disk.Has(kHalfMade));
  }
}

TEST_F(ProvisioningTest, RootThatGivesNoAnswerIsNamedAndNothingIsMade) {
  disk.WithFolder(kRoot);
  disk.Places.Stall("/home");
  EXPECT_EQ(Provision(),
            "Tavlo Deck needs its work folder " + kRoot + ".\n\nThe folder gives no answer.");
  EXPECT_TRUE(disk.Changes().empty());
  EXPECT_EQ(loop.Now().sinceStart, SimulatedPlaces::kPatience);
}

TEST_F(ProvisioningTest, NothingIsBuiltWhereALeftoverMayStillBeRemoved) {
  disk.WithFile(kHalfMade + "/Prompts/Welcome.wav", "half");
  // Behind the first look.
  disk.StallAtOperation(2, "/home");
  EXPECT_NE(Provision(), "");
  EXPECT_EQ(disk.Changes(), std::vector<std::string>{"RemoveFolder " + kHalfMade});
}

TEST(ProvisioningFaults, StallAtAnyOperationLeavesAllOrNothingAndTheNextStartMendsIt) {
  for (const std::string& place : {std::string("/home"), kShare}) {
    for (const auto late : {SimulatedPlaces::Late::Happens, SimulatedPlaces::Late::Fails}) {
      bool stalled = true;
      for (int nth = 1; stalled; ++nth) {
        SCOPED_TRACE(place + " " + std::to_string(nth));
        Installation installation;
        installation.disk.StallAtOperation(nth, place);
        const bool said = installation.Provision().empty();
        stalled = installation.disk.Places.Stalls(place);
        EXPECT_LE(installation.loop.Now().sinceStart, SimulatedPlaces::kPatience);
        EXPECT_TRUE(!said || RootIsWhole(installation.disk));
        installation.disk.Places.Resume(place, late);
        EXPECT_EQ(installation.disk.Has(kRoot), RootIsWhole(installation.disk));
        installation.disk.Heal();
        EXPECT_EQ(installation.Provision(), "");
        EXPECT_TRUE(RootIsWhole(installation.disk));
        EXPECT_FALSE(installation.disk.Has(kHalfMade));
      }
    }
  }
}

TEST(ProvisioningFaults, FailureOfAnyOperationLeavesAllOrNothing) {
  std::size_t operations = 1;
  for (std::size_t nth = 1; nth <= operations; ++nth) {
    SCOPED_TRACE(nth);
    Installation installation;
    installation.disk.FailOperation(static_cast<int>(nth), DiskResult::NoSpace);
    const bool said = installation.Provision().empty();
    operations = std::max(operations, installation.disk.Operations.size());
    EXPECT_EQ(installation.disk.Has(kRoot), said);
    EXPECT_EQ(installation.disk.Has(kRoot + "/Lyrane_Tavlo_Deck.mdb"), said);
  }
}

}  // namespace
}  // namespace tavlo::test
