#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "ftp/file_servers.h"
#include "ftp_program/faulty_server.h"
#include "ftp_program/ftp_deck.h"
#include "platform/curl/ftp_failures.h"
#include "support/keys.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using forms::FtpFrame;
using Files = std::map<std::string, std::string>;
using FileNames = std::vector<std::string>;

std::string Words(int failure) { return std::string(platform::WordsFor(failure)); }

/// What is asked of a server in vain, by hand in the Ftp view.
struct FtpProgramFaults : FtpDeck {
  const std::string part = std::string(40'000, 'a');
  FaultyServer server{{{"a.eW2", part + part}, {"b.eW2", "b"}}};

  void SetUp() override { StoreServer(home, 0, {.name = "Clinic", .address = server.Address()}); }

  /// Waits until the server stands still, and until the window has gone on for a while
  /// nevertheless.
  void AwaitStandstill() {
    ASSERT_TRUE(Until([&] { return server.StandsStill(); }));
    AwaitTurns();
  }
  /// Nothing of the fault is left: a new log-in lists and fetches.
  void ExpectWorksAgain() {
    Connect();
    List();
    EXPECT_EQ(Names(&FtpFrame::listFtpList), (FileNames{"a.eW2", "b.eW2"}));
    DownloadAll();
    AwaitStatus("Disconnected after download completed");
    EXPECT_EQ(FilesIn(home.Root() + "/Files/eW2Queue"),
              (Files{{"a.eW2", part + part}, {"b.eW2", "b"}}));
  }
  /// By the sort behind the transfer, or by the next refresh where the transfer, which is given up
  /// but not over, still has the file open at that time. A refresh also carries it on from there.
  void ExpectPartIsSorted() {
    EXPECT_TRUE(Until([&] {
      if (FilesIn(Landed()).empty()) return true;
      AwaitTurns();
      program->Do([&] {
        if (Main().cmdUpdateFileList.Enabled) Main().cmdUpdateFileList.Press(forms::By::Program);
      });
      return false;
    }));
    const Files waiting = FilesIn(home.Root() + "/Files/eW2Queue");
    for (const auto& [name, contents] : waiting) EXPECT_EQ(contents, part) << name;
    EXPECT_EQ(waiting.size() + FilesIn(home.QueuePath()).size(), 1U);
  }
  void ExpectPartIsTold() {
    EXPECT_TRUE(Until([&] { return QuietLine() == "a.eW2 was not received whole."; }))
        << QuietLine();
  }
  /// The view is of no use until the next start.
  void ExpectDead() {
    AwaitStatus("Connection lost.  To ftp again please restart the Tavlo Deck");
    program->Do([&] {
      EXPECT_EQ(Main().bConnect.Caption.Get(), "Connect");
      EXPECT_EQ(Main().bDownload.Caption.Get(), "Download");
      EXPECT_FALSE(Main().bConnect.Enabled || Main().bDownload.Enabled);
      EXPECT_FALSE(Main().mnuViewFtp.Enabled);
      EXPECT_TRUE(Main().mnuFile.Enabled && Main().mnuView.Enabled);
    });
  }
};

TEST_F(FtpProgramFaults, ServerThatIsKilledInTheListingCanBeLoggedInToAgain) {
  Run([&] {
    Connect();
    server.Prepare({.verb = "NLST", .sent = "a.eW2\r\nb.e"});
    program->Click("bList");
    AwaitStandstill();
    server.End();
    AwaitStatus(Words(platform::kConnectionLost));
    ExpectOffersToConnect();
    EXPECT_EQ(Names(&FtpFrame::listFtpList), FileNames{});
    ExpectWorksAgain();
  });
}

TEST_F(FtpProgramFaults, ServerThatHangsUpOnAnIdleGuestIsFoundGoneAtTheNextCommand) {
  Run([&] {
    Connect();
    server.Prepare({.verb = "NLST", .isIdle = true});
    List();
    server.End();
    ASSERT_TRUE(Until([&] { return server.Served().Gone() == 1; }));
    AwaitTurns();
    EXPECT_EQ(Caption(&FtpFrame::bConnect), "Disconnect");
    Press("bList");
    AwaitStatus(Words(platform::kConnectionLost));
    ExpectOffersToConnect();
    ExpectWorksAgain();
  });
}

TEST_F(FtpProgramFaults, ServerThatIsKilledBetweenTwoFilesEndsTheRunAndTheFirstOneIsSortedLater) {
  Run([&] {
    Connect();
    List();
    server.Prepare({.verb = "SIZE", .argument = "b.eW2"});
    DownloadAll();
    AwaitStandstill();
    EXPECT_EQ(Names(&FtpFrame::listFtpDownloadList), FileNames{"b.eW2"});
    server.End();
    AwaitStatus(Words(platform::kConnectionLost));
    ExpectOffersToConnect();
    EXPECT_EQ(Caption(&FtpFrame::bDownload), "Halt");
    EXPECT_EQ(FilesIn(Landed()), (Files{{"a.eW2", part + part}}));
    Connect();
    EXPECT_EQ(Caption(&FtpFrame::bDownload), "Download");
    Press("bConnect");
    AwaitStatus("Disconnected");
    EXPECT_EQ(FilesIn(home.Root() + "/Files/eW2Queue"), (Files{{"a.eW2", part + part}}));
  });
}

TEST_F(FtpProgramFaults, ServerThatIsKilledInATransferLeavesThePartAndTheViewDead) {
  Run([&] {
    Connect();
    List();
    server.Prepare({.verb = "RETR", .argument = "a.eW2", .sent = part});
    DownloadAll();
    AwaitStandstill();
    EXPECT_TRUE(Until([&] { return FilesIn(Landed())["a.eW2"] == part; }));
    server.End();
    ExpectDead();
    ExpectPartIsTold();
    ExpectPartIsSorted();
  });
}

TEST_F(FtpProgramFaults, ServerThatDoesNotGreetIsGivenUp) {
  Run([&] {
    server.Prepare({.verb = ""});
    program->Click("bConnect");
    AwaitStandstill();
    EXPECT_EQ(Caption(&FtpFrame::bConnect), "Disconnect");
    EXPECT_FALSE(Enabled(&FtpFrame::bConnect));
    AwaitStatus(Words(platform::kNoGreeting));
    ExpectOffersToConnect();
    EXPECT_EQ(server.Served().CountHeard(""), 0) << "somebody spoke before he was greeted";
    ExpectWorksAgain();
  });
}

TEST_F(FtpProgramFaults, ServerThatFallsSilentInATransferIsGivenUpAndThePartStays) {
  Run([&] {
    Connect();
    List();
    server.Prepare({.verb = "RETR", .argument = "a.eW2", .sent = part});
    DownloadAll();
    AwaitStandstill();
    ExpectDead();
    ExpectPartIsTold();
    ExpectPartIsSorted();
  });
}

struct FtpProgramRefused : FtpDeck {};

TEST_F(FtpProgramRefused, WrongPasswordAndAMissingDirectoryAreToldAndTheDeckOffersToTryAgain) {
  const Pyftpdlib server;
  StoreServer(home, 0, {.name = "Wrong", .address = server.Address(), .password = "no-Ostrich9"});
  StoreServer(home, 1,
              {.name = "Missing",
               .address = server.Address(),
               .more = {{"FtpServerDir", "no such directory"}}});
  StoreServer(home, 2, {.name = "Clinic", .address = server.Address()});
  Run([&] {
    Press("bConnect");
    AwaitStatus(Words(platform::kLogInRefused));
    ExpectOffersToConnect();
    Choose("comboFtpServerNames", keys::kDown);
    Press("bConnect");
    AwaitStatus(Words(platform::kNoDirectory));
    ExpectOffersToConnect();
    Choose("comboFtpServerNames", keys::kDown);
    Connect();
    Press("bConnect");
    AwaitStatus("Disconnected");
  });
}

TEST_F(FtpProgramRefused, CertificateThatTheSystemDoesNotTrustIsToldAndNoPasswordIsSent) {
  const Certificates certificates;
  const Vsftpd server(Manner::Explicit, certificates.For(Paper::Good));
  StoreServer(home, 0, {.name = "Clinic", .address = server.Address(), .user = server.User});
  Run([&] {
    Press("bConnect");
    AwaitStatus(Words(platform::kCertificateForeign));
    ExpectOffersToConnect();
  });
  EXPECT_TRUE(server.Heard().starts_with("AUTH TLS\r\n")) << server.Heard();
  EXPECT_EQ(server.Heard().find("USER"), std::string::npos);
  EXPECT_EQ(server.Heard().find(server.Password), std::string::npos);
}

TEST_F(FtpProgramRefused, ExitWhileConnectedIsRefusedWithItsBox) {
  const Pyftpdlib server;
  server.Files.Write("a.eW2", "a");
  StoreServer(home, 0, {.name = "Clinic", .address = server.Address()});
  Run([&] {
    Connect();
    Screen screen;
    screen.hands.PressClose(screen.Deck().id);
    EXPECT_EQ(program->AnswerBox(),
              "Tavlo Deck - Exit: The Ftp must be disconnected before you may exit the Tavlo Deck");
    AwaitTurns();
    EXPECT_EQ(Caption(&FtpFrame::bConnect), "Disconnect");
    List();
    Press("bConnect");
    AwaitStatus("Disconnected");
  });
}

}  // namespace
}  // namespace tavlo::test
