#include "platform/reach/mount_table.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/reach/mounted_places.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::MountTable;
using platform::Place;

constexpr int kRoot = 20;
constexpr int kHome = 21;
constexpr int kShare = 22;
constexpr int kInside = 23;
constexpr int kStick = 24;
constexpr int kAutomatic = 25;
constexpr int kServed = 26;
constexpr int kMarked = 27;

constexpr const char* kMounts =
    "20 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
    "21 20 8:2 / /home rw - btrfs /dev/sda2 rw\n"
    "22 20 0:40 / /mnt/share rw,relatime master:3 propagate_from:2 - nfs4 server:/export rw\n"
    "23 22 0:41 / /mnt/share/inside rw - tmpfs tmpfs rw\n"
    "24 20 8:17 / /media/Anne\\040B/stick rw - vfat /dev/sdb1 rw\n"
    "25 20 0:42 / /net rw - autofs systemd-1 rw\n"
    "26 25 0:43 / /net/server rw - nfs server:/ rw\n"
    "27 20 8:3 / /a\\011b\\134c rw - xfs /dev/sda3 rw\n"
    "no mount at all\n";

/// Links that a test names, and a list of what was asked.
class NamedLinks : public platform::LinkReader {
 public:
  std::map<std::string, std::string> Targets;
  mutable std::vector<std::string> Asked;

  std::optional<std::string> TargetOf(const std::string& path) const override {
    Asked.push_back(path);
    const auto found = Targets.find(path);
    if (found == Targets.end()) return {};
    return found->second;
  }
};

struct MountTableTest : testing::Test {
  Place Of(const std::string& path) const { return table.PlaceOf(path, links); }
  void ExpectStanding(const std::string& path, int mount, bool mayStall) const {
    const Place place = Of(path);
    EXPECT_EQ(place.mount, mount) << path;
    EXPECT_EQ(place.mayStall, mayStall) << path;
  }

  const MountTable table{kMounts};
  NamedLinks links;
};

TEST_F(MountTableTest, PathStandsOnTheInnermostMount) {
  ExpectStanding("/", kRoot, false);
  ExpectStanding("/etc/fstab", kRoot, false);
  ExpectStanding("/home", kHome, false);
  ExpectStanding("/home/anne/a.wav", kHome, false);
  ExpectStanding("/homes", kRoot, false);
  ExpectStanding("/mnt", kRoot, false);
  ExpectStanding("//home//./anne/", kHome, false);
}

TEST_F(MountTableTest, ServersAndDevicesThatGoMayStall) {
  ExpectStanding("/mnt/share", kShare, true);
  ExpectStanding("/mnt/share/a/b", kShare, true);
  ExpectStanding("/media/Anne B/stick/a.wav", kStick, true);
  ExpectStanding("/net/other", kAutomatic, true);
  ExpectStanding("/net/server/a", kServed, true);
}

TEST_F(MountTableTest, WhatIsReachedOverAServerMayStallThoughItIsLocal) {
  ExpectStanding("/mnt/share/inside/a", kInside, true);
}

TEST_F(MountTableTest, PlaceWithWhiteSpaceAndBackslashesIsFound) {
  ExpectStanding("/a\tb\\c/d", kMarked, false);
}

TEST_F(MountTableTest, LinksAreFollowedToTheMountTheyLeadTo) {
  links.Targets = {{"/home/anne/Lyrane", "/mnt/share/Lyrane"},
                   {"/home/anne/up", "../../media/Anne B"},
                   {"/home/anne/here", "there"},
                   {"/home/anne/there", "up/stick"}};
  ExpectStanding("/home/anne/Lyrane/TavloDeck", kShare, true);
  ExpectStanding("/home/anne/up/stick/a.wav", kStick, true);
  ExpectStanding("/home/anne/here/a.wav", kStick, true);
}

TEST_F(MountTableTest, WayUpLeavesTheMountAgain) {
  ExpectStanding("/home/anne/../../etc", kRoot, false);
  ExpectStanding("/home/../mnt/share", kShare, true);
  ExpectStanding("/../..", kRoot, false);
  ExpectStanding("/mnt/share/../../etc", kShare, true);
}

TEST_F(MountTableTest, NothingIsAskedOfAMountThatMayStall) {
  Of("/mnt/share/a/b");
  Of("/media/Anne B/stick/a.wav");
  EXPECT_EQ(links.Asked, (std::vector<std::string>{"/mnt", "/media", "/media/Anne B"}));
}

TEST_F(MountTableTest, NameInAFolderThatWasFoundStandsWhereItsWholePathDoes) {
  links.Targets = {{"/home/anne/Lyrane", "/mnt/share/Lyrane"}};
  const std::vector<std::pair<std::string, std::string>> paths{
      {"/", "home"},      {"/home/anne", "a.wav"},        {"/mnt", "share"},
      {"/net", "server"}, {"/home/anne/Lyrane", "a.wav"}, {"/mnt/share", "inside"}};
  for (const auto& [folder, name] : paths) {
    const auto place = table.PlaceIn(table.SpotOf(folder, links), name, links);
    ASSERT_TRUE(place) << folder;
    ExpectStanding(folder + "/" + name, place->mount, place->mayStall);
  }
  const MountTable::Spot home = table.SpotOf("/home/anne", links);
  EXPECT_FALSE(table.PlaceIn(home, "Lyrane", links)) << "is a link";
  EXPECT_EQ(table.EntryIn(home, "Lyrane").mount, kHome) << "the link itself";
}

