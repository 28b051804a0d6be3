#include <gtest/gtest.h>

#include <filesystem>

#include "support/ahead_bench.h"
#include "support/gated_file.h"
#include "support/patience.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using playback::OpenResult;
using playback::SampleArray;
using playback::SampleCount;
using Reader = platform::AheadReader;

/// Where the folders of two file systems stand on every machine.
const std::string kHere = std::filesystem::temp_directory_path();
const std::string kElsewhere = "/proc";

std::ptrdiff_t Entries(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder),
                       std::filesystem::directory_iterator());
}

/// Documents whose file system gives no answer while a test has its gate shut.
struct StalledFileTest : testing::Test {
  ~StalledFileTest() override { gate->Open(); }

  void Stall() { gate->Shut(); }
  /// The document is open, its reader stands at the shut gate, and its first block is late.
  void StallAtTheFirstBlock(const std::string& path = kHere) {
    Stall();
    ASSERT_TRUE(Opens(bench->file, path));
    bench->file.SeekSample(0);
    ASSERT_TRUE(bench->file.ReadArray(4000).late);
    ASSERT_TRUE(gate->AwaitCalls(1));
  }
  /// Takes a block and lets the reader come to rest behind it.
  bool ReadAllAhead() {
    return bench->Take(4000).Samples() == 4000 &&
           Comes([this] { return gate->Calls >= kCallsAhead; }) && gate->AwaitCalls(0);
  }
  /// Half a second that was taken, and what is read ahead.
  static constexpr int kCallsAhead =
      Reader::kStepsInASecond / 2 + Reader::kAheadSeconds * Reader::kStepsInASecond;
  bool AllClosed() { return gate->FilesThere == 0; }

  const std::shared_ptr<Gate> gate = std::make_shared<Gate>();
  std::optional<AheadBench> bench{std::in_place, [gate = gate](const std::function<void()>&) {
                                    return std::make_unique<GatedFile>(gate);
                                  }};
};

TEST_F(StalledFileTest, BlockIsLateAndComesWhenTheFileAnswers) {
  StallAtTheFirstBlock();
  EXPECT_TRUE(bench->file.ReadArray(4000).late);
  EXPECT_FALSE(bench->file.ReadFailed());
  EXPECT_EQ(bench->Told, 0);
  gate->Open();
  const SampleArray block = bench->Take(4000);
  ASSERT_EQ(block.Samples(), 4000);
  EXPECT_EQ(block.values[3999], 3999.0F);
  EXPECT_EQ(block.sourceBegin, 0);
}

TEST_F(StalledFileTest, StallInMidPlayLosesAndDoublesNothing) {
  ASSERT_TRUE(Opens(bench->file, kHere));
  SampleCount position = 0;
  for (int stall = 0; stall < 20; ++stall) {
    Stall();
    SampleArray block = bench->file.ReadArray(4000);
    for (; !block.late; block = bench->file.ReadArray(4000)) {
      ASSERT_EQ(block.sourceBegin, static_cast<double>(position));
      ASSERT_EQ(block.values.front(), static_cast<float>(position));
      position += block.Samples();
    }
    gate->Open();
    block = bench->Take(4000);
    ASSERT_EQ(block.sourceBegin, static_cast<double>(position));
    ASSERT_EQ(block.Samples(), 4000);
    position += 4000;
  }
}

TEST_F(StalledFileTest, LoopThatWasNotToldMayAskAgain) {
  StallAtTheFirstBlock();
  gate->Open();
  while (bench->file.ReadArray(4000).late) Sleep(1ms);
  EXPECT_EQ(bench->Told, 0);
  bench->loop.Wait(20ms);
  EXPECT_EQ(bench->Told, 0) << "what was taken is not told";
}

