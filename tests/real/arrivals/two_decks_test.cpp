#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "arrivals/arrivals.h"
#include "arrivals/length.h"
#include "arrivals/retrieving_deck.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kSeedOfTheShare = 20'040'310;

/// Two programs of two users whose drop folder is the same. The parameter is where it stands: with
/// their Queues on one file system, or on another one.
struct TwoDecks : testing::TestWithParam<const char*> {
  void SetUp() override {
    fs::create_directory(share / "eW2Queue");
    for (const Home* const home : {&first, &second}) {
      store::Assignments settings = QuietSettings();
      settings.emplace_back("Ew2QueuePath", share / "eW2Queue");
      home->MakeRoot(settings);
    }
  }

  /// Puts whole files there at once, faster than any deck takes them.
  void Deliver(const std::vector<Delivery>& deliveries) const {
    for (const Delivery& delivery : deliveries) share.Write(delivery.name, delivery.bytes);
    for (const Delivery& delivery : deliveries) {
      fs::rename(share / delivery.name, share / ("eW2Queue/" + delivery.name));
    }
  }
  /// Waits until nothing is left, and gives up when nothing moves.
  void AwaitEmptyShare() const {
    const auto left = [this] { return NamesIn({share / "eW2Queue"}); };
    int seen = -1;
    while (Until([&] { return left() != seen; })) {
      seen = left();
      if (seen == 0) return;
    }
    ADD_FAILURE() << seen << " files stay";
  }

  TemporaryFolder share{GetParam()};
  Home first;
  Home second;
};

TEST_P(TwoDecks, TakeEachFileOfOneFolderOnceAndToOneOfThem) {
  const std::vector<Delivery> deliveries = MakeWaves(Length().files, kSeedOfTheShare);
  RetrievingDeck one(first, {.current = first.Path(), .user = {}});
  RetrievingDeck other(second, {.current = second.Path(), .user = {}});
  ASSERT_TRUE(one.AwaitFirstList());
  ASSERT_TRUE(other.AwaitFirstList());
  Deliver(deliveries);
  AwaitEmptyShare();
  EXPECT_EQ(one.End(), 0);
  EXPECT_EQ(other.End(), 0);
  ExpectEachOnce(deliveries, {first.QueuePath(), second.QueuePath(), share / "eW2Queue",
                              first.Root() + "/Files/Rescued", second.Root() + "/Files/Rescued"});
  RecordProperty("first", NamesIn({first.QueuePath()}));
  RecordProperty("second", NamesIn({second.QueuePath()}));
}

INSTANTIATE_TEST_SUITE_P(FileSystems, TwoDecks, testing::Values("/tmp", "/dev/shm"),
                         [](const auto& where) {
                           return std::string(where.param) == "/tmp" ? "OfTheirQueues" : "OfItsOwn";
                         });

}  // namespace
}  // namespace tavlo::test
