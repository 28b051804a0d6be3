#include "store/work_folders.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::Locked;
using store::QueuePath;

struct WorkFoldersTest : testing::Test {
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  store::WorkFolders folders{disk, kRoot};
};

TEST_F(WorkFoldersTest, TreeIsMadeOfThirtyFiveFoldersInItsOrder) {
  disk.WithFolder(kRoot);
  std::vector<std::string> expected{"Files", "Files/eW2Queue", "Files/dS2Queue", "Files/Completed",
                                    "Files/ImportQueue"};
  for (int i = 1; i <= 25; ++i) expected.push_back("Files/ImportQueue/" + std::to_string(i));
  for (const char* name :
       {"Files/InQueue", "PlaceOldDatabaseHere", "Reports", "Files/eU2Queue", "Files/FtpQueue"}) {
    expected.emplace_back(name);
  }
  for (auto& name : expected) name = "MakeFolder " + kRoot + "/" + name;

  folders.MakeTree();
  EXPECT_EQ(expected.size(), 35u);
  EXPECT_EQ(disk.Operations, expected);
  EXPECT_TRUE(disk.Has(kRoot + "/Files/ImportQueue/25"));
}

TEST_F(WorkFoldersTest, RescueFolderIsNoPartOfTheTree) {
  disk.WithFolder(kRoot);
  folders.MakeTree();
  EXPECT_FALSE(disk.Has(folders.RescuedPath()));
}

