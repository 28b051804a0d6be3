#include "platform/curl/server_replies.h"

#include <gtest/gtest.h>

namespace tavlo::test {
namespace {

using namespace platform;

ServerReply Reply(const std::string& text) {
  return {.code = std::stoi(text.substr(0, 3)), .text = text + "\n"};
}

TEST(ServerReplies, PortOfAPassiveAnswerIsRead) {
  EXPECT_EQ(PassivePort(Reply("227 Entering Passive Mode (192,168,1,2,25,46).")), 25 * 256 + 46);
  EXPECT_EQ(PassivePort(Reply("227 =127,0,0,1,0,21")), 21);
  EXPECT_EQ(PassivePort(Reply("227 Passive (10,0,0,1,255,255)")), 65535);
}

TEST(ServerReplies, WhatNamesNoPortHasNone) {
  for (const char* const text :
       {"227 Entering Passive Mode", "227 (1,2,3,4,5)", "227 (1,2,3,4,256,1)", "227 (1,2,3,4,0,0)",
        "227 (1,2,3,4,-1,5)", "227 (1,2,3,4,5,99999999999999999999)", "227 (1, 2,3,4,5,6)",
        "227"}) {
    EXPECT_FALSE(PassivePort(Reply(text))) << text;
  }
}

TEST(ServerReplies, PortOfAnExtendedPassiveAnswerIsRead) {
  EXPECT_EQ(ExtendedPassivePort(Reply("229 Entering Extended Passive Mode (|||6446|)")), 6446);
  EXPECT_EQ(ExtendedPassivePort(Reply("229 (!!!1!)")), 1);
  for (const char* const text :
       {"229 (|||0|)", "229 (|||65536|)", "229 (|||6446)", "229 (|1|x|6446|)", "229 (||6446|)",
        "229 (|||-5|)", "229 (||||)", "229 (", "229 x"}) {
    EXPECT_FALSE(ExtendedPassivePort(Reply(text))) << text;
  }
}

TEST(ServerReplies, LengthOfAFileIsRead) {
  EXPECT_EQ(SizeIn(Reply("213 1048576")), 1048576);
  EXPECT_EQ(SizeIn(Reply("213 0")), 0);
  EXPECT_EQ(SizeIn(Reply("213 6000000000")), 6'000'000'000);
  for (const char* const text :
       {"213 ", "213 x", "213 -1", "213 12x", "213 99999999999999999999", "550 17", "213"}) {
    EXPECT_FALSE(SizeIn(Reply(text))) << text;
  }
}

TEST(ServerReplies, LengthAmongTheFactsOfAFileIsRead) {
  EXPECT_EQ(FactsSizeIn(
                Reply("250-Listing\n type=file;size=1234;modify=20260101; a;size=5;.wav\n250 End")),
            1234);
  EXPECT_EQ(FactsSizeIn(Reply("250-x\n Modify=1;Size=7;Type=File; n\n250 End")), 7);
  EXPECT_EQ(FactsSizeIn(Reply("250-x\n size=7; n\n250 End")), 7);
}

TEST(ServerReplies, FactsOfWhatIsNoPlainFileTellNoLength) {
  for (const char* const text :
       {"250-x\n type=dir;size=4096; sub\n250 End", "250-x\n type=file; size=5\n250 End",
        "250-x\n size=; n\n250 End", "250-x\n size=5x; n\n250 End", "250 type=file;size=5; n",
        "550-x\n size=5; n\n550 End"}) {
    EXPECT_FALSE(FactsSizeIn(Reply(text))) << text;
  }
}

TEST(ServerReplies, LengthThatIsAnnouncedWithAFileIsRead) {
  EXPECT_EQ(
      AnnouncedSize(Reply("150 Opening BINARY mode data connection for a(1).wav (4711 bytes).")),
      4711);
  EXPECT_FALSE(AnnouncedSize(Reply("150 Here it comes (soon)")));
  EXPECT_FALSE(AnnouncedSize(Reply("150 Opening (-5 bytes)")));
}

TEST(ServerReplies, RefusalThatAsksForTlsIsKnown) {
  EXPECT_TRUE(WantsProtection(Reply("530 Non-anonymous sessions must use encryption.")));
  EXPECT_TRUE(WantsProtection(Reply("550 SSL/TLS required on the control channel.")));
  EXPECT_FALSE(WantsProtection(Reply("530 Login incorrect.")));
  EXPECT_FALSE(WantsProtection(Reply("331 TLS is welcome, too")));
}

TEST(ServerReplies, RefusedListOfAnEmptyDirectoryIsKnown) {
  EXPECT_TRUE(SaysNoFiles(Reply("450 Nothing")));
  EXPECT_TRUE(SaysNoFiles(Reply("550 No files found.")));
  EXPECT_TRUE(SaysNoFiles(Reply("550 *: No such file or directory")));
  EXPECT_FALSE(SaysNoFiles(Reply("550 Permission denied")));
}

}  // namespace
}  // namespace tavlo::test
