#include "platform/reach/place_errands.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>

#include "reach/stalling_place.h"
#include "support/patience.h"

namespace tavlo::test {
namespace {

using platform::Errands;
using platform::PlaceErrands;
using base::operator""s;

/// Entries of a folder in which the kernel tells of this process.
std::ptrdiff_t Count(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder),
                       std::filesystem::directory_iterator());
}

std::ptrdiff_t Threads() { return Count("/proc/self/task"); }
std::ptrdiff_t Handles() { return Count("/proc/self/fd"); }

/// Takes a turn that another thread gives.
void TakeTurn(std::counting_semaphore<>& turns) {
  if (!turns.try_acquire_for(kPatience)) throw std::runtime_error("no turn came");
}

struct PlaceErrandsTest : testing::Test, StallingPlaces {
  std::thread::id ThreadOf(const std::string& path) {
    const auto ran = std::make_shared<std::thread::id>();
    EXPECT_TRUE(errands.Run(path, [ran](Errands::Sign&) { *ran = std::this_thread::get_id(); }));
    return *ran;
  }
};

TEST_F(PlaceErrandsTest, WorkRunsHereWhereThePlaceCanNotStall) {
  EXPECT_EQ(ThreadOf("a"), std::this_thread::get_id());
}

TEST_F(PlaceErrandsTest, EachPlaceThatMayStallHasOneThread) {
  const std::thread::id thread = ThreadOf("A");
  EXPECT_NE(thread, std::this_thread::get_id());
  EXPECT_EQ(ThreadOf("A/b"), thread);
  EXPECT_NE(ThreadOf("B"), thread);
}

TEST_F(PlaceErrandsTest, WorkOfAnotherThreadRunsThere) {
  std::thread::id ran;
  std::thread other([&] { ran = ThreadOf("A"); });
  const std::thread::id otherThread = other.get_id();
  other.join();
  EXPECT_EQ(ran, otherThread);
}

TEST_F(PlaceErrandsTest, LoopBreathesUntilTheAnswerComes) {
  const StuckCall call;
  base::Timer feed(loop, "feed", std::chrono::microseconds(1), base::TimerKind::Feed);
  feed.OnTick = [&] {
    feed.Stop();
    call.Answer();
  };
  feed.StartDue();
  EXPECT_TRUE(errands.Run("A", call.Work()));
  EXPECT_GT(loop.Breaths, 0);
}

TEST_F(PlaceErrandsTest, WorkThatGivesNoAnswerIsLeftBehindAndNothingMoreIsAskedOfItsPlace) {
  const StuckCall call;
  const base::MonotonicTime begin = loop.Now();
  EXPECT_FALSE(RunInVain("A", call));
  EXPECT_EQ(loop.Now() - begin, Errands::kPatience);
  EXPECT_TRUE(errands.OutOfReach("A/other"));
  EXPECT_EQ(errands.LeftBehind(), 1);
  const auto asked = std::make_shared<std::atomic<bool>>(false);
  const base::MonotonicTime left = loop.Now();
  EXPECT_FALSE(errands.Run("A/other", [asked](Errands::Sign&) { *asked = true; }));
  EXPECT_EQ(loop.Now(), left) << "that it is out of reach is told at once";
  call.Answer();
  AwaitReach("A");
  EXPECT_FALSE(*asked);
  EXPECT_EQ(errands.LeftBehind(), 0);
  EXPECT_NE(ThreadOf("A"), std::this_thread::get_id());
}

TEST_F(PlaceErrandsTest, OtherPlacesAnswerWhileOneGivesNoAnswer) {
  const StuckCall call;
  EXPECT_FALSE(RunInVain("A", call));
  EXPECT_FALSE(errands.OutOfReach("B"));
  EXPECT_NE(ThreadOf("B"), std::this_thread::get_id());
  call.Answer();
  AwaitReach("A");
}

TEST_F(PlaceErrandsTest, WorkThatGivesSignsIsWaitedForHoweverLongItTakes) {
  struct Steps {
    std::counting_semaphore<> next{0};
    std::counting_semaphore<> done{0};
  };
  const auto steps = std::make_shared<Steps>();
  constexpr int kSteps = 500;
  ScriptedFoot foot;
  int looks = 0;
  foot.OnLook = [&] {
    // Each look of the loop sees one sign more; the last one lets the work end.
    steps->next.release();
    if (++looks == kSteps) {
      loop.NoAnswerComes = false;
    } else {
      TakeTurn(steps->done);
    }
    return false;
  };
  feet.Watch(foot, [] { return true; });
  EXPECT_TRUE(RunInVain("A", [steps](Errands::Sign& sign) {
    for (int i = 0; i < kSteps; ++i) {
      TakeTurn(steps->next);
      sign.Give();
      steps->done.release();
    }
  }));
  EXPECT_EQ(looks, kSteps);
}

TEST_F(PlaceErrandsTest, WhatWorkThrowsIsThrownToWhoeverAskedForIt) {
  for (const char* path : {"a", "A"}) {
    EXPECT_THROW(errands.Run(path, [](Errands::Sign&) { throw std::runtime_error("no memory"); }),
                 std::runtime_error);
  }
  EXPECT_FALSE(errands.OutOfReach("A"));
}

TEST_F(PlaceErrandsTest, FootThatLetsGoIsHeardWhileTheLoopWaits) {
  ScriptedFoot foot;
  int looks = 0;
  foot.OnLook = [&] { return ++looks == 3; };
  feet.Watch(foot, [] { return true; });
  const StuckCall call;
  EXPECT_FALSE(RunInVain("A", call));
  EXPECT_EQ(hush.silences, 1);
  EXPECT_EQ(looks, Errands::kPatience / PlaceErrands::kLook);
  call.Answer();
  AwaitReach("A");
}

