#include "platform/beside/side_thread.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <thread>

#include "support/held_calls.h"
#include "support/patience.h"

namespace tavlo::test {
namespace {

using platform::SideThread;
using Flag = std::binary_semaphore;

/// Has the thread stand still in its work until the calls are opened.
std::shared_ptr<HeldCalls> Occupy(SideThread& thread) {
  auto calls = std::make_shared<HeldCalls>();
  calls->Shut();
  thread.Do([calls] { calls->Pass(); });
  EXPECT_TRUE(calls->AwaitCalls(1));
  return calls;
}

TEST(SideThread, WorkIsDoneOnOneOtherThread) {
  SideThread thread;
  Flag done{0};
  std::thread::id first;
  std::thread::id second;
  for (std::thread::id* const id : {&first, &second}) {
    thread.Do([&done, id] {
      *id = std::this_thread::get_id();
      done.release();
    });
    ASSERT_TRUE(done.try_acquire_for(kPatience));
  }
  EXPECT_EQ(first, second);
  EXPECT_NE(first, std::this_thread::get_id());
}

TEST(SideThread, WorkThatHasNotBegunGivesWayToWhatIsAskedLater) {
  SideThread thread;
  const auto calls = Occupy(thread);
  Flag done{0};
  bool forgotten = true;
  thread.Do([&forgotten] { forgotten = false; });
  thread.Do([&done] { done.release(); });
  calls->Open();
  ASSERT_TRUE(done.try_acquire_for(kPatience));
  EXPECT_TRUE(forgotten);
}

TEST(SideThread, ThreadThatIsStuckIsLeftBehindWithItsWorkAndDoesNothingElseAfterIt) {
  std::optional<SideThread> thread(std::in_place);
  const auto calls = Occupy(*thread);
  bool done = false;
  const auto held = std::make_shared<int>(0);
  thread->Do([&done, held] { done = true; });
  thread.reset();
  EXPECT_EQ(held.use_count(), 2) << "the thread has ended though its work has not";
  calls->Open();
  ASSERT_TRUE(Comes([&] { return held.use_count() == 1; }));
  EXPECT_FALSE(done);
}

TEST(SideThread, EndOfAnIdleThreadIsTheEndOfAllThatItHeld) {
  const auto held = std::make_shared<int>(0);
  {
    SideThread thread;
    Flag done{0};
    thread.Do([&done, held] { done.release(); });
    ASSERT_TRUE(done.try_acquire_for(kPatience));
  }
  EXPECT_TRUE(Comes([&] { return held.use_count() == 1; }));
}

TEST(SideThread, WorkThatFailsIsForgottenAndTheNextIsDone) {
  SideThread thread;
  Flag failing{0};
  thread.Do([&failing] {
    failing.release();
    throw std::runtime_error("no memory");
  });
  ASSERT_TRUE(failing.try_acquire_for(kPatience));
  Flag done{0};
  thread.Do([&done] { done.release(); });
  ASSERT_TRUE(done.try_acquire_for(kPatience));
}

}  // namespace
}  // namespace tavlo::test
