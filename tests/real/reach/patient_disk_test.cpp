#include "platform/reach/patient_disk.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/disk/file_copy.h"
#include "platform/disk/file_handle.h"
#include "platform/reach/patient_walk.h"
#include "reach/stalling_place.h"
#include "store/folder_walk.h"
#include "support/patience.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using platform::Errands;
using store::DiskResult;
using store::Entry;
using store::Readiness;
using store::WalkEnd;
using Outcome = store::MeasuredSound::Outcome;

/// Takes every file for a sound of as many samples as it has bytes, and can be stuck at a name.
class CountingMeters : public platform::HeldFileMeters {
 public:
  /// The file at which a meter gives no answer.
  void StickAt(const std::string& name, const StuckCall& call) {
    shared_->stuckAt = name;
    shared_->call = call;
  }
  int Measured() const { return shared_->measured; }

  std::unique_ptr<platform::HeldFileMeter> Make() override {
    return std::make_unique<Meter>(shared_);
  }

 private:
  struct Shared {
    std::string stuckAt;
    StuckCall call;
    std::atomic<int> measured = 0;
  };
  class Meter : public platform::HeldFileMeter {
   public:
    explicit Meter(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}

    store::MeasuredSound Measure(const store::HeldFile& held, Errands::Sign& sign) override {
      if (!shared_->stuckAt.empty() && held.path.ends_with(shared_->stuckAt)) {
        shared_->call.Work()(sign);
      }
      ++shared_->measured;
      struct stat status;
      if (::fstat(held.handle, &status) != 0) return {};
      return {.outcome = Outcome::Opened,
              .samplesPerSecond = 8000,
              .channels = 1,
              .totalSamples = status.st_size};
    }

   private:
    const std::shared_ptr<Shared> shared_;
  };

  const std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

/// A disk over folders of which those named with a great first letter may stall.
struct PatientDiskTest : testing::Test, StallingPlaces {
  PatientDiskTest() {
    places.Root = folder / "";
    for (const char* name : {"a", "A", "B"}) fs::create_directory(folder / name);
  }
  /// Has the place answer nothing until `call` answers; it is out of reach behind this.
  void Stall(const std::string& place, const StuckCall& call) {
    EXPECT_FALSE(RunInVain(folder / place, call));
  }
  void EndStall(const std::string& place, const StuckCall& call) {
    call.Answer();
    AwaitReach(folder / place);
  }
  std::vector<std::string> Names(store::FolderWalk& walk) {
    std::vector<std::string> names;
    while (walk.Next()) names.push_back(walk.Name());
    std::ranges::sort(names);
    return names;
  }