TEST_F(PlaceErrandsTest, FootThatHoldsNothingOfWhatSoundsSilencesNothing) {
  ScriptedFoot foot;
  bool asked = false;
  foot.OnLook = [] { return true; };
  feet.Watch(foot, [&] {
    asked = true;
    return false;
  });
  const StuckCall call;
  EXPECT_FALSE(RunInVain("A", call));
  EXPECT_TRUE(asked);
  EXPECT_EQ(hush.silences, 0);
  call.Answer();
  AwaitReach("A");
}

TEST_F(PlaceErrandsTest, WorkGoesOnWhileTheLoopTakesWhatIsReady) {
  struct Row {
    std::atomic<int> ready = 0;
    std::counting_semaphore<> more{0};
  };
  const auto row = std::make_shared<Row>();
  const auto begun = errands.Begin({.mount = 'A', .mayStall = true}, [row](Errands::Sign& sign) {
    for (int i = 0; i < 3; ++i) {
      ++row->ready;
      sign.Tell();
      TakeTurn(row->more);
    }
  });
  ASSERT_TRUE(begun);
  for (int taken = 1; taken <= 3; ++taken) {
    EXPECT_TRUE(errands.Await(*begun, [&] { return row->ready == taken; }));
    EXPECT_FALSE(PlaceErrands::HasReturned(*begun));
    row->more.release();
  }
  EXPECT_TRUE(errands.Await(*begun, [] { return false; }));
  EXPECT_TRUE(PlaceErrands::HasReturned(*begun));
}

TEST_F(PlaceErrandsTest, WhatWaitsBehindAStuckCallIsNotDoneOnceItWasGivenUp) {
  const StuckCall call;
  const platform::Place place{.mount = 'A', .mayStall = true};
  ASSERT_TRUE(errands.Begin(place, call.Work()));
  call.AwaitBegin();
  EXPECT_FALSE(errands.OutOfReach("A")) << "nobody has waited for it";
  const auto done = std::make_shared<std::atomic<bool>>(false);
  EXPECT_FALSE(RunInVain("A", [done](Errands::Sign&) { *done = true; }));
  EXPECT_TRUE(errands.OutOfReach("A"));
  EXPECT_FALSE(errands.Begin(place, [done](Errands::Sign&) { *done = true; }));
  call.Answer();
  AwaitReach("A");
  ThreadOf("A");
  EXPECT_FALSE(*done);
}

TEST_F(PlaceErrandsTest, ThingIsLetGoOnTheThreadOfItsPlace) {
  const auto ended = std::make_shared<std::atomic<std::thread::id>>();
  std::shared_ptr<void> thing(nullptr, [ended](void*) { *ended = std::this_thread::get_id(); });
  errands.LetGo({.mount = 'A', .mayStall = true}, std::move(thing));
  const std::thread::id thread = ThreadOf("A");
  EXPECT_EQ(ended->load(), thread);
}

TEST_F(PlaceErrandsTest, ThingIsLetGoAtAStuckPlaceOnceThatAnswers) {
  const StuckCall call;
  EXPECT_FALSE(RunInVain("A", call));
  EXPECT_FALSE(RunInVain("A", [](Errands::Sign&) {}));
  EXPECT_EQ(errands.Waiting(), 0U) << "what is refused does not wait";
  const auto ended = std::make_shared<std::atomic<bool>>(false);
  errands.LetGo({.mount = 'A', .mayStall = true},
                std::shared_ptr<void>(nullptr, [ended](void*) { *ended = true; }));
  EXPECT_EQ(errands.Waiting(), 1U);
  EXPECT_FALSE(*ended);
  call.Answer();
  EXPECT_TRUE(Comes([&] { return ended->load(); }));
  EXPECT_EQ(errands.Waiting(), 0U);
}

TEST_F(PlaceErrandsTest, EndWaitsForNoCallThatGivesNoAnswer) {
  const StuckCall call;
  const std::ptrdiff_t before = Threads();
  {
    StallingPlaces inner;
    EXPECT_FALSE(inner.RunInVain("A", call));
  }
  EXPECT_EQ(call.Owners(), 2) << "the call is still stuck";
  call.Answer();
  EXPECT_TRUE(Comes([&] { return call.Owners() == 1 && Threads() <= before; }));
}

TEST_F(PlaceErrandsTest, ThreadThatHasNothingToDoEnds) {
  const std::ptrdiff_t before = Threads();
  PlaceErrands hasty(loop, loop, places, feet, std::chrono::milliseconds(1));
  EXPECT_TRUE(hasty.Run("A", [](Errands::Sign&) {}));
  EXPECT_TRUE(Comes([&] { return Threads() <= before; }));
  EXPECT_TRUE(hasty.Run("A", [](Errands::Sign&) {}));
}

TEST_F(PlaceErrandsTest, ThousandStallsLeaveNoThreadNoHandleAndNoMemory) {
  const auto stall = [this] {
    const StuckCall call;
    EXPECT_FALSE(RunInVain("A", call));
    EXPECT_FALSE(errands.Run("A", call.Work()));
    call.Answer();
    AwaitReach("A");
    EXPECT_EQ(call.Owners(), 1) << "something of the work was kept";
  };
  stall();
  const std::ptrdiff_t threads = Threads();
  const std::ptrdiff_t handles = Handles();
  for (int i = 0; i < 1000 && !HasFailure(); ++i) stall();
  EXPECT_TRUE(Comes([&] { return Threads() <= threads; }));
  EXPECT_LE(Handles(), handles);
}

}  // namespace
}  // namespace tavlo::test
