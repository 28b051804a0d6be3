#include "store/missing_libraries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_libraries.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::DiskResult;

const std::string kWatch = kRoot + "/PedalWatch.so";
const std::string kWatchAside = kWatch + ".foreign";
/// The first bytes of a library for Windows.
constexpr const char* kForeign = "MZ of another system";

struct RootWithoutLibraries {
  RootWithoutLibraries() {
    disk.WithFolder(kRoot)
        .WithFile(kShare + "/PedalWatch.so", "watch")
        .WithFile(kShare + "/DssCodec/DssCodec8.so", "codec");
  }

  void Add() { store::AddMissingLibraries(disk, inspector, kRoot, kShare); }
  void ExpectLinks() {
    EXPECT_EQ(disk.LinkTarget(kWatch), kShare + "/PedalWatch.so");
    EXPECT_EQ(disk.LinkTarget(kRoot + "/DssCodec/DssCodec8.so"), kShare + "/DssCodec/DssCodec8.so");
  }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  SimulatedLibraries inspector{disk};
};

struct MissingLibrariesTest : testing::Test, RootWithoutLibraries {};

TEST_F(MissingLibrariesTest, AreLinkedIntoAnOlderRoot) {
  Add();
  ExpectLinks();
  EXPECT_FALSE(disk.Has(kRoot + "/MuLawHeader.so"));
}

TEST_F(MissingLibrariesTest, RootThatLacksNothingIsNotTouched) {
  Add();
  const auto changes = disk.Changes().size();
  Add();
  EXPECT_EQ(disk.Changes().size(), changes);
}

TEST_F(MissingLibrariesTest, LibraryThatAUserPutThereStays) {
  disk.WithFile(kWatch, "my own");
  Add();
  EXPECT_EQ(disk.Contents(kWatch), "my own");
}

TEST_F(MissingLibrariesTest, LinkThatLeadsToAnotherLibraryStays) {
  disk.WithFile("/opt/PedalWatch.so", "another").WithLink(kWatch, "/opt/PedalWatch.so");
  Add();
  EXPECT_EQ(disk.LinkTarget(kWatch), "/opt/PedalWatch.so");
}

TEST_F(MissingLibrariesTest, LinkThatLeadsNowhereIsMadeAnew) {
  disk.WithLink(kWatch, "/gone/PedalWatch.so");
  Add();
  ExpectLinks();
}

TEST_F(MissingLibrariesTest, LibraryOfAnotherMachineGivesWayToALinkAndStaysBeside) {
  disk.WithFile(kWatch, kForeign);
  Add();
  ExpectLinks();
  EXPECT_EQ(disk.Contents(kWatchAside), kForeign);
}

TEST_F(MissingLibrariesTest, SecondLibraryOfAnotherMachineStaysBesideTheFirst) {
  disk.WithFile(kWatch, kForeign).WithFile(kWatchAside, "MZ of a third one");
  Add();
  ExpectLinks();
  EXPECT_EQ(disk.Contents(kWatchAside), "MZ of a third one");
  EXPECT_EQ(disk.Contents(kWatchAside + "-2"), kForeign);
}

TEST_F(MissingLibrariesTest, LibraryOfAnotherMachineStaysWhereNoneIsInstalled) {
  const std::string header = kRoot + "/MuLawHeader.so";
  disk.WithFile(header, kForeign);
  Add();
  EXPECT_EQ(disk.Contents(header), kForeign);
}

TEST_F(MissingLibrariesTest, LinkToALibraryOfAnotherMachineStays) {
  disk.WithFile("/opt/PedalWatch.so", kForeign).WithLink(kWatch, "/opt/PedalWatch.so");
  Add();
  EXPECT_EQ(disk.LinkTarget(kWatch), "/opt/PedalWatch.so");
}

TEST_F(MissingLibrariesTest, LibraryOfAnotherMachineThatCanNotBeSetAsideStays) {
  disk.WithFile(kWatch, kForeign);
  disk.LockFolder(kRoot);
  Add();
  EXPECT_EQ(disk.Contents(kWatch), kForeign);
}

TEST_F(MissingLibrariesTest, LibraryOfAnotherMachineIsNeverLostAndReplacedByALaterStart) {
  std::size_t operations = 1;
  for (std::size_t nth = 1; nth <= operations; ++nth) {
    SCOPED_TRACE(nth);
    RootWithoutLibraries root;
    root.disk.WithFile(kWatch, kForeign);
    root.disk.CrashAtOperation(static_cast<int>(nth));
    root.Add();
    operations = std::max(operations, root.disk.Operations.size());
    root.disk.Heal();
    EXPECT_TRUE(root.disk.Has(kWatch) || root.disk.Has(kWatchAside));
    root.Add();
    root.ExpectLinks();
    EXPECT_EQ(root.disk.Contents(kWatchAside), kForeign);
  }
}

TEST_F(MissingLibrariesTest, FailureOfAnyOperationIsMendedByTheNextStart) {
  std::size_t operations = 1;
  for (std::size_t nth = 1; nth <= operations; ++nth) {
    SCOPED_TRACE(nth);
    RootWithoutLibraries root;
    root.disk.WithLink(kWatch, "/gone/PedalWatch.so");
    root.disk.FailOperation(static_cast<int>(nth), DiskResult::NoSpace);
    root.Add();
    operations = std::max(operations, root.disk.Operations.size());
    root.disk.Heal();
    root.Add();
    root.ExpectLinks();
  }
}

TEST_F(MissingLibrariesTest, StallAtAnyOperationIsMendedByALaterStart) {
  for (const auto late : {SimulatedPlaces::Late::Happens, SimulatedPlaces::Late::Fails}) {
    bool stalled = true;
    for (int nth = 1; stalled; ++nth) {
      SCOPED_TRACE(nth);
      RootWithoutLibraries root;
      root.disk.WithLink(kWatch, "/gone/PedalWatch.so");
      root.disk.StallAtOperation(nth, kRoot);
      root.Add();
      stalled = root.disk.Places.Stalls(kRoot);
      root.disk.Places.Resume(kRoot, late);
      root.disk.Heal();
      root.Add();
      root.ExpectLinks();
    }
  }
}

}  // namespace
}  // namespace tavlo::test
