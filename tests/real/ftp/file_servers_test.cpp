#include "ftp/file_servers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "ftp/ftp_bench.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

struct Kind {
  const char* name;
  Manner manner;
  std::unique_ptr<FileServer> (*make)(const Kind& kind, const Certificates* certificates);
};

std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.name; }

std::unique_ptr<FileServer> MakeVsftpd(const Kind& kind, const Certificates* certificates) {
  const std::string paper = certificates != nullptr ? certificates->For(Paper::Good) : "";
  return std::make_unique<Vsftpd>(kind.manner, paper);
}

std::unique_ptr<FileServer> MakePyftpdlib(const Kind&, const Certificates* certificates) {
  if (certificates == nullptr) return std::make_unique<Pyftpdlib>();
  return std::make_unique<Pyftpdlib>(
      std::vector<std::string>{"--paper", certificates->For(Paper::Good)});
}

constexpr Kind kPlainKinds[] = {
    {"Pyftpdlib", Manner::Plain, MakePyftpdlib},
    {"Vsftpd", Manner::Plain, MakeVsftpd},
};

constexpr Kind kProtectedKinds[] = {
    {"PyftpdlibExplicit", Manner::Explicit, MakePyftpdlib},
    {"VsftpdImplicit", Manner::Implicit, MakeVsftpd},
    {"VsftpdExplicit", Manner::Explicit, MakeVsftpd},
    {"VsftpdExplicitWithReuse", Manner::ExplicitWithReuse, MakeVsftpd},
};

/// A server of the kind, and a client that trusts its papers.
struct FileServersTest : testing::TestWithParam<Kind> {
  FileServersTest() {
    if (GetParam().manner != Manner::Plain) certificates.emplace();
    server = GetParam().make(GetParam(), certificates ? &*certificates : nullptr);
    bench =
        std::make_unique<FtpBench>(ClientLimits(), certificates ? certificates->Authority() : "");
  }

  bool OnServer(const std::string& name) const { return fs::exists(server->Files / name); }

  std::optional<Certificates> certificates;
  std::unique_ptr<FileServer> server;
  std::unique_ptr<FtpBench> bench;
};

/// Files as they come from recorders and typists, and names that say something to a shell, to a
/// URL or to a server. Lengths and bytes are drawn, with line breaks among them.
std::map<std::string, std::string> MixedFiles(int count) {
  std::mt19937 random(200);
  const std::vector<std::string> endings{"eU2", "eW2", "dS2", "wav", "mp3", "wma",
                                         "avi", "dss", "vox", "txt", "WAV", "EU2"};
  std::vector<std::string> names{"a b.wav",   "100%25.wav",       "1;type=A.wav", "#2.eU2",
                                 "~.mp3",     "what?.dss",        "a&b=c.vox",    "it's.wav",
                                 "\"q\".wav", "a\\b.wav",         "$HOME.wav",    "B\xc3\xbcro.dS2",
                                 "{a,b}.wav", "3 9 2004 14 5 12", "a+b.wav",      "(1) copy.wav",
                                 "-l.wav",    "a@b:c.wav",        "trailing.",    "no ending"};
  while (static_cast<int>(names.size()) < count) {
    names.push_back("doc" + std::to_string(names.size()) + "." +
                    endings[names.size() % endings.size()]);
  }
  std::map<std::string, std::string> files;
  for (const std::string& name : names) {
    std::string bytes(files.empty() ? 0 : random() % 20'000, ' ');
    for (char& byte : bytes) byte = random() % 9 == 0 ? "\r\n\0\xff"[random() % 4] : 'x';
    files[name] = bytes;
  }
  files["large.wav"] = std::string(3'000'000, '\n');
  return files;
}

TEST_P(FileServersTest, TwoHundredFilesOfMixedKindsComeByteForByte) {
  const auto files = MixedFiles(199);
  for (const auto& [name, bytes] : files) server->Files.Write(name, bytes);
  ASSERT_EQ(files.size(), 200U);
  ASSERT_EQ(bench->Connect(*server), 0);
  const std::vector<std::string> names = bench->List();
  EXPECT_EQ(names.size(), files.size());
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(files.contains(name));
    const std::string& bytes = files.at(name);
    ASSERT_EQ(bench->LengthOf(name), static_cast<std::int64_t>(bytes.size()));
    ASSERT_EQ(bench->Get(name), 0);
    ASSERT_TRUE(bench->Landed(name) == bytes);
    ASSERT_EQ(bench->Client().fceGetInteger(ftp::FtpClient::kBytesMoved),
              static_cast<std::int64_t>(bytes.size()));
  }
  EXPECT_EQ(bench->LandedNames().size(), files.size());
}

TEST_P(FileServersTest, FileIsFetchedWithTheClientsOwnDataPort) {
  server->Files.Write("a.wav", "one\r\ntwo\n");
  ASSERT_EQ(bench->Connect(*server), 0);
  bench->Client().fceSetInteger(ftp::FtpClient::kPassive, 0);
  EXPECT_EQ(bench->List(), std::vector<std::string>{"a.wav"});
  ASSERT_EQ(bench->Get("a.wav"), 0);
  EXPECT_EQ(bench->Landed("a.wav"), "one\r\ntwo\n");
}

TEST_P(FileServersTest, WrongPasswordIsRefusedInWords) {
  const int refused = bench->Connect(server->Address(), server->User, "wrong-Ostrich9");
  EXPECT_NE(bench->WordsFor(refused), "");
  EXPECT_TRUE(bench->List().empty());
  EXPECT_EQ(bench->Result, ftp::FtpClient::kNotConnected);
  EXPECT_EQ(bench->Connect(*server), 0) << "the right one is not taken behind it";
}

