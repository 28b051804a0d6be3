#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>

#include "keys/keys_bench.h"

namespace tavlo::test {
namespace {

using remote::AfarAction;

constexpr const char* kThreads = "/proc/self/task";
constexpr const char* kOpenFiles = "/proc/self/fd";

std::set<std::string> NamesIn(const char* folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename());
  }
  return names;
}

/// How often a thread has gone to sleep so far.
long SleepsOf(const std::string& thread) {
  std::ifstream status(std::string(kThreads) + "/" + thread + "/status");
  const std::string wanted = "voluntary_ctxt_switches:";
  for (std::string word; status >> word;) {
    if (word != wanted) continue;
    long sleeps = 0;
    status >> sleeps;
    return sleeps;
  }
  ADD_FAILURE() << "there is no thread " << thread;
  return 0;
}

/// What keys of all windows cost who does not use them.
struct QuietKeys : KeysBench {
  /// The thread that serves the keys, which are wished for already.
  std::string Thread() const {
    std::set<std::string> threads = NamesIn(kThreads);
    for (const std::string& before : threadsBefore) threads.erase(before);
    EXPECT_EQ(threads.size(), 1U);
    return threads.empty() ? "" : *threads.begin();
  }
  /// Returns when the thread has dealt with all that came before.
  void Settle() {
    Type({keys::kF4});
    EXPECT_EQ(Heard("+play-stop -play-stop"), "+play-stop -play-stop");
    OtherTook();
  }

  const std::set<std::string> threadsBefore = NamesIn(kThreads);
};

TEST_F(QuietKeys, WithoutAKeyThereIsNoThreadNoConnectionAndNothingIsGrabbed) {
  const std::set<std::string> filesBefore = NamesIn(kOpenFiles);
  keys->Wish({});
  EXPECT_EQ(NamesIn(kThreads), threadsBefore);
  Wish({{AfarAction::PlayStop, "F4"}});
  EXPECT_NE(NamesIn(kThreads), threadsBefore);
  EXPECT_NE(NamesIn(kOpenFiles), filesBefore);
  keys->Wish({});
  EXPECT_EQ(NamesIn(kThreads), threadsBefore);
  EXPECT_EQ(NamesIn(kOpenFiles), filesBefore);
  EXPECT_TRUE(keys->Grants().empty());
  Type({keys::kF4});
  EXPECT_TRUE(Until([&] {
    // The display takes note of a connection that has ended when it comes to it.
    Type({keys::kF4});
    return other->Took().ends_with("+F4 -F4");
  }));
}

TEST_F(QuietKeys, LastKeyThatIsGivenBackWhileItIsHeldLetsTheKeyboardGo) {
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  keys->Wish({});
  Type({'a'});
  EXPECT_TRUE(Until([&] { return other->Took().ends_with("+a -a"); }));
  EXPECT_EQ(keys->Next(), std::nullopt);
  LetGo(keys::kF4);
}

TEST_F(QuietKeys, WhatIsTypedElsewhereWakesNobody) {
  Wish({{AfarAction::PlayStop, "F4"}});
  Settle();
  const std::string thread = Thread();
  const long before = SleepsOf(thread);
  for (int letter = 0; letter < 100; ++letter) {
    Type({keys::kShift, 'a'});
    Type({keys::kControl, keys::kF5});
  }
  OtherTook();
  // It may have had something left to do from before.
  EXPECT_LT(SleepsOf(thread), before + 10);
}

TEST_F(QuietKeys, HeldKeyIsLookedAtOnlyWhileItsReleaseWouldNotBeTold) {
  Wish({{AfarAction::PlayHeld, "F4"}, {AfarAction::PlayStop, "F6"}});
  const std::string thread = Thread();
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  Type({'a'});
  ASSERT_TRUE(Until([&] { return other->Took() == "+a -a"; }));
  const long held = SleepsOf(thread);
  EXPECT_TRUE(Until([&] { return SleepsOf(thread) > held + 5; }));
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("-play-held"), "-play-held");
  long before = SleepsOf(thread);
  // The thread may be about to go to sleep; after that it stays asleep.
  EXPECT_TRUE(Until([&] { return before == std::exchange(before, SleepsOf(thread)); }));
  LetItRepeat();
  EXPECT_EQ(SleepsOf(thread), before);
}

TEST_F(QuietKeys, SilenceMayComeBeforeTheRulesDo) {
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  heard->Wait = true;
  EXPECT_FALSE(keys->LetGo());
  LetGo(keys::kF4);
  EXPECT_TRUE(Until([&] { return keys->LetGo(); }));
  EXPECT_FALSE(keys->LetGo());
  EXPECT_EQ(keys->Next(), (remote::KeyEvent{AfarAction::PlayHeld, false}));
}

}  // namespace
}  // namespace tavlo::test
