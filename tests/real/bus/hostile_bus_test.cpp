#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "bus/media_program.h"

namespace tavlo::test {
namespace {

constexpr int kCalls = 60'000;

/// Somebody who calls the deck ten thousand times a second, in every way that there is.
struct FloodedProgram : MediaProgram {
  /// Counts what the loop does between two takes from the bus.
  void CountPasses() {
    program->Do([&] {
      auto& tell = program->Loop().TellChanges;
      tell = [&, before = tell] {
        ++passes;
        before();
      };
    });
  }
  bool Flood(const char* kind, int callsASecond) {
    ChildProcess flood;
    const TemporaryFolder folder;
    const std::string log = folder / "flood";
    EXPECT_TRUE(flood.Start({"sh", "-c",
                             std::string("exec '") + TAVLO_BUS_FLOOD + "' '" + bus.Address() +
                                 "' org.mpris.MediaPlayer2.tavlodeck " + std::to_string(kCalls) +
                                 " " + std::to_string(callsASecond) + " " + kind + " >" + log}));
    const std::string all = std::to_string(kCalls);
    const bool over = Until([&] { return Said("cat " + log).ends_with("answers"); });
    EXPECT_EQ(Said("cat " + log), all + " calls, " + all + " answers");
    return over;
  }

  std::atomic<int> passes = 0;
};

TEST_F(FloodedProgram, IsRunByHandBetweenTheCalls) {
  Run([&] {
    Open();
    CountPasses();
    const int before = passes;
    ChildProcess flood;
    ASSERT_TRUE(flood.Start({TAVLO_BUS_FLOOD, bus.Address(), "org.mpris.MediaPlayer2.tavlodeck",
                             "100000000", "10000", "questions"}));
    ASSERT_TRUE(Until([&] { return passes > before + 1000; }));
    program->Click("cmdPlay");
    EXPECT_TRUE(Until([&] { return Playing(); }));
    const double from = Seconds();
    EXPECT_TRUE(Until([&] { return Seconds() > from + 1; })) << "the sound is fed";
    program->Click("cmdStop");
    EXPECT_TRUE(Until([&] { return !Playing(); }));
    // Another program has its turn, too.
    EXPECT_EQ(PlayerCtl("play"), "");
    EXPECT_TRUE(Until([&] { return Playing(); }));
    flood.Kill();
    PlayerCtl("stop");
    EXPECT_TRUE(Until([&] { return !Playing(); }));
  });
}

TEST_F(FloodedProgram, AnswersEveryCallHoweverFastTheyCome) {
  Run([&] {
    Open();
    EXPECT_TRUE(Flood("questions", /*as fast as it goes*/ 0));
    EXPECT_TRUE(InWork());
    EXPECT_FALSE(Playing());
  });
}

TEST_F(FloodedProgram, LivesAndKeepsItsDocumentsWhateverIsAskedOfIt) {
  // Where the deck keeps documents, and what is in them.
  const auto files = [&] {
    auto all = home.Everything();
    std::erase_if(all, [](const auto& file) {
      return file.second == "folder" || !file.first.starts_with("/Lyrane/TavloDeck/Files/");
    });
    return all;
  };
  const auto before = files();
  ASSERT_EQ(before.size(), 1U);
  Run([&] {
    Open();
    EXPECT_TRUE(Flood("everything", 10'000));
    EXPECT_TRUE(InWork());
    EXPECT_TRUE(files() == before);
    ASSERT_TRUE(Until([&] {
      PlayerCtl("stop");
      return !Playing();
    }));
    // What was asked before and still waits comes first, more questions of the exit among it, and
    // what comes beyond that is not taken.
    EXPECT_TRUE(Until([&] {
      if (!program->Box().empty()) program->AnswerBox();
      PlayerCtl("position 30");
      return Seconds() == 30;
    })) << Seconds();
  });
  EXPECT_TRUE(files() == before);
}

}  // namespace
}  // namespace tavlo::test
