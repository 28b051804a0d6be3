#include "platform/desktop/handover_message.h"

#include <gtest/gtest.h>

#include <string>

namespace tavlo::test {
namespace {

using platform::desktop::kMostBytesOfMessage;
using platform::desktop::kMostPathsOfMessage;
using platform::desktop::MessageOf;
using platform::desktop::PathsOfMessage;
using Paths = shell::FileHandover::Paths;

TEST(HandoverMessage, HoldsPathsAsTheyAre) {
  const Paths paths{"/a", "/b\nc", "/\xFF", "-d"};
  EXPECT_EQ(PathsOfMessage(MessageOf(paths)), paths);
}

TEST(HandoverMessage, IsNoneWhereverItIsCutOff) {
  const std::string whole = MessageOf({"/a", "/bc"});
  const std::string first = MessageOf({"/a"});
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const auto paths = PathsOfMessage(whole.substr(0, size));
    // Cut between two paths it is a shorter one. Whoever sends says the end by ending the call.
    EXPECT_EQ(paths.has_value(), size == first.size()) << size;
  }
}

TEST(HandoverMessage, IsNoneWithoutAPathOrWithAnEmptyOne) {
  EXPECT_EQ(PathsOfMessage(MessageOf({})), std::nullopt);
  EXPECT_EQ(PathsOfMessage(MessageOf({"/a", "", "/b"})), std::nullopt);
  EXPECT_EQ(PathsOfMessage(MessageOf({"/a", ""})), std::nullopt);
}

TEST(HandoverMessage, IsNoneInAnyOtherBuildsWords) {
  std::string other = MessageOf({"/a"});
  other.at(other.find('1')) = '2';
  EXPECT_EQ(PathsOfMessage(other), std::nullopt);
}

TEST(HandoverMessage, HasSoManyPathsAndNoMore) {
  Paths paths(kMostPathsOfMessage, "/a");
  EXPECT_EQ(PathsOfMessage(MessageOf(paths)), paths);
  paths.push_back("/a");
  EXPECT_EQ(PathsOfMessage(MessageOf(paths)), std::nullopt);
}

TEST(HandoverMessage, HasSoManyBytesAndNoMore) {
  const std::size_t around = MessageOf({""}).size();
  Paths paths{"/" + std::string(kMostBytesOfMessage - around - 1, 'x')};
  EXPECT_EQ(PathsOfMessage(MessageOf(paths)), paths);
  paths.front() += 'x';
  EXPECT_EQ(PathsOfMessage(MessageOf(paths)), std::nullopt);
}

}  // namespace
}  // namespace tavlo::test
