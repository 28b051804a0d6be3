#include "platform/curl/tether.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <thread>

#include "platform/wake/bell.h"
#include "support/patience.h"

namespace tavlo::test {
namespace {

using platform::Bell;
using platform::Deadline;
using platform::In;
using platform::Tether;

TEST(Tether, WaitEndsWithNewsAndGivesSigns) {
  Tether tether;
  const Bell first;
  const Bell second;
  const auto signs = tether.Signs();
  first.Ring();
  EXPECT_EQ(tether.Await(first.Descriptor(), POLLIN, Deadline::max()), Tether::Waited::Ready);
  EXPECT_GT(tether.Signs(), signs);
  first.Silence();
  second.Ring();
  EXPECT_EQ(tether.Await(first.Descriptor(), POLLIN, Deadline::max(), second.Descriptor()),
            Tether::Waited::Ready);
}

TEST(Tether, WaitEndsAtItsDeadline) {
  Tether tether;
  const Bell silent;
  EXPECT_EQ(tether.Await(silent.Descriptor(), POLLIN, In(std::chrono::milliseconds(5))),
            Tether::Waited::TimedOut);
  EXPECT_EQ(tether.Await(silent.Descriptor(), POLLIN, In(std::chrono::milliseconds(-5))),
            Tether::Waited::TimedOut);
}

TEST(Tether, WaitEndsWhenItIsCutAndNoOtherBegins) {
  Tether tether;
  const Bell bell;
  const auto signs = tether.Signs();
  std::thread waiting([&] {
    EXPECT_EQ(tether.Await(bell.Descriptor(), POLLIN, Deadline::max()), Tether::Waited::Cut);
  });
  EXPECT_TRUE(Comes([&] { return tether.Signs() != signs; }));
  tether.Cut();
  waiting.join();
  bell.Ring();
  EXPECT_TRUE(tether.IsCut());
  EXPECT_EQ(tether.Await(bell.Descriptor(), POLLIN, Deadline::max()), Tether::Waited::Cut);
}

}  // namespace
}  // namespace tavlo::test
