#include "platform/beside/side_thread.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <thread>

namespace tavlo::test {
namespace {

using platform::SideThread;
using Flag = std::binary_semaphore;

/// Work that tells when it has begun and stands still until it may end.
struct Stall {
  Flag begun{0};
  Flag mayEnd{0};
};

std::shared_ptr<Stall> Occupy(SideThread& thread) {
  auto stall = std::make_shared<Stall>();
  thread.Do([stall] {
    stall->begun.release();
    stall->mayEnd.acquire();
  });
  stall->begun.acquire();
  return stall;
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
    done.acquire();
  }
  EXPECT_EQ(first, second);
  EXPECT_NE(first, std::this_thread::get_id());
}

TEST(SideThread, WorkThatHasNotBegunGivesWayToWhatIsAskedLater) {
  SideThread thread;
  const auto stall = Occupy(thread);
  Flag done{0};
  bool forgotten = true;
  thread.Do([&forgotten] { forgotten = false; });
  thread.Do([&done] { done.release(); });
  stall->mayEnd.release();
  done.acquire();
  EXPECT_TRUE(forgotten);
}

TEST(SideThread, ThreadThatIsStuckIsLeftBehindWithItsWorkAndDoesNothingElseAfterIt) {
  std::optional<SideThread> thread(std::in_place);
  const auto stall = Occupy(*thread);
  bool done = false;
  const auto held = std::make_shared<int>(0);
  thread->Do([&done, held] { done = true; });
  thread.reset();
  EXPECT_EQ(held.use_count(), 2) << "the thread has ended though its work has not";
  stall->mayEnd.release();
  while (held.use_count() > 1) std::this_thread::yield();
  EXPECT_FALSE(done);
}

TEST(SideThread, EndOfAnIdleThreadIsTheEndOfAllThatItHeld) {
  const auto held = std::make_shared<int>(0);
  {
    SideThread thread;
    Flag done{0};
    thread.Do([&done, held] { done.release(); });
    done.acquire();
  }
  EXPECT_EQ(held.use_count(), 1);
}

TEST(SideThread, WorkThatFailsIsForgottenAndTheNextIsDone) {
  SideThread thread;
  Flag failing{0};
  thread.Do([&failing] {
    failing.release();
    throw std::runtime_error("no memory");
  });
  failing.acquire();
  Flag done{0};
  thread.Do([&done] { done.release(); });
  done.acquire();
}

}  // namespace
}  // namespace tavlo::test
