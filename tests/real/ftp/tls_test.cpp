#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <tuple>

#include "ftp/certificates.h"
#include "ftp/file_servers.h"
#include "ftp/ftp_bench.h"

namespace tavlo::test {
namespace {

constexpr const char* kSecret = "slow-Ostrich7";

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != text.npos;
}

/// Neither who logs in nor anything else of a log-in went over the wire in plain.
void ExpectNothingSaidInPlain(const std::string& heard) {
  for (const char* const word : {"USER", "PASS", kSecret, "CWD", "NLST", "a.wav"}) {
    EXPECT_FALSE(Holds(heard, word)) << word;
  }
}

struct BadPaper {
  const char* name;
  Paper paper;
  const char* word;  ///< The failure's words have it.
};

std::ostream& operator<<(std::ostream& out, const BadPaper& bad) { return out << bad.name; }

constexpr BadPaper kBadPapers[] = {
    {"Expired", Paper::Expired, "expired"},
    {"SelfSigned", Paper::SelfSigned, "itself"},
    {"Foreign", Paper::Foreign, "trusts"},
    {"OtherHost", Paper::OtherHost, "another"},
};

using BadPaperTest = testing::TestWithParam<std::tuple<Manner, BadPaper>>;

TEST_P(BadPaperTest, EndsTheConnectionBeforeTheLogIn) {
  const auto& [manner, bad] = GetParam();
  const Certificates certificates;
  Vsftpd server(manner, certificates.For(bad.paper));
  FtpBench bench({}, certificates.Authority());
  const int refused = bench.Connect(server);
  const std::string words = bench.WordsFor(refused);
  EXPECT_TRUE(Holds(words, bad.word)) << words;
  EXPECT_TRUE(bench.List().empty());
  EXPECT_EQ(bench.Result, ftp::FtpClient::kNotConnected);
  ExpectNothingSaidInPlain(server.Heard());
  // It has been at the server, and has not come back without protection.
  EXPECT_FALSE(server.Heard().empty());
  EXPECT_EQ(Holds(server.Heard(), "AUTH"), manner == Manner::Explicit);
}

INSTANTIATE_TEST_SUITE_P(Tls, BadPaperTest,
                         testing::Combine(testing::Values(Manner::Implicit, Manner::Explicit),
                                          testing::ValuesIn(kBadPapers)),
                         [](const auto& each) {
                           return std::string(std::get<0>(each.param) == Manner::Implicit
                                                  ? "Implicit"
                                                  : "Explicit") +
                                  std::get<1>(each.param).name;
                         });

TEST(TlsTest, NothingOfALogInTravelsInPlain) {
  const Certificates certificates;
  for (const Manner manner : {Manner::Implicit, Manner::Explicit, Manner::ExplicitWithReuse}) {
    const Vsftpd server(manner, certificates.For(Paper::Good));
    server.Files.Write("a.wav", "a");
    FtpBench bench({}, certificates.Authority());
    ASSERT_EQ(bench.Connect(server), 0);
    EXPECT_EQ(bench.List(), std::vector<std::string>{"a.wav"});
    ASSERT_EQ(bench.Get("a.wav"), 0);
    ExpectNothingSaidInPlain(server.Heard());
  }
}

TEST(TlsTest, CertificateOfAnAuthorityThatTheSystemDoesNotKnowIsRefused) {
  const Certificates certificates;
  const Vsftpd server(Manner::Implicit, certificates.For(Paper::Good));
  FtpBench bench;
  const std::string words = bench.WordsFor(bench.Connect(server));
  EXPECT_TRUE(Holds(words, "trusts")) << words;
  ExpectNothingSaidInPlain(server.Heard());
}

TEST(TlsTest, ServerThatOnlySpeaksAnOldTlsIsRefused) {
  const Certificates certificates;
  const Pyftpdlib server({"--paper", certificates.For(Paper::Good), "--old-tls"});
  FtpBench bench({}, certificates.Authority());
  bench.WordsFor(bench.Connect(server));
  EXPECT_TRUE(Holds(server.Heard(), "AUTH"));
  ExpectNothingSaidInPlain(server.Heard());
}

TEST(TlsTest, ServerThatLeavesDataInPlainGetsNoneAskedFor) {
  const Certificates certificates;
  const Pyftpdlib server({"--paper", certificates.For(Paper::Good), "--clear-data"});
  server.Files.Write("a.wav", "a");
  FtpBench bench({}, certificates.Authority());
  const int connected = bench.Connect(server);
  if (connected == 0) {
    EXPECT_TRUE(bench.List().empty());
    bench.WordsFor(bench.Result);
    EXPECT_LT(bench.LengthOf("a.wav"), 0);
    EXPECT_LT(bench.Get("a.wav"), 0);
  } else {
    bench.WordsFor(connected);
  }
  EXPECT_TRUE(bench.LandedNames().empty());
}

TEST(TlsTest, ServerWithoutTlsIsNotSpokenToInPlain) {
  for (const std::string scheme : {"ftps://", "ftpes://"}) {
    SCOPED_TRACE(scheme);
    ScriptedServer server;
    FtpBench bench({.greeting = std::chrono::seconds(1)});
    const int refused = bench.Connect(scheme + server.Address(), "typist", kSecret);
    bench.WordsFor(refused);
    ASSERT_TRUE(bench.Until([&] { return server.Gone() == server.Guests(); }));
    for (const std::string& line : server.Heard()) ExpectNothingSaidInPlain(line);
    EXPECT_TRUE(bench.List().empty());
    EXPECT_EQ(bench.Result, ftp::FtpClient::kNotConnected);
  }
}

TEST(TlsTest, AnswerThatComesBeforeTheProtectionIsNotTakenForOneBehindIt) {
  const Manners manners{.instead = [](Conversation& guest, const Command& command) {
    if (command.verb != "AUTH") return false;
    guest.Say("234 Go on.\r\n230 You are in.\r\n200 Done.\r\n200 Done.\r\n257 \"/\"\r\n");
    guest.AwaitHangUp();
    return true;
  }};
  const ScriptedServer server(manners);
  FtpBench bench({.greeting = std::chrono::seconds(1)});
  bench.WordsFor(bench.Connect("ftpes://" + server.Address(), "typist", kSecret));
  for (const std::string& line : server.Heard()) ExpectNothingSaidInPlain(line);
}

}  // namespace
}  // namespace tavlo::test
