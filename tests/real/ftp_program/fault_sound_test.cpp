#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ftp_program/faulty_server.h"
#include "ftp_program/ftp_deck.h"
#include "ftp_program/retrieving_sound.h"
#include "platform/curl/ftp_failures.h"
#include "support/screen.h"
#include "support/takes.h"

namespace tavlo::test {
namespace {

const std::string kPart(40'000, 'a');

/// A server that fails while a document plays.
struct FtpFaultSound : RetrievingSound {
  FtpFaultSound() { clinic.HideFiles(); }

  void StoreClinic() const {
    StoreServer(*home, 0, {.name = "Clinic", .address = clinic.Address()});
  }
  std::string Status() {
    return program->Ask([&] { return Main().eMessage.Value.Get(); });
  }
  /// The server stands still at a moment of the next tick.
  void StandStill(const Fault& fault) {
    clinic.Prepare(fault);
    Tick();
    ASSERT_TRUE(Until([&] { return clinic.StandsStill(); })) << Status();
    AwaitTurns(60);
  }
  /// The deck is at rest again, and would try again.
  void AwaitRest() {
    EXPECT_TRUE(program->Until([&] {
      return !program->Rooms().ftp.channel.Waits() && Main().bConnect.Enabled &&
             Main().bConnect.Caption.Get() == "Connect";
    })) << Status();
  }

  FaultyServer clinic{{{"a.eW2", kPart + kPart}, {"b.eW2", "b"}}};
};

TEST_F(FtpFaultSound, ServerThatIsKilledDoesNotDisturbTheDocumentAndTheNextTickTriesAgain) {
  StoreClinic();
  const std::vector<Fault> faults{{.verb = ""},
                                  {.verb = "PASS"},
                                  {.verb = "NLST", .sent = "a.eW2\r\nb.e"},
                                  {.verb = "SIZE", .argument = "b.eW2"}};
  Run([&] {
    for (const Fault& fault : faults) {
      SCOPED_TRACE("killed at " + fault.verb);
      Retake([&] {
        const double from = recorder.Seconds();
        StandStill(fault);
        clinic.End();
        AwaitRest();
        ExpectUnbroken(HeardSince(from));
      });
      EXPECT_TRUE(Playing());
      EXPECT_EQ(program->Box(), "");
    }
  });
}

TEST_F(FtpFaultSound, KeysAndPedalWorkWhileAServerStandsStill) {
  StoreClinic();
  Run([&] {
    for (const Fault& fault : {Fault{.verb = ""}, Fault{.verb = "NLST", .sent = "a.eW2\r\nb.e"},
                               Fault{.verb = "SIZE", .argument = "a.eW2"}}) {
      SCOPED_TRACE("stands still at " + fault.verb);
      StandStill(fault);
      program->Click("cmdStop");
      EXPECT_TRUE(Until([&] { return !Playing(); }));
      const double stopped = Position();
      EXPECT_TRUE(foot->Report({2}));
      EXPECT_TRUE(Until([&] { return Playing() && Position() > stopped; }));
      EXPECT_TRUE(foot->Report({0}));
      EXPECT_TRUE(Until([&] { return !Playing(); }));
      program->Click("cmdPlay");
      EXPECT_TRUE(Until([&] { return Playing(); }));
      EXPECT_TRUE(program->Ask([&] { return program->Rooms().ftp.channel.Waits(); }))
          << "the server was not waited for meanwhile";
      clinic.End();
      AwaitRest();
    }
  });
}

TEST_F(FtpFaultSound, ServerThatIsKilledInATransferDoesNotDisturbTheDocument) {
  // Nothing is retrieved any more behind it, so each take is a start of its own.
  Retake([&] {
    Prepare();
    StoreClinic();
    Sound heard;
    Run([&] {
      const double from = recorder.Seconds();
      StandStill({.verb = "RETR", .argument = "a.eW2", .sent = kPart});
      clinic.End();
      EXPECT_TRUE(Until([&] {
        return Status() == "Connection lost.  To ftp again please restart the Tavlo Deck";
      })) << Status();
      heard = HeardSince(from);
      EXPECT_TRUE(Playing());
      program->Do([&] {
        EXPECT_EQ(Main().lblNotice.Value.Get(), "a.eW2 was not received whole.");
        EXPECT_FALSE(Main().bConnect.Enabled || Main().mnuViewFtp.Enabled);
      });
    });
    ExpectUnbroken(heard);
  });
}

}  // namespace
}  // namespace tavlo::test