  const TemporaryFolder folder;
  CountingMeters meters;
  platform::PatientDisk disk{errands, meters, [] {}};
};

TEST_F(PatientDiskTest, DoesAtAPlaceThatMayStallWhatItDoesHere) {
  for (const std::string place : {"a/", "A/"}) {
    const std::string at = folder / place;
    const std::string path = folder.Write(place + "x.wav", "12345");
    EXPECT_EQ(disk.ListPlainFiles(at).names, std::vector<std::string>{"x.wav"});
    EXPECT_EQ(disk.Facts(path)->size, 5u);
    EXPECT_EQ(disk.Look(path), Entry::PlainFile);
    EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
    EXPECT_EQ(disk.SetAttributesNormal(path), DiskResult::Done);
    EXPECT_EQ(disk.Copy(path, at + "copy"), DiskResult::Done);
    EXPECT_EQ(disk.Rename(at + "copy", at + "renamed"), DiskResult::Done);
    EXPECT_EQ(disk.Append(at + "renamed", "6"), DiskResult::Done);
    EXPECT_EQ(disk.Facts(at + "renamed")->size, 6u);
    EXPECT_EQ(disk.MakeLink(path, at + "link"), DiskResult::Done);
    EXPECT_EQ(disk.MakeFolder(at + "inner"), DiskResult::Done);
    EXPECT_EQ(disk.MakeFolder(at + "inner"), DiskResult::AlreadyThere);
    EXPECT_EQ(disk.RemoveFolder(at + "inner"), DiskResult::Done);
    EXPECT_EQ(disk.FlushFolder(at), DiskResult::Done);
    EXPECT_EQ(disk.Delete(path), DiskResult::Done);
    EXPECT_EQ(disk.Delete(path), DiskResult::NotFound);
  }
}

TEST_F(PatientDiskTest, MarksNoFolderThatOthersMayHaveAPartIn) {
  EXPECT_TRUE(Comes([&] { return disk.MarkOf(folder / "a").has_value(); }));
  EXPECT_FALSE(disk.MarkOf(folder / "A"));
}

TEST_F(PatientDiskTest, SaysOfEachCallThatItIsOutOfReach) {
  const std::string path = folder.Write("A/x.wav", "1");
  const StuckCall call;
  Stall("A", call);
  EXPECT_TRUE(disk.OutOfReach(path));
  EXPECT_FALSE(disk.ListPlainFiles(folder / "A").started);
  EXPECT_FALSE(disk.Walk(folder / "A/")->Started());
  EXPECT_FALSE(disk.Facts(path));
  EXPECT_EQ(disk.Look(path), Entry::OutOfReach);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::OutOfReach);
  EXPECT_EQ(disk.SetAttributesNormal(path), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Copy(path, folder / "a/x"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Rename(path, folder / "A/y"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Rename(path, folder / "a/y"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Delete(path), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Append(path, "1"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.MakeLink("x", folder / "A/l"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.MakeFolder(folder / "A/f"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.RemoveFolder(folder / "A/f"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.FlushFolder(folder / "A"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Look(folder / "a"), Entry::Folder) << "what stands elsewhere is in reach";
  EXPECT_EQ(disk.Look(folder / "B"), Entry::Folder);
  EndStall("A", call);
  EXPECT_EQ(disk.Look(path), Entry::PlainFile) << "nothing of it was done";
  EXPECT_FALSE(disk.OutOfReach(path));
}

TEST_F(PatientDiskTest, CountsTheCallsThatItGaveUpAndNoneThatItNeverMade) {
  const std::string path = folder.Write("A/x.wav", "12345");
  EXPECT_EQ(disk.CallsGivenUp(), 0u);
  const StuckCall call;
  Stall("A", call);
  EXPECT_EQ(disk.CallsGivenUp(), 1u);
  EXPECT_EQ(disk.Rename(path, folder / "A/y.wav"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Delete(path), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Copy(path, folder / "B/x.wav"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.CallsGivenUp(), 1u);
  EndStall("A", call);
  EXPECT_EQ(disk.Look(path), Entry::PlainFile);
}

TEST_F(PatientDiskTest, RenameFromPlaceToPlaceIsLeftToACopy) {
  const std::string path = folder.Write("A/x", "1");
  EXPECT_EQ(disk.Rename(path, folder / "B/x"), DiskResult::OtherFileSystem);
  EXPECT_EQ(disk.Rename(path, folder / "a/x"), DiskResult::OtherFileSystem);
  EXPECT_EQ(disk.Look(path), Entry::PlainFile);
}

TEST_F(PatientDiskTest, CopyFromPlaceToPlaceIsWholeAndKeepsStampAndMode) {
  const std::string bytes(3 * platform::CopySource::kBlock + 1, 'x');
  const std::string path = folder.Write("A/x", bytes);
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  for (const std::string to : {"B/copy", "a/copy"}) {
    EXPECT_EQ(disk.Copy(path, folder / to), DiskResult::Done);
    EXPECT_EQ(disk.Facts(folder / to), disk.Facts(path));
    EXPECT_EQ(folder.Read(to), bytes);
    EXPECT_EQ(fs::status(folder / to).permissions(), fs::status(path).permissions());
    EXPECT_EQ(disk.Copy(path, folder / to), DiskResult::AlreadyThere);
  }
  EXPECT_EQ(disk.Copy(folder / "A/nothing", folder / "B/y"), DiskResult::NotFound);
  EXPECT_EQ(disk.Look(folder / "B/y"), Entry::Nothing);
}

TEST_F(PatientDiskTest, CopyThatOneEndHoldsUpLeavesTheOtherEndInReach) {
  const std::string path = folder.Write("A/x", "1");
  const StuckCall call;
  Stall("B", call);
  EXPECT_EQ(disk.Copy(path, folder / "B/x"), DiskResult::OutOfReach);
  EXPECT_FALSE(disk.OutOfReach(path));
  EXPECT_EQ(disk.Delete(path), DiskResult::Done);
  EndStall("B", call);
}

TEST_F(PatientDiskTest, WalkStandsAtEachFileMeasuredAndWithoutAHandle) {
  for (const std::string place : {"a/", "A/"}) {
    for (int i = 0; i < 200; ++i) {
      folder.Write(place + std::to_string(i), std::string(static_cast<std::size_t>(i), 'x'));
    }
    const auto walk = disk.Walk(folder / place);
    ASSERT_TRUE(walk->Started());
    int seen = 0;
    while (walk->Next()) {
      ++seen;
      EXPECT_EQ(walk->TestReadiness(), Readiness::Free);
      const store::HeldFile& held = walk->Open();
      EXPECT_EQ(held.opened, DiskResult::Done);
      EXPECT_EQ(held.path, folder / place + walk->Name());
      EXPECT_LT(held.handle, 0);
      ASSERT_TRUE(held.measured);
      EXPECT_EQ(held.measured->outcome, Outcome::Opened);
      EXPECT_EQ(held.measured->totalSamples, std::stoi(walk->Name()));
      EXPECT_EQ(held.facts, disk.Facts(held.path));
    }
    EXPECT_EQ(seen, 200);
    EXPECT_EQ(walk->End(), WalkEnd::Whole);
  }
}

TEST_F(PatientDiskTest, WalkOverAnEmptyOrMissingFolderSaysSo) {
  const auto empty = disk.Walk(folder / "A/");
  EXPECT_TRUE(empty->Started());
  EXPECT_FALSE(empty->Next());
  EXPECT_EQ(empty->End(), WalkEnd::Whole);
  const auto missing = disk.Walk(folder / "A/nothing/");
  EXPECT_FALSE(missing->Started());
  EXPECT_FALSE(missing->Next());
  EXPECT_EQ(missing->End(), WalkEnd::OutOfReach);
}

TEST_F(PatientDiskTest, WalkLooksAheadAndNoFurther) {
  for (std::size_t i = 0; i < 4 * platform::PatientWalk::kAhead; ++i) {
    folder.Write("A/" + std::to_string(i), "x");
  }
  const auto walk = disk.Walk(folder / "A/");
  ASSERT_TRUE(walk->Next());
  // What the loop has taken over may be as much again.
  const auto ahead = static_cast<int>(platform::PatientWalk::kAhead);
  ASSERT_TRUE(Comes([&] { return meters.Measured() >= ahead; }));
  EXPECT_LE(meters.Measured(), 2 * ahead);
}

TEST_F(PatientDiskTest, LoopLooksAtFilesItselfWhereNothingCanStall) {
  // The thread of the place is stuck at its first file, and the loop looks at those behind.
  constexpr int kFiles = 3 * static_cast<int>(platform::PatientWalk::kTogether);
  for (int i = 0; i < kFiles; ++i) folder.Write("a/" + std::to_string(i), "x");
  const StuckCall call;
  meters.StickAt("/" + disk.ListPlainFiles(folder / "a/").names[0], call);
  const auto walk = disk.Walk(folder / "a/");
  call.AwaitBegin();
  const int others = kFiles - static_cast<int>(platform::PatientWalk::kTogether);
  bool othersCame = false;
  std::thread server([&] {
    othersCame = Comes([&] { return meters.Measured() == others; });
    call.Answer();
  });
  EXPECT_EQ(Names(*walk).size(), static_cast<std::size_t>(kFiles));
  server.join();
  EXPECT_TRUE(othersCame);
  EXPECT_EQ(walk->End(), WalkEnd::Whole);
  EXPECT_EQ(meters.Measured(), kFiles);
}

TEST_F(PatientDiskTest, FileThatIsBeingWrittenIsMeasuredSinceAListMayShowIt) {
  const std::string path = folder.Write("A/x", "1");
  const platform::FileHandle writer(path.c_str(), O_WRONLY);
  const auto walk = disk.Walk(folder / "A/");
  ASSERT_TRUE(walk->Next());
  EXPECT_EQ(walk->TestReadiness(), Readiness::InUse);
  EXPECT_EQ(walk->Open().measured->outcome, Outcome::Opened);
  EXPECT_EQ(meters.Measured(), 1);
}

TEST_F(PatientDiskTest, ReadOnlyFileOfAWalkIsMadeWritable) {
  const std::string path = folder.Write("A/x", "1");
  ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
  const auto walk = disk.Walk(folder / "A/");
  ASSERT_TRUE(walk->Next());
  EXPECT_EQ(walk->TestReadiness(), Readiness::FreeReadOnly);
  EXPECT_EQ(walk->SetAttributesNormal(), DiskResult::Done);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(PatientDiskTest, StallInsideAWalkEndsItWithTheFilesBefore) {
  for (const char* name : {"A/1", "A/2", "A/3", "A/4"}) folder.Write(name, "x");
  const auto all = disk.ListPlainFiles(folder / "A/").names;
  const StuckCall call;
  meters.StickAt("/" + all[2], call);
  {
    const auto walk = disk.Walk(folder / "A/");
    call.AwaitBegin();
    EXPECT_TRUE(walk->Next());
    EXPECT_TRUE(walk->Next());
    loop.NoAnswerComes = true;
    EXPECT_FALSE(walk->Next());
    loop.NoAnswerComes = false;
    EXPECT_EQ(walk->End(), WalkEnd::OutOfReach);
    EXPECT_FALSE(walk->Next());
  }
  EXPECT_TRUE(disk.OutOfReach(folder / "A"));
  EXPECT_FALSE(disk.Walk(folder / "A/")->Started());
  EndStall("A", call);
  meters.StickAt("", call);
  const auto again = disk.Walk(folder / "A/");
  EXPECT_EQ(Names(*again).size(), 4u);
  EXPECT_EQ(again->End(), WalkEnd::Whole);
}

TEST_F(PatientDiskTest, WalkThatIsGivenUpEarlyLooksAtNothingMore) {
  for (std::size_t i = 0; i < 3 * platform::PatientWalk::kAhead; ++i) {
    folder.Write("A/" + std::to_string(i), "x");
  }
  EXPECT_TRUE(disk.Walk(folder / "A/")->Next());
  // The place has done all that it was asked for once it answers this.
  EXPECT_EQ(disk.Look(folder / "A"), Entry::Folder);
  EXPECT_LE(meters.Measured(), static_cast<int>(platform::PatientWalk::kAhead) + 1);
}

}  // namespace
}  // namespace tavlo::test