TEST_F(WorkFoldersTest, SecondStartMakesNothingAndReportsNothing) {
  disk.WithFolder(kRoot);
  folders.MakeTree();
  disk.WithFile(folders.InQueuePath + "a.wav");
  const auto before = disk.NamesIn(kRoot + "/Files");
  folders.MakeTree();
  EXPECT_EQ(disk.NamesIn(kRoot + "/Files"), before);
  EXPECT_TRUE(disk.Has(folders.InQueuePath + "a.wav"));
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(WorkFoldersTest, FolderThatCannotBeMadeIsPassedOver) {
  disk.WithFolder(kRoot);
  disk.FailOperation(31, store::DiskResult::NoSpace);
  folders.MakeTree();
  EXPECT_FALSE(disk.Has(folders.InQueuePath));
  EXPECT_TRUE(disk.Has(folders.FtpQueuePath));
}

TEST_F(WorkFoldersTest, FixedPathsAreSetFromTheStart) {
  EXPECT_EQ(folders.InQueuePath, kRoot + "/Files/InQueue/");
  EXPECT_EQ(folders.FtpQueuePath, kRoot + "/Files/FtpQueue/");
}

TEST_F(WorkFoldersTest, EveryPathHangsUnderTheRoot) {
  EXPECT_EQ(folders.InstallRoot, kRoot);
  EXPECT_EQ(folders.CompletedPath(), kRoot + "/Files/Completed/");
  EXPECT_EQ(folders.RescuedPath(), kRoot + "/Files/Rescued/");
  EXPECT_EQ(folders.PromptsPath(), kRoot + "/Prompts/");
  EXPECT_EQ(folders.FasciaPath(), kRoot + "/Fascia/");
  EXPECT_EQ(folders.QueueReportPath(), kRoot + "/Reports/Tavlo_Deck_Queue_Report.txt");
  EXPECT_EQ(folders.CompletedReportPath(), kRoot + "/Reports/Tavlo_Deck_Completed_Report.txt");
  EXPECT_EQ(folders.PurgeLogPath(), kRoot + "/Reports/Tavlo_Deck_Purge_Log.txt");
  EXPECT_EQ(folders.OldPurgeLogPath(), kRoot + "/Reports/Tavlo_Deck_Purge_Log_Old.txt");
  EXPECT_EQ(folders.SettingsDatabasePath(), kRoot + "/Lyrane_Tavlo_Deck.mdb");
  EXPECT_EQ(folders.OldDatabasePath(), kRoot + "/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.mdb");
  EXPECT_EQ(folders.OldDatabaseAsidePath(), kRoot + "/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.md1");
  EXPECT_EQ(folders.UpgradeMarkerPath(), kRoot + "/PlaceOldDatabaseHere/UpgradeFinished.txt");
  EXPECT_EQ(folders.DssCodecPath("22"), kRoot + "/DssCodec/DssCodec22.so");
  EXPECT_EQ(folders.MuLawHeaderPath(), kRoot + "/MuLawHeader.so");
  EXPECT_EQ(folders.PedalWatchPath(), kRoot + "/PedalWatch.so");
}

TEST_F(WorkFoldersTest, DefaultPathsEndInNoSeparator) {
  EXPECT_EQ(folders.DefaultQueuePath(QueuePath::Ew2), kRoot + "/Files/eW2Queue");
  EXPECT_EQ(folders.DefaultQueuePath(QueuePath::Ds2), kRoot + "/Files/dS2Queue");
  EXPECT_EQ(folders.DefaultQueuePath(QueuePath::Wav), kRoot + "/Files/ImportQueue");
  EXPECT_EQ(folders.DefaultQueuePath(QueuePath::Eu2), kRoot + "/Files/eU2Queue");
}

TEST_F(WorkFoldersTest, ReloadTakesThePathsWithASeparatorAndMakesNoFolder) {
  folders.ReloadQueuePaths({.ew2QueuePath = "/srv/eW2",
                            .ds2QueuePath = "/srv/dS2",
                            .wavQueuePath = "/srv/wav",
                            .eu2QueuePath = "/srv/eU2",
                            .viewDelay = "12"});
  EXPECT_EQ(folders.Ew2QueuePath, "/srv/eW2/");
  EXPECT_EQ(folders.Ds2QueuePath, "/srv/dS2/");
  EXPECT_EQ(folders.WavQueuePath, "/srv/wav/");
  EXPECT_EQ(folders.Eu2QueuePath, "/srv/eU2/");
  EXPECT_EQ(folders.ViewDelay, 12);
  EXPECT_TRUE(disk.Operations.empty());
}

TEST_F(WorkFoldersTest, PathChangedInTheConfigurationTakesEffectAndTheOldFoldersStay) {
  disk.WithFolder(kRoot);
  folders.MakeTree();
  folders.ReloadQueuePaths({.wavQueuePath = folders.DefaultQueuePath(QueuePath::Wav)});
  disk.WithFile(folders.WavQueuePath + "1/a.wav");
  folders.ReloadQueuePaths({.wavQueuePath = "/srv/wav"});
  EXPECT_EQ(folders.WavQueuePath, "/srv/wav/");
  EXPECT_TRUE(disk.Has(kRoot + "/Files/ImportQueue/1/a.wav"));
}

TEST_F(WorkFoldersTest, ViewDelayThatIsNoByteLeavesTheOldOne) {
  folders.ReloadQueuePaths({.viewDelay = "255"});
  EXPECT_EQ(folders.ViewDelay, 255);
  folders.ReloadQueuePaths({.viewDelay = "300"});
  EXPECT_EQ(folders.ViewDelay, 255);
  folders.ReloadQueuePaths({.viewDelay = "-1"});
  EXPECT_EQ(folders.ViewDelay, 255);
  folders.ReloadQueuePaths({.viewDelay = ""});
  EXPECT_EQ(folders.ViewDelay, 0);
}

TEST_F(WorkFoldersTest, WindowsPathOfTheTreeIsMappedToOurRoot) {
  EXPECT_EQ(folders.MapStoredPath("c:\\Lyrane\\TavloDeck\\Files\\eW2Queue"),
            kRoot + "/Files/eW2Queue");
  EXPECT_EQ(folders.MapStoredPath("C:\\Lyrane\\TavloDeck\\Files\\wavImport"),
            kRoot + "/Files/wavImport");
  EXPECT_EQ(folders.MapStoredPath("c:\\lyrane\\tavlodeck\\FILES\\ew2queue"),
            kRoot + "/Files/eW2Queue");
  EXPECT_EQ(folders.MapStoredPath("C:\\Lyrane\\TavloDeck"), kRoot);
  EXPECT_EQ(folders.QueuePathOf("C:\\Lyrane\\TavloDeck\\Files\\dS2Queue"),
            kRoot + "/Files/dS2Queue/");
}

TEST_F(WorkFoldersTest, FolderBelowOneOfTheTreeIsMappedWithIt) {
  EXPECT_EQ(folders.MapStoredPath("C:\\LYRANE\\TAVLODECK\\FILES\\IMPORTQUEUE\\3\\Müller"),
            kRoot + "/Files/ImportQueue/3/Müller");
  EXPECT_EQ(folders.MapStoredPath("c:\\Lyrane\\TavloDeck\\files\\eW2Queues"),
            kRoot + "/Files/eW2Queues");
}

TEST_F(WorkFoldersTest, SeparatorsAtTheEndOfAWindowsPathOfTheTreeAreLeftOut) {
  EXPECT_EQ(folders.MapStoredPath("C:\\Lyrane\\TavloDeck\\files\\eu2queue\\"),
            kRoot + "/Files/eU2Queue");
  EXPECT_EQ(folders.MapStoredPath("C:\\Lyrane\\TavloDeck\\"), kRoot);
}

TEST_F(WorkFoldersTest, PathOutsideTheTreeIsNotMapped) {
  for (const std::string path : {"/srv/share", "d:\\Lyrane\\TavloDeck\\Files", "\\\\server\\share",
                                 "c:\\Lyrane\\TavloDeckOld", "c:\\Lyrane", ""}) {
    EXPECT_EQ(folders.MapStoredPath(path), path);
  }
}

TEST_F(WorkFoldersTest, FileThatAnotherProgramWritesIsLockedAndStaysUntouched) {
  disk.WithFile("/drop/a.dS2");
  disk.SetReadOnly("/drop/a.dS2");
  disk.OpenWriter("/drop/a.dS2");
  EXPECT_EQ(folders.FileIsLocked("/drop/a.dS2"), Locked::Yes);
  EXPECT_TRUE(disk.IsReadOnly("/drop/a.dS2"));
  disk.CloseWriter("/drop/a.dS2");
  EXPECT_EQ(folders.FileIsLocked("/drop/a.dS2"), Locked::No);
}

TEST_F(WorkFoldersTest, ReadOnlyDocumentIsWritableOnceItWasFoundFree) {
  disk.WithFile("/drop/a.dS2");
  disk.SetReadOnly("/drop/a.dS2");
  EXPECT_EQ(folders.FileIsLocked("/drop/a.dS2"), Locked::No);
  EXPECT_FALSE(disk.IsReadOnly("/drop/a.dS2"));
}

TEST_F(WorkFoldersTest, TestOfAnOrdinaryFileIsOneLookAndNoChange) {
  disk.WithFile("/drop/a.dS2");
  EXPECT_EQ(folders.FileIsLocked("/drop/a.dS2"), Locked::No);
  EXPECT_EQ(disk.Operations, std::vector<std::string>{"Test /drop/a.dS2"});
}

TEST_F(WorkFoldersTest, FileThatCannotBeOpenedIsLocked) {
  disk.WithFile("/drop/a.dS2").WithFolder("/drop/folder").WithFifo("/drop/fifo");
  disk.SetUnreadable("/drop/a.dS2");
  EXPECT_EQ(folders.FileIsLocked("/drop/a.dS2"), Locked::Yes);
  EXPECT_EQ(folders.FileIsLocked("/drop/folder"), Locked::Yes);
  EXPECT_EQ(folders.FileIsLocked("/drop/fifo"), Locked::Yes);
  EXPECT_EQ(folders.FileIsLocked("/drop/vanished"), Locked::Yes);
}

TEST_F(WorkFoldersTest, FileThatAProcessWithoutHandlesCanNotAskAboutIsNotKnown) {
  disk.WithFile("/drop/a.dS2");
  disk.OutOfHandles = true;
  EXPECT_EQ(folders.FileIsLocked("/drop/a.dS2"), Locked::NotKnown);
  disk.OutOfHandles = false;
  EXPECT_EQ(folders.FileIsLocked("/drop/a.dS2"), Locked::No);
}

TEST_F(WorkFoldersTest, FileAtWhichAWalkStandsIsAskedAboutInTheSameWay) {
  disk.WithFile("/drop/written").WithFile("/drop/readonly").WithFile("/drop/unreadable");
  disk.WithFile("/drop/vanished").WithFile("/drop/nohandle").WithFile("/drop/free");
  disk.OpenWriter("/drop/written");
  disk.SetReadOnly("/drop/written");
  disk.SetReadOnly("/drop/readonly");
  disk.SetUnreadable("/drop/unreadable");
  disk.OutOfHandlesAt = "/drop/nohandle";
  const auto walk = disk.Walk("/drop/");
  disk.Remove("/drop/vanished");
  std::map<std::string, Locked> locked;
  while (walk->Next()) locked[walk->Name()] = store::WorkFolders::FileIsLocked(*walk);
  EXPECT_EQ(locked, (std::map<std::string, Locked>{{"written", Locked::Yes},
                                                   {"readonly", Locked::No},
                                                   {"unreadable", Locked::Yes},
                                                   {"vanished", Locked::Yes},
                                                   {"nohandle", Locked::NotKnown},
                                                   {"free", Locked::No}}));
  EXPECT_TRUE(disk.IsReadOnly("/drop/written"));
  EXPECT_FALSE(disk.IsReadOnly("/drop/readonly"));
}

TEST_F(WorkFoldersTest, FreeFileWhoseAttributesCannotBeSetIsFree) {
  disk.WithFile("/drop/a.dS2");
  disk.SetReadOnly("/drop/a.dS2");
  disk.FailOperation(2, store::DiskResult::NoAccess);
  EXPECT_EQ(folders.FileIsLocked("/drop/a.dS2"), Locked::No);
}

TEST_F(WorkFoldersTest, NetworkFaultNamesTheQueuePath) {
  const auto box = folders.QueueNetworkFault();
  EXPECT_EQ(box.title, "Tavlo Deck - Network Fault");
  EXPECT_EQ(box.text,
            "The .wav file's path /home/typist/Lyrane/TavloDeck/Files/InQueue/ can not be found."
            "\n\n\rThe network may be down.  Please try again later, or enter the configuration "
            "menu to check the settings for this path");
  EXPECT_EQ(box.icon, base::Icon::Warning);
  EXPECT_EQ(box.buttons, base::Buttons::Ok);
}

}  // namespace
}  // namespace tavlo::test
