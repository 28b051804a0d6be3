#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "platform/convert/plugin_conversion_libraries.h"
#include "platform/disk/posix_disk.h"
#include "reach/stalling_place.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

/// A root with the stand-in as each of the libraries. Files whose names begin with a great letter
/// stand where a call may stall.
struct ConversionLibrary : testing::Test, StallingPlaces {
  TemporaryFolder folder;
  platform::PosixDisk disk;
  store::WorkFolders folders{disk, folder / "root"};
  platform::PluginConversionLibraries libraries{errands, folders};

  ConversionLibrary() {
    places.Root = folder.Path() + "/";
    std::filesystem::create_directories(folders.DssCodecFolder());
    Install(folders.DssCodecPath("11"));
    Install(folders.MuLawHeaderPath());
  }
  static void Install(const std::string& path) {
    std::filesystem::create_symlink(TAVLO_CONVERSION_STAND_IN, path);
  }
};

TEST_F(ConversionLibrary, CallMakesTheWaveAndItsResultComesBack) {
  const std::string source = folder.Write("b.dS2", "B");
  EXPECT_EQ(libraries.WriteFile("11", source, folder / "b.wav"), 0);
  EXPECT_EQ(folder.Read("b.wav"), "wave of B");
  EXPECT_EQ(libraries.AddHdr(source, folder / "c.wav"), 5);
  EXPECT_EQ(folder.Read("c.wav"), "header of B");
}

TEST_F(ConversionLibrary, WhatFollowsIsPreparedBeforeTheCallThatIsWaitedFor) {
  const std::string source = folder.Write("b.dS2", "B");
  // The letter of both is the same, and so is the disk, whose calls run one after another.
  libraries.Prepare("11", folder.Write("b2.dS2", "C"), folder / "b2.wav");
  EXPECT_EQ(libraries.WriteFile("11", source, folder / "b.wav"), 0);
  EXPECT_EQ(folder.Read("b2.dS2.prepared"), "preparation of C");
}

TEST_F(ConversionLibrary, NothingIsPreparedWhereACallMayStall) {
  libraries.Prepare("11", folder.Write("Stalls.dS2", "S"), folder / "s.wav");
  libraries.Prepare("11", folder.Write("c.dS2", "C"), folder / "Stalls.wav");
  EXPECT_EQ(libraries.WriteFile("11", folder.Write("b.dS2", "B"), folder / "b.wav"), 0);
  EXPECT_EQ(libraries.WriteFile("11", folder / "Stalls.dS2", folder / "s.wav"), 0);
  EXPECT_FALSE(std::filesystem::exists(folder / "Stalls.dS2.prepared"));
  EXPECT_FALSE(std::filesystem::exists(folder / "c.dS2.prepared"));
}

TEST_F(ConversionLibrary, LibraryThatIsMissingPreparesNothing) {
  const std::string source = folder.Write("b.dS2", "B");
  libraries.Prepare("44", source, folder / "b.wav");
  EXPECT_EQ(libraries.WriteFile("11", source, folder / "b.wav"), 0);
  EXPECT_FALSE(std::filesystem::exists(folder / "b.dS2.prepared"));
}

TEST_F(ConversionLibrary, FailureComesBackWithAllOfItsNumber) {
  const std::string source = folder.Write("b.dS2", "");
  EXPECT_EQ(libraries.WriteFile("11", source, folder / "b.wav"), 70'000);
  EXPECT_EQ(libraries.AddHdr(source, folder / "b.wav"), 9);
}

TEST_F(ConversionLibrary, LibraryThatIsMissingHasACodeOfItsOwn) {
  const std::string source = folder.Write("b.dS2", "B");
  EXPECT_EQ(libraries.WriteFile("44", source, folder / "b.wav"), intake::kLibraryMissing);
  std::filesystem::create_directory(folders.DssCodecPath("44"));
  EXPECT_EQ(libraries.WriteFile("44", source, folder / "b.wav"), intake::kLibraryMissing);
}

TEST_F(ConversionLibrary, FileThatIsNoLibraryHasACodeOfItsOwn) {
  const std::string source = folder.Write("b.dS2", "B");
  folder.Write("root/MuLawHeader.text", "no library");
  std::filesystem::rename(folder / "root/MuLawHeader.text", folders.MuLawHeaderPath());
  EXPECT_EQ(libraries.AddHdr(source, folder / "b.wav"), intake::kLibraryBroken);
  EXPECT_FALSE(std::filesystem::exists(folder / "b.wav"));
}

TEST_F(ConversionLibrary, CallThatGivesNoSignIsLeftBehindAndItsPlaceIsNotAskedAgain) {
  const std::string stuck = folder / "Stuck.dS2";
  const std::string other = folder.Write("So.dS2", "S");
  ASSERT_EQ(::mkfifo(stuck.c_str(), 0600), 0);
  int writer = -1;
  // Once somebody waits at the pipe it can be opened for writing; then nothing comes through it.
  loop.BeforeTimePasses = [&] {
    EXPECT_TRUE(writer >= 0 || Comes([&] {
                  writer = ::open(stuck.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
                  return writer >= 0;
                }));
  };
  loop.NoAnswerComes = true;
  EXPECT_EQ(libraries.WriteFile("11", stuck, folder / "w.wav"), std::nullopt);
  loop.NoAnswerComes = false;
  EXPECT_EQ(libraries.WriteFile("11", other, folder / "v.wav"), std::nullopt);
  ::close(writer);
  EXPECT_TRUE(Comes([&] { return errands.LeftBehind() == 0; }));
  EXPECT_EQ(libraries.WriteFile("11", folder.Write("T.dS2", "T"), folder / "t.wav"), 0);
}

}  // namespace
}  // namespace tavlo::test