TEST_F(MountTableTest, LinksInACircleEnd) {
  links.Targets = {{"/a", "/b"}, {"/b", "/a"}};
  ExpectStanding("/a/c", kRoot, false);
}

TEST_F(MountTableTest, OfSeveralMountsAtOnePlaceTheLastCounts) {
  const MountTable stacked(
      "1 0 8:1 / / rw - ext4 a rw\n"
      "2 1 0:40 / /mnt rw - autofs a rw\n"
      "3 2 0:41 / /mnt rw - cifs a rw\n"
      "4 1 0:42 / /over rw - nfs a rw\n"
      "5 4 0:43 / /over/in rw - nfs a rw\n"
      "6 4 8:1 / /over rw - ext4 a rw\n");
  EXPECT_EQ(stacked.PlaceOf("/mnt/a", links).mount, 3);
  EXPECT_EQ(stacked.PlaceOf("/over/in", links).mount, 6) << "what stands below is hidden";
  EXPECT_FALSE(stacked.PlaceOf("/over/in", links).mayStall);
}

TEST_F(MountTableTest, NothingStallsWhereNoMountIsKnown) {
  for (const char* text : {"", "\n", "x y z", "1 1"}) {
    EXPECT_FALSE(MountTable(text).PlaceOf("/mnt/share", links).mayStall) << text;
  }
}

TEST(MountedPlaces, FolderOfThisMachineCanNotStallAndIsFoundFromWithin) {
  const TemporaryFolder folder;
  platform::MountedPlaces places;
  const Place full = places.PlaceOf(folder.Path());
  EXPECT_NE(full.mount, 0);
  EXPECT_FALSE(full.mayStall);
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  EXPECT_EQ(places.PlaceOf("a.wav").mount, full.mount);
  EXPECT_EQ(places.PlaceOf("").mount, full.mount);
  std::filesystem::current_path(before);
}

/// Folders on two file systems of this machine, a path that leads into either, and a clock.
struct LedElsewhere : testing::Test {
  void Lead(const std::string& link, const TemporaryFolder& target) const {
    std::filesystem::remove(link);
    std::filesystem::create_symlink(target.Path(), link);
  }

  const TemporaryFolder onDisk;
  const TemporaryFolder inMemory{"/dev/shm"};
  std::chrono::steady_clock::time_point now;
  platform::MountedPlaces places{[this] { return now; }};
  const int disk = places.PlaceOf(onDisk.Path()).mount;
  const int memory = places.PlaceOf(inMemory.Path()).mount;
};

TEST_F(LedElsewhere, FolderIsLookedUpAgainAfterAMoment) {
  using std::chrono::milliseconds;
  const std::string link = onDisk / "folder";
  Lead(link, onDisk);
  EXPECT_EQ(places.PlaceOf(link + "/a.wav").mount, disk);
  Lead(link, inMemory);
  now += platform::MountedPlaces::kRemembered - milliseconds(1);
  EXPECT_EQ(places.PlaceOf(link + "/b.wav").mount, disk) << "remembered";
  now += milliseconds(1);
  EXPECT_EQ(places.PlaceOf(link + "/a.wav").mount, memory);
  EXPECT_EQ(places.PlaceOf(link + "/").mount, memory);
}

TEST_F(LedElsewhere, LinkAtTheEndIsReadEachTime) {
  const std::string link = onDisk / "folder";
  Lead(link, onDisk);
  EXPECT_EQ(places.PlaceOf(link).mount, disk);
  Lead(link, inMemory);
  EXPECT_EQ(places.PlaceOf(link).mount, memory);
  EXPECT_EQ(places.PlaceOf(link + "/.").mount, memory);
  EXPECT_EQ(places.PlaceOfEntry(link).mount, disk) << "the link itself";
}

TEST_F(MountTableTest, DisksAndSharesOfPersonsAreNamed) {
  EXPECT_EQ(table.DisksAndShares(),
            (std::vector<std::string>{"/a\tb\\c", "/home", "/media/Anne B/stick", "/mnt/share",
                                      "/net/server"}));
}

TEST_F(MountTableTest, WhatTheSystemKeepsForItselfIsNot) {
  const MountTable own(
      "20 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
      "21 20 8:2 / /boot/efi rw - vfat /dev/sda2 rw\n"
      "22 20 7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro\n"
      "23 20 0:5 / /proc rw - proc proc rw\n"
      "24 20 0:6 / /run/user/7/doc rw - fuse.portal portal rw\n"
      "25 20 0:7 / /run/user/7/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
      "26 20 8:3 / /run/media/anne/stick rw - exfat /dev/sdb1 rw\n"
      "27 20 8:3 / /run/media/anne/stick rw - exfat /dev/sdb1 rw\n"
      "28 20 0:8 / /bootstick rw - zfs pool rw\n");
  EXPECT_EQ(own.DisksAndShares(),
            (std::vector<std::string>{"/bootstick", "/run/media/anne/stick", "/run/user/7/gvfs"}));
}

}  // namespace
}  // namespace tavlo::test
