#include "platform/curl/ftp_failures.h"

#include <gtest/gtest.h>

#include <set>
#include <string_view>

namespace tavlo::test {
namespace {

using ftp::FtpClient;
using platform::WordsFor;

TEST(FtpFailures, EachHasWordsOfItsOwnThatFitTheBuffer) {
  std::set<std::string_view> words;
  int failures = 0;
  const auto look = [&](int failure) {
    ++failures;
    words.insert(WordsFor(failure));
    EXPECT_LE(WordsFor(failure).size(), 128U) << failure;
    EXPECT_GT(WordsFor(failure).size(), 10U) << failure;
  };
  for (int failure = FtpClient::kNoRoom; failure < 0; ++failure) look(failure);
  for (int failure = platform::kFileRefused; failure <= FtpClient::kFirstOfTheFile; ++failure) {
    look(failure);
  }
  for (int failure = platform::kProcessInTrouble; failure <= FtpClient::kFirstOwn; ++failure) {
    look(failure);
  }
  EXPECT_EQ(words.size(), static_cast<std::size_t>(failures));
}

TEST(FtpFailures, WhatIsNoFailureHasNoWords) {
  EXPECT_EQ(WordsFor(0), "");
  EXPECT_EQ(WordsFor(25'000), "");
}

TEST(FtpFailures, FailureThatNobodyKnowsIsALostConnection) {
  EXPECT_EQ(WordsFor(-4711), WordsFor(platform::kConnectionLost));
}

}  // namespace
}  // namespace tavlo::test
