#include "platform/curl/received_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <limits>
#include <string>

#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using platform::IsLandingName;
using platform::LandingFolder;
using platform::ReceivedFile;

TEST(ReceivedFile, WhatIsWrittenStandsInTheFolderOnceItIsKept) {
  const TemporaryFolder place;
  const LandingFolder folder(place.Path());
  ASSERT_TRUE(folder.IsOpen());
  ReceivedFile file;
  ASSERT_TRUE(file.Create(folder, "a.wav"));
  const std::string bytes(20'000'000, 'x');
  ASSERT_TRUE(file.Write(bytes));
  int signs = 0;
  EXPECT_TRUE(file.Keep(folder, [&] { ++signs; }));
  EXPECT_EQ(place.Read("a.wav"), bytes);
  EXPECT_GE(signs, 2) << "a slow disk would look stuck";
}

TEST(ReceivedFile, NothingIsWrittenOverOrThroughALink) {
  const TemporaryFolder place;
  place.Write("taken.wav", "mine");
  fs::create_symlink(place / "elsewhere.wav", place / "link.wav");
  const LandingFolder folder(place.Path());
  for (const char* const name : {"taken.wav", "link.wav"}) {
    ReceivedFile file;
    EXPECT_TRUE(folder.Holds(name));
    EXPECT_FALSE(file.Create(folder, name));
  }
  EXPECT_EQ(place.Read("taken.wav"), "mine");
  EXPECT_FALSE(fs::exists(place / "elsewhere.wav"));
}

TEST(ReceivedFile, FolderThatIsMovedAwayIsStillTheOne) {
  const TemporaryFolder place;
  fs::create_directory(place / "queue");
  const LandingFolder folder(place / "queue");
  fs::rename(place / "queue", place / "moved");
  fs::create_directory(place / "queue");
  ReceivedFile file;
  ASSERT_TRUE(file.Create(folder, "a.wav"));
  EXPECT_TRUE(fs::exists(place / "moved/a.wav"));
  EXPECT_TRUE(fs::is_empty(place / "queue"));
}

TEST(ReceivedFile, WhatLeadsOutOfTheFolderIsNoLandingName) {
  for (const char* const name : {"", ".", "..", "/a", "../a", "a/b", "a/"}) {
    EXPECT_FALSE(IsLandingName(name)) << name;
  }
  EXPECT_TRUE(IsLandingName("a.wav"));
  EXPECT_TRUE(IsLandingName("...wav"));
}

TEST(ReceivedFile, WhatIsNoFolderCanNotBeOpened) {
  const TemporaryFolder place;
  place.Write("file", "");
  EXPECT_FALSE(LandingFolder(place / "file").IsOpen());
  EXPECT_FALSE(LandingFolder(place / "none").IsOpen());
}

TEST(ReceivedFile, RoomIsThatOfTheDisk) {
  const TemporaryFolder place;
  const LandingFolder folder(place.Path());
  EXPECT_TRUE(folder.HasRoomFor(1));
  EXPECT_FALSE(folder.HasRoomFor(std::numeric_limits<std::int64_t>::max()));
}

TEST(ReceivedFile, DiskThatIsFullKeepsWhatItHas) {
  const TemporaryFolder place;
  const LandingFolder folder(place.Path());
  rlimit before;
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit small = before;
  small.rlim_cur = 1000;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  bool written = true;
  {
    ReceivedFile file;
    ASSERT_TRUE(file.Create(folder, "a.wav"));
    written = file.Write(std::string(4000, 'x'));
  }
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(written);
  EXPECT_EQ(place.Read("a.wav"), std::string(1000, 'x'));
}

}  // namespace
}  // namespace tavlo::test
