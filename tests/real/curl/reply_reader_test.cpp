#include "platform/curl/reply_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tavlo::test {
namespace {

using platform::ReplyReader;
using platform::ServerReply;

/// All answers in the bytes, which come in pieces of a size.
std::vector<ServerReply> Read(ReplyReader& reader, std::string_view bytes, std::size_t piece) {
  std::vector<ServerReply> replies;
  for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
    std::string_view rest = bytes.substr(0, piece);
    while (!rest.empty() && !reader.IsNonsense()) {
      rest.remove_prefix(reader.Take(rest));
      if (auto reply = reader.Next()) replies.push_back(*reply);
    }
  }
  return replies;
}

TEST(ReplyReader, AnswersAreReadOneByOneHoweverTheyCome) {
  const std::string bytes = "220 Ready\r\n230-Welcome\r\n over here\r\n230 In\r\n226 Done\n";
  for (const std::size_t piece : {1UL, 2UL, 7UL, 1000UL}) {
    ReplyReader reader;
    const auto replies = Read(reader, bytes, piece);
    ASSERT_EQ(replies.size(), 3U) << piece;
    EXPECT_EQ(replies[0].code, 220);
    EXPECT_EQ(replies[0].text, "220 Ready\n");
    EXPECT_EQ(replies[1].code, 230);
    EXPECT_EQ(replies[1].text, "230-Welcome\n over here\n230 In\n");
    EXPECT_EQ(replies[2].code, 226);
    EXPECT_FALSE(reader.IsAmid());
  }
}

TEST(ReplyReader, LinesInsideAnAnswerMayLookLikeAnEndOfAnother) {
  ReplyReader reader;
  const auto replies =
      Read(reader, "211-Features\r\n226 SIZE\r\n211-x\r\n2113\r\n211 End\r\n", 100);
  ASSERT_EQ(replies.size(), 1U);
  EXPECT_EQ(replies[0].code, 211);
}

TEST(ReplyReader, ACodeMayStandAlone) {
  ReplyReader reader;
  const auto replies = Read(reader, "200\r\n250 \r\n", 100);
  ASSERT_EQ(replies.size(), 2U);
  EXPECT_EQ(replies[0].code, 200);
  EXPECT_EQ(replies[1].code, 250);
}

TEST(ReplyReader, WhatHasNoCodeIsNonsense) {
  for (const char* const bytes :
       {"HTTP/1.1 400\r\n", "SSH-2.0-x\r\n", "\r\n", "099 x\r\n", "600 x\r\n", "22 x\r\n",
        "2200 x\r\n", "220x\r\n", " 220 x\r\n"}) {
    ReplyReader reader;
    EXPECT_TRUE(Read(reader, bytes, 100).empty()) << bytes;
    EXPECT_TRUE(reader.IsNonsense()) << bytes;
  }
}

TEST(ReplyReader, HalfAnAnswerIsNone) {
  ReplyReader reader;
  EXPECT_TRUE(Read(reader, "220 Rea", 100).empty());
  EXPECT_TRUE(reader.IsAmid());
  EXPECT_FALSE(reader.IsNonsense());
}

TEST(ReplyReader, OfALongAnswerTheBeginningIsKept) {
  ReplyReader reader;
  std::string bytes = "230-Welcome\r\n";
  while (bytes.size() < 500'000) bytes += std::string(1000, 'x') + "\r\n";
  const auto replies = Read(reader, bytes + "230 In\r\n226 Next\r\n", 4096);
  ASSERT_EQ(replies.size(), 2U);
  EXPECT_EQ(replies[0].code, 230);
  EXPECT_TRUE(replies[0].text.starts_with("230-Welcome\nxxx"));
  EXPECT_LE(replies[0].text.size(), ReplyReader::kKept);
  EXPECT_EQ(replies[1].text, "226 Next\n");
}

TEST(ReplyReader, OfALongLineTheBeginningIsKept) {
  ReplyReader reader;
  const auto replies = Read(reader, "550 " + std::string(500'000, 'x') + "\r\n226 Next\r\n", 4096);
  ASSERT_EQ(replies.size(), 2U);
  EXPECT_EQ(replies[0].code, 550);
  EXPECT_LE(replies[0].text.size(), ReplyReader::kKept);
  EXPECT_EQ(replies[1].code, 226);
}

TEST(ReplyReader, AnswerWithoutAnEndIsNonsense) {
  for (const std::string more : {"230-More\r\n", "x"}) {
    ReplyReader reader;
    std::string bytes = "230-Welcome\r\n";
    while (bytes.size() <= ReplyReader::kLongestReply) bytes += more;
    EXPECT_TRUE(Read(reader, bytes, 4096).empty());
    EXPECT_TRUE(reader.IsNonsense());
  }
}

}  // namespace
}  // namespace tavlo::test
