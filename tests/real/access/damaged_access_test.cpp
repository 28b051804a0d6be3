#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "access/access_bench.h"
#include "access/access_file.h"

namespace tavlo::test {
namespace {

using store::Table;

/// Old databases that somebody made up, or a disk spoiled. The seed is fixed, so that a fault comes
/// again.
struct DamagedAccess : testing::Test, AccessBench {
  void ExpectWholeAfterUpgrade() {
    const auto settings = Upgrade();
    ASSERT_TRUE(settings);
    ExpectWhole(*settings);
    std::filesystem::remove(Old());
    std::filesystem::remove(Root() + "/PlaceOldDatabaseHere/UpgradeFinished.txt");
  }
  std::size_t Up(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
  }
  /// Whether the reader found anything.
  static bool IsRead(const std::string& path) { return OpenAccess(path).database != nullptr; }

  std::mt19937 random{20041};
  const std::string complete = BytesOf(kComplete);
};

TEST_F(DamagedAccess, CutOffAnywhereLeavesWholeSettings) {
  constexpr int kCuts = 100;
  for (int cut = 0; cut < kCuts && !HasFailure(); ++cut) {
    const std::size_t size = Up(complete.size());
    SCOPED_TRACE(size);
    PlaceOld(complete.substr(0, size));
    ExpectWholeAfterUpgrade();
  }
}

TEST_F(DamagedAccess, ChangedBytesLeaveWholeSettings) {
  constexpr int kChanged = 1000;
  int read = 0;
  for (int change = 0; change < kChanged && !HasFailure(); ++change) {
    std::string bytes = complete;
    const std::size_t at = Up(bytes.size());
    const auto was = static_cast<unsigned char>(bytes[at]);
    bytes[at] = static_cast<char>(was ^ (1 + Up(255)));
    SCOPED_TRACE(at);
    PlaceOld(bytes);
    read += IsRead(Old());
    // To open our own database twice takes longer than to read the old one.
    if (change % 10 == 0) ExpectWholeAfterUpgrade();
  }
  // Most bytes of the file are none that anybody reads.
  EXPECT_GT(read, kChanged / 2);
}

TEST_F(DamagedAccess, BytesThatMeanSomethingChangedLeaveWholeSettings) {
  constexpr int kChanged = 200;
  std::vector<std::size_t> used;
  for (std::size_t at = 0; at < complete.size(); ++at) {
    if (complete[at] != 0) used.push_back(at);
  }
  for (int change = 0; change < kChanged && !HasFailure(); ++change) {
    std::string bytes = complete;
    for (int hit = 0; hit < 20; ++hit) bytes[used[Up(used.size())]] = static_cast<char>(Up(256));
    SCOPED_TRACE(change);
    PlaceOld(bytes);
    ExpectWholeAfterUpgrade();
  }
}

TEST_F(DamagedAccess, OlderLayoutWithChangedBytesLeavesWholeSettings) {
  constexpr int kChanged = 100;
  AccessTable authors{.name = "ImportAuthors",
                      .columns = {{"NumericSorter", AccessType::Int},
                                  {"AuthorLastName"},
                                  {"Subject", AccessType::Memo}},
                      .rows = {}};
  for (int row = 1; row <= 40; ++row) {
    authors.rows.push_back(
        {double(row), std::string(200, 'a'), std::string(static_cast<std::size_t>(row * 90), 's')});
  }
  const std::string whole = AccessFileBytes({.layout = Jet::Three}, {authors});
  for (int change = 0; change < kChanged && !HasFailure(); ++change) {
    std::string bytes = whole.substr(0, change % 2 ? whole.size() : Up(whole.size()));
    for (int hit = 0; hit < 20 && !bytes.empty(); ++hit) {
      bytes[Up(bytes.size())] = static_cast<char>(Up(256));
    }
    SCOPED_TRACE(change);
    PlaceOld(bytes);
    ExpectWholeAfterUpgrade();
  }
}

TEST_F(DamagedAccess, EmptyFileLeavesWholeSettings) {
  PlaceOld("");
  ExpectWholeAfterUpgrade();
}

TEST_F(DamagedAccess, FolderOfThatNameLeavesWholeSettings) {
  std::filesystem::create_directory(Old());
  ExpectWholeAfterUpgrade();
}

TEST_F(DamagedAccess, PipeOfThatNameLeavesWholeSettings) {
  ASSERT_EQ(::mkfifo(Old().c_str(), 0600), 0);
  ExpectWholeAfterUpgrade();
}

TEST_F(DamagedAccess, FileOfTwoGigabytesLeavesWholeSettings) {
  PlaceOld(complete);
  std::filesystem::resize_file(Old(), std::uintmax_t{2} << 30);
  ExpectWholeAfterUpgrade();
}

TEST_F(DamagedAccess, TwoGigabytesOfNothingLeaveWholeSettings) {
  PlaceOld(complete.substr(0, 4096));
  std::filesystem::resize_file(Old(), std::uintmax_t{2} << 30);
  ExpectWholeAfterUpgrade();
}

TEST_F(DamagedAccess, EncryptedOneLeavesWholeSettings) {
  // The key of the pages stands in the first of them, which is hidden itself.
  std::string bytes = complete;
  constexpr std::size_t kKey = 0x3e;
  for (std::size_t at = kKey; at < kKey + 4; ++at) bytes[at] = static_cast<char>(0x5a ^ at);
  PlaceOld(bytes);
  ExpectWholeAfterUpgrade();
}

TEST_F(DamagedAccess, InThePlaceOfOursIsLeftAndNamed) {
  const std::string bytes = complete.substr(0, 8192);
  std::ofstream(Settings(), std::ios::binary | std::ios::trunc) << bytes;
  const store::OpenedDatabase opened = databases.Open(Settings());
  EXPECT_FALSE(opened.database);
  EXPECT_NE(opened.failure.find(Settings()), std::string::npos) << opened.failure;
  EXPECT_TRUE(BytesOf(Settings()) == bytes);
}

}  // namespace
}  // namespace tavlo::test