TEST_F(StalledFileTest, SeeksDoNotWaitAndTheLastOneCounts) {
  StallAtTheFirstBlock();
  for (SampleCount target = 1000; target <= 100'000; target += 1000) {
    EXPECT_EQ(bench->file.SeekSample(target), target);
    EXPECT_TRUE(bench->file.ReadArray(4000).late);
  }
  EXPECT_EQ(bench->file.Readers(), 1U);
  gate->Open();
  const SampleArray block = bench->Take(4000);
  EXPECT_EQ(block.sourceBegin, 100'000);
  EXPECT_EQ(block.values.front(), 100'000.0F);
}

TEST_F(StalledFileTest, CloseDoesNotWaitAndTheReaderClosesTheFile) {
  StallAtTheFirstBlock();
  bench->file.CloseFile();
  EXPECT_EQ(gate->FilesThere, 1);
  EXPECT_FALSE(bench->file.ReadArray(4000).late);
  gate->Open();
  EXPECT_TRUE(Comes([this] { return AllClosed(); }));
  EXPECT_EQ(gate->ClosedByTheLoop, 0);
}

TEST_F(StalledFileTest, FileWhoseClosingStallsHoldsNobodyUp) {
  ASSERT_TRUE(Opens(bench->file, kHere));
  ASSERT_TRUE(ReadAllAhead());
  Stall();
  bench->file.CloseFile();
  ASSERT_TRUE(gate->AwaitCalls(1));
  EXPECT_EQ(gate->FilesThere, 1);
  gate->Open();
  EXPECT_TRUE(Comes([this] { return AllClosed(); }));
  EXPECT_EQ(gate->ClosedByTheLoop, 0);
}

TEST_F(StalledFileTest, AnotherDocumentOfThatFileSystemWaitsBehindTheStuckReader) {
  StallAtTheFirstBlock();
  for (int document = 0; document < 30; ++document) {
    ASSERT_TRUE(Opens(bench->file, kHere));
    bench->file.SeekSample(8000);
    EXPECT_TRUE(bench->file.ReadArray(4000).late);
  }
  EXPECT_EQ(bench->file.Readers(), 1U);
  EXPECT_TRUE(gate->AwaitCalls(1));
  gate->Open();
  EXPECT_EQ(bench->Take(4000).sourceBegin, 8000);
  EXPECT_TRUE(Comes([this] { return gate->FilesThere == 1; }));
  EXPECT_EQ(gate->ClosedByTheLoop, 0);
}

TEST_F(StalledFileTest, DocumentOfAnotherFileSystemIsReadMeanwhile) {
  const auto open = std::make_shared<Gate>();
  bool stuck = true;
  AheadBench both([&, gate = gate](const std::function<void()>&) {
    return std::make_unique<GatedFile>(stuck ? gate : open);
  });
  Stall();
  ASSERT_TRUE(Opens(both.file, kHere));
  EXPECT_TRUE(both.file.ReadArray(4000).late);
  stuck = false;
  ASSERT_TRUE(Opens(both.file, kElsewhere));
  EXPECT_EQ(both.Take(4000).Samples(), 4000);
  EXPECT_EQ(both.file.Readers(), 2U);
  gate->Open();
  ASSERT_TRUE(Comes([this] { return AllClosed(); }));
  ASSERT_TRUE(Comes([&] {
    EXPECT_TRUE(Opens(both.file, kElsewhere));
    return both.file.Readers() == 1;
  })) << "the reader that came back has gone";
}

TEST_F(StalledFileTest, FileSystemIsOutOfReachOnceItsReaderHasBeenStuckForLong) {
  StallAtTheFirstBlock();
  ASSERT_TRUE(Comes([this] { return bench->file.OpenFile(kHere) == OpenResult::OutOfReach; }));
  EXPECT_EQ(bench->file.OpenFile(kHere), OpenResult::OutOfReach);
  EXPECT_EQ(bench->file.TotalSamples(), 0);
  gate->Open();
  ASSERT_TRUE(Comes([this] { return AllClosed(); }));
  EXPECT_TRUE(Opens(bench->file, kHere));
  EXPECT_EQ(bench->Take(4000).Samples(), 4000);
}

TEST_F(StalledFileTest, ReadThatFailsLateIsAFailure) {
  StallAtTheFirstBlock();
  gate->ReadableTo = 1000;
  gate->Open();
  const SampleArray block = bench->Take(4000);
  EXPECT_EQ(block.Samples(), 1000);
  EXPECT_TRUE(bench->file.ReadFailed());
  EXPECT_TRUE(bench->Take(4000).values.empty());
  EXPECT_TRUE(bench->file.ReadFailed());
}

TEST_F(StalledFileTest, FaultInASeekOrAReadIsAFailureUntilTheNextSeek) {
  ASSERT_TRUE(Opens(bench->file, kHere));
  for (const bool inTheSeek : {true, false}) {
    SCOPED_TRACE(inTheSeek);
    gate->CallsThrow = inTheSeek;
    bench->file.SeekSample(8000);
    if (!inTheSeek) {
      ASSERT_EQ(bench->Take(4000).Samples(), 4000);
      gate->CallsThrow = true;
    }
    SampleArray block;
    do {
      block = bench->Take(4000);
    } while (block.Samples() == 4000);
    EXPECT_FALSE(block.late);
    EXPECT_TRUE(bench->file.ReadFailed());
  }
  gate->CallsThrow = false;
  bench->file.SeekSample(8000);
  EXPECT_EQ(bench->Take(4000).sourceBegin, 8000);
}

TEST_F(StalledFileTest, WhatIsReadAheadHasABound) {
  ASSERT_TRUE(Opens(bench->file, kHere));
  ASSERT_TRUE(ReadAllAhead());
  bench->loop.Wait(50ms);
  EXPECT_EQ(gate->Calls, kCallsAhead);
}

TEST_F(StalledFileTest, NothingIsReadBeforeItIsWanted) {
  ASSERT_TRUE(Opens(bench->file, kHere));
  bench->file.CloseFile();
  ASSERT_TRUE(Comes([this] { return AllClosed(); }));
  EXPECT_EQ(gate->Calls, 1) << "the closing";
}

TEST_F(StalledFileTest, ThousandStallsLeaveNoThreadNoHandleAndNoFile) {
  StallAtTheFirstBlock();
  const std::ptrdiff_t threads = Entries("/proc/self/task");
  const std::ptrdiff_t handles = Entries("/proc/self/fd");
  for (int stall = 0; stall < 1000; ++stall) {
    gate->Open();
    ASSERT_EQ(bench->Take(4000).Samples(), 4000);
    Stall();
    ASSERT_TRUE(Opens(bench->file, kHere));
    bench->file.SeekSample(stall);
    ASSERT_TRUE(bench->file.ReadArray(4000).late);
  }
  EXPECT_LE(Entries("/proc/self/task"), threads);
  EXPECT_LE(Entries("/proc/self/fd"), handles);
  gate->Open();
  EXPECT_TRUE(Comes([this] { return gate->FilesThere == 1; }));
}

TEST_F(StalledFileTest, EndOfTheFileLeavesAStuckReaderBehindWhichEndsLater) {
  StallAtTheFirstBlock();
  bench.reset();
  EXPECT_EQ(gate->FilesThere, 1);
  gate->Open();
  EXPECT_TRUE(Comes([this] { return AllClosed(); }));
  EXPECT_EQ(gate->ClosedByTheLoop, 0);
}

}  // namespace
}  // namespace tavlo::test
