#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <string>

#include "ftp/file_servers.h"
#include "ftp_program/ftp_deck.h"
#include "support/keys.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using forms::FtpFrame;

constexpr int kFiles = 200;
constexpr std::array kEndings{"eW2", "eU2", "dS2", "wav", "mp3", "wma",
                              "avi", "dss", "vox", "txt", "EW2"};

/// Files as recorders and typists make them. Lengths and bytes are drawn; no two are the same.
std::map<std::string, std::string> MixedFiles() {
  std::mt19937 random(14);
  std::map<std::string, std::string> files;
  for (int number = 0; number < kFiles; ++number) {
    const std::string name = (number % 3 == 0 ? "Brown " : "okafor-") + std::to_string(number) +
                             "." + kEndings[static_cast<std::size_t>(number) % kEndings.size()];
    std::string bytes = std::to_string(number) + "\r\n" + std::string(random() % 20'000, '\0');
    for (char& byte : bytes) byte = random() % 5 == 0 ? static_cast<char>(random()) : byte;
    files[name] = bytes;
  }
  return files;
}

std::map<std::string, std::string> EndingIn(const std::map<std::string, std::string>& files,
                                            const std::string& ending) {
  std::map<std::string, std::string> found;
  for (const auto& [name, bytes] : files) {
    if (name.ends_with(ending)) found[name] = bytes;
  }
  return found;
}

/// Those that no queue of its own takes.
std::map<std::string, std::string> Generic(std::map<std::string, std::string> files) {
  std::erase_if(files, [](const auto& file) {
    return file.first.ends_with(".eW2") || file.first.ends_with(".eU2") ||
           file.first.ends_with(".dS2");
  });
  return files;
}

struct FtpProgram : FtpDeck {
  std::string Sorted(const std::string& folder) const { return home.Root() + "/Files/" + folder; }
};

TEST_F(FtpProgram, TwoHundredFilesAreFetchedByHandAndStandInTheirFoldersByteForByte) {
  Pyftpdlib server;
  const auto files = MixedFiles();
  for (const auto& [name, bytes] : files) server.Files.Write(name, bytes);
  StoreServer(home, 0,
              {.name = "Clinic",
               .address = server.Address(),
               .more = {{"FtpDeleteFileCheck", "-1"}, {"FtpParseGenericPointer", "3"}}});
  Run([&] {
    Connect();
    Choose("comboFtpFileTypesToList", 'm');
    List();
    const auto recordings = EndingIn(files, ".mp3").size();
    EXPECT_EQ(Names(&FtpFrame::listFtpList).size(), recordings);
    EXPECT_EQ(CaptionOf(&FtpFrame::frameFtpFilename),
              "Files in list: " + std::to_string(recordings));
    Choose("comboFtpFileTypesToList", keys::kHome);
    List();
    EXPECT_EQ(CaptionOf(&FtpFrame::frameFtpFilename), "Files in list: 200");

    const std::string second = Names(&FtpFrame::listFtpList).at(1);
    program->ClickCell("listFtpList", 1, 0);
    EXPECT_EQ(Names(&FtpFrame::listFtpDownloadList), std::vector<std::string>{second});
    EXPECT_EQ(CaptionOf(&FtpFrame::frameFtpFilename), "Files in list: 199");
    EXPECT_EQ(CaptionOf(&FtpFrame::frameFtpDownloadList), "Files to download: 1");
    program->ClickCell("listFtpDownloadList", 0, 0);
    EXPECT_EQ(Names(&FtpFrame::listFtpDownloadList), std::vector<std::string>{});

    DownloadAll();
    ASSERT_TRUE(Until([&] { return Names(&FtpFrame::listFtpDownloadList).size() < 195; }));
    program->Click("bDownload");
    AwaitStatus("Download halted");
    const auto left = Names(&FtpFrame::listFtpDownloadList);
    EXPECT_LT(left.size(), 195u);
    ASSERT_GT(left.size(), 1u) << "the halt came when all was over";
    EXPECT_EQ(Caption(&FtpFrame::bDownload), "Download");
    EXPECT_TRUE(Until([&] { return FilesIn(server.Files.Path()).size() == left.size(); }))
        << "what was fetched is not deleted, or more than that";
    for (const std::string& name : left) EXPECT_TRUE(FilesIn(server.Files.Path()).contains(name));

    program->Click("bDownload");
    AwaitStatus("Disconnected after download completed");
    ExpectOffersToConnect();
    EXPECT_EQ(CaptionOf(&FtpFrame::frameFtpDownloadList), "Files: 0");
    EXPECT_EQ(FilesIn(server.Files.Path()).size(), 0u);
    EXPECT_EQ(FilesIn(Landed()).size(), 0u);
    EXPECT_TRUE(FilesIn(Sorted("eW2Queue")) == EndingIn(files, ".eW2"));
    EXPECT_TRUE(FilesIn(Sorted("eU2Queue")) == EndingIn(files, ".eU2"));
    EXPECT_TRUE(FilesIn(Sorted("dS2Queue")) == EndingIn(files, ".dS2"));
    EXPECT_TRUE(Unstamped(FilesIn(Sorted("ImportQueue/3"))) == Generic(files));
  });
}

/// A vsftpd in plain, and one that protects all it says and hears, and wants each data connection
/// to belong to the log-in.
struct FtpProgramOnVsftpd : FtpProgram, testing::WithParamInterface<Manner> {};

TEST_P(FtpProgramOnVsftpd, FilesAreListedAndFetchedAndTheServerIsLeft) {
  const Certificates certificates;
  const bool isProtected = GetParam() != Manner::Plain;
  if (isProtected) trust.file = certificates.Authority();
  Vsftpd server(GetParam(), isProtected ? certificates.For(Paper::Good) : "");
  const std::map<std::string, std::string> files{
      {"a.eW2", std::string(300'000, 'a')}, {"b.dS2", "b\r\n"}, {"c c.wav", "c"}};
  for (const auto& [name, bytes] : files) server.Files.Write(name, bytes);
  StoreServer(home, 0, {.name = "Clinic", .address = server.Address(), .user = server.User});
  Run([&] {
    Connect();
    List();
    EXPECT_EQ(Names(&FtpFrame::listFtpList).size(), 3u);
    DownloadAll();
    AwaitStatus("Disconnected after download completed");
    EXPECT_EQ(FilesIn(Sorted("eW2Queue")), EndingIn(files, ".eW2"));
    EXPECT_EQ(FilesIn(Sorted("dS2Queue")), EndingIn(files, ".dS2"));
    EXPECT_EQ(Unstamped(FilesIn(Sorted("ImportQueue/1"))), Generic(files));
    EXPECT_EQ(FilesIn(server.Files.Path()), files) << "nothing was to be deleted";

    Connect();
    Press("bConnect");
    AwaitStatus("Disconnected");
    ExpectOffersToConnect();
  });
  EXPECT_EQ(server.Heard().find(server.Password) == std::string::npos, isProtected);
}

INSTANTIATE_TEST_SUITE_P(Manners, FtpProgramOnVsftpd,
                         testing::Values(Manner::Plain, Manner::ExplicitWithReuse),
                         [](const auto& manner) {
                           return manner.param == Manner::Plain ? "Plain" : "ProtectedWithReuse";
                         });

}  // namespace
}  // namespace tavlo::test