TEST_P(FileServersTest, FileIsDeletedOnTheServerAndNoOther) {
  for (const std::string name : {"a.wav", "b b.wav", "c.wav"}) server->Files.Write(name, name);
  ASSERT_EQ(bench->Connect(*server), 0);
  ASSERT_EQ(bench->Get("a.wav"), 0);
  bench->Client().fceDelFile("a.wav");
  ASSERT_EQ(bench->Get("b b.wav"), 0);
  bench->Client().fceDelFile("b b.wav");
  bench->Client().fceDelFile("not there.wav");
  EXPECT_TRUE(bench->Until([&] { return !OnServer("a.wav") && !OnServer("b b.wav"); }));
  EXPECT_EQ(bench->List(), std::vector<std::string>{"c.wav"});
  ASSERT_EQ(bench->Get("c.wav"), 0);
  EXPECT_TRUE(OnServer("c.wav"));
  EXPECT_EQ(bench->LandedNames(), (std::vector<std::string>{"a.wav", "b b.wav", "c.wav"}));
}

TEST_P(FileServersTest, ServerThatIsKilledBetweenTwoFilesEndsTheConnection) {
  server->Files.Write("a.wav", "a");
  server->Files.Write("b.wav", "b");
  ASSERT_EQ(bench->Connect(*server), 0);
  ASSERT_EQ(bench->Get("a.wav"), 0);
  server->Kill();
  bench->WordsFor(bench->Get("b.wav"));
  EXPECT_LT(bench->LengthOf("b.wav"), 0);
  EXPECT_TRUE(bench->List().empty());
  EXPECT_LT(bench->Result, 0);
  EXPECT_EQ(bench->LandedNames(), std::vector<std::string>{"a.wav"});
  bench->WordsFor(bench->Connect(*server));
}

INSTANTIATE_TEST_SUITE_P(InPlain, FileServersTest, testing::ValuesIn(kPlainKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });
INSTANTIATE_TEST_SUITE_P(Protected, FileServersTest, testing::ValuesIn(kProtectedKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

using PlainServersTest = FileServersTest;

TEST_P(PlainServersTest, MissingDirectoryIsRefusedInWords) {
  fs::create_directory(server->Files / "in box");
  server->Files.Write("in box/a.wav", "a");
  bench->WordsFor(bench->Connect(*server, "out box"));
  ASSERT_EQ(bench->Connect(*server, "in box"), 0);
  EXPECT_EQ(bench->List(), std::vector<std::string>{"a.wav"});
  ASSERT_EQ(bench->Get("a.wav"), 0);
  EXPECT_EQ(bench->Landed("a.wav"), "a");
}

TEST_P(PlainServersTest, EmptyDirectoryHasNoNames) {
  ASSERT_EQ(bench->Connect(*server), 0);
  EXPECT_TRUE(bench->List().empty());
  EXPECT_EQ(bench->Result, 0);
  server->Files.Write("a.wav", "a");
  EXPECT_EQ(bench->List(), std::vector<std::string>{"a.wav"});
}

TEST_P(PlainServersTest, FileThatIsNotThereHasNoLengthAndLandsNowhere) {
  server->Files.Write("a.wav", "a");
  ASSERT_EQ(bench->Connect(*server), 0);
  EXPECT_LE(bench->LengthOf("b.wav"), 0);
  bench->WordsFor(bench->Get("b.wav"));
  EXPECT_TRUE(bench->LandedNames().empty());
}

TEST_P(PlainServersTest, LongListingIsCutAndTheChannelGoesOn) {
  for (int i = 0; i < 2'000; ++i) server->Files.Write("document " + std::to_string(10'000 + i), "");
  ASSERT_EQ(bench->Connect(*server), 0);
  EXPECT_EQ(bench->List().size(), kListing / std::string("document 10000\r\n").size());
  EXPECT_EQ(bench->Result, static_cast<int>(kListing));
  EXPECT_EQ(bench->LengthOf("document 11999"), 0);
  EXPECT_EQ(bench->Get("document 11999"), 0);
}

TEST_P(PlainServersTest, PassiveModeIsWhatDecidesWhoseDataPortIsTaken) {
  server->Files.Write("a.wav", "a");
  ASSERT_EQ(bench->Connect(*server), 0);
  ASSERT_EQ(bench->Get("a.wav", "passive"), 0);
  const std::string passive = server->Heard();
  EXPECT_TRUE(passive.find("PASV\r\n") != passive.npos || passive.find("EPSV\r\n") != passive.npos);
  EXPECT_EQ(passive.find("PORT "), passive.npos);
  EXPECT_EQ(passive.find("EPRT "), passive.npos);
  bench->Client().fceSetInteger(ftp::FtpClient::kPassive, 0);
  ASSERT_EQ(bench->Get("a.wav", "active"), 0);
  const std::string active = server->Heard().substr(passive.size());
  EXPECT_TRUE(active.find("PORT ") != active.npos || active.find("EPRT ") != active.npos);
  EXPECT_EQ(active.find("PASV"), active.npos);
  EXPECT_EQ(active.find("EPSV"), active.npos);
}

INSTANTIATE_TEST_SUITE_P(InPlain, PlainServersTest, testing::ValuesIn(kPlainKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace tavlo::test
