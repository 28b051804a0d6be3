#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <filesystem>
#include <string>
#include <vector>

#include "arrivals/arrivals.h"
#include "stalls/work_on_a_share.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kSeed = 20'040'311;

/// The real program whose drop folder stands on a share that stops answering while files come in,
/// and a document of the local Queue.
struct StalledArrivals : WorkOnAShare {
  explicit StalledArrivals(const std::string& folder)
      : WorkOnAShare("/Lyrane/TavloDeck/Files/" + folder), name(folder) {}

  void SetUp() override {
    fs::create_directories(home.Root() + "/Files/" + name);
    WorkOnAShare::SetUp();
    local = Put("Brown", 60);
  }

  /// Puts whole files into the drop folder.
  void Deliver(std::vector<Delivery> files) {
    deliveries = std::move(files);
    for (const Delivery& delivery : deliveries) {
      WriteFile(Mount().Behind() + "/" + delivery.name, delivery.bytes);
      fs::last_write_time(Mount().Behind() + "/" + delivery.name,
                          fs::file_time_type::clock::now() - std::chrono::hours(1));
    }
  }
  int Left() const { return NamesIn({Mount().Behind()}); }
  /// Beside the local document.
  int Come() const { return NamesIn({home.QueuePath()}) - 1; }

  /// Stops the server once some files have come and others are left, while a rule waits for it.
  void StopInTheMiddle(const std::function<bool()>& isTheMoment = [] { return true; }) {
    // On a fast machine all of them would have come between two feeds.
    Mount().BeFarAway();
    program->Do([this, isTheMoment] {
      life->OnFeed = [this, isTheMoment] {
        if (stopped || Come() < 3 || Left() < 3 || !isTheMoment()) return;
        stopped = true;
        Mount().Stop();
      };
    });
  }
  /// As an event of the loop: inside a breath, while another call waits, the share would count as
  /// one that gives no answer.
  void PressByProgram(forms::Command forms::MainForm::*command) {
    program->Do([&] { program->Loop().Post([this, command] { (Main().*command).Press(); }); });
  }
  std::string RefreshInVain() {
    return BoxInVain([this] { PressByProgram(&forms::MainForm::cmdUpdateFileList); });
  }

  /// The local document is listed, played and put back as ever, though the share is silent.
  void ExpectTheDeckAtWork() {
    ASSERT_TRUE(stopped);
    ASSERT_TRUE(Until([this] { return program->IsReady(); })) << program->Box();
    const int come = Come();
    Play(local);
    EXPECT_TRUE(Until([this] { return Position() > kRate; }));
    EXPECT_TRUE(Playing());
    program->Click("cmdStop");
    EXPECT_FALSE(Playing());
    EXPECT_EQ(Come(), come);
  }
  /// Each file, and the local document, stands there once.
  void ExpectEachOnceIn(const std::vector<std::string>& folders) {
    std::vector<Delivery> all = deliveries;
    const std::string document = ReadFile(home.QueuePath() + "/" + local);
    all.push_back(
        {.folder = DropFolder::Ew2, .name = local, .bytes = document, .arrived = document});
    ExpectEachOnce(all, folders);
  }
  std::vector<std::string> Targets() const {
    return {home.QueuePath(), Mount().Behind(), home.Root() + "/Files/Rescued"};
  }
  /// What gave no answer has one; claims are as old as those of a deck that is gone.
  void RetrieveTheRest() {
    GoOn();
    Refresh();
    Mount().LetAnHourPass();
    Refresh();
    EXPECT_EQ(Left(), 0);
    ExpectEachOnceIn(Targets());
  }

  const std::string name;
  std::string local;
  std::vector<Delivery> deliveries;
  bool stopped = false;
};

struct StalledPass : StalledArrivals {
  StalledPass() : StalledArrivals("eW2Queue") {}

  std::string Refused() {
    StopInTheMiddle();
    return RefreshInVain();
  }
  static constexpr const char* kFault = "Tavlo Deck - Network Fault: The .eW2 file's path ";
};

TEST_F(StalledPass, IsRefusedWithWordsAndTheDeckWorksOnAndTheRestComesOnceTheShareAnswers) {
  Run([&] {
    Deliver(MakeWaves(200, kSeed));
    EXPECT_TRUE(Refused().starts_with(kFault));
    ExpectTheDeckAtWork();
    program->Click("cmdSkip");
    // The next one is refused at once.
    EXPECT_TRUE(program->AnswerBox().starts_with(kFault));
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    RetrieveTheRest();
  });
}

TEST_F(StalledPass, KeepsNobodyFromLeavingAndTheNextStartTakesTheRest) {
  Run([&] {
    Deliver(MakeWaves(200, kSeed));
    EXPECT_TRUE(Refused().starts_with(kFault));
    ASSERT_TRUE(stopped);
  });
  Mount().GoOn();
  ASSERT_TRUE(Until([&] { return Left() > 0; }));
  Mount().LetAnHourPass();
  Run([&] {
    // The last call of the deck that has gone may come after that hour, and renew its claim.
    for (int more = 0; Left() > 0 && more < 2; ++more) {
      Mount().LetAnHourPass();
      Refresh();
    }
    EXPECT_EQ(Left(), 0);
    ExpectEachOnceIn(Targets());
  });
}

struct StalledConversion : StalledArrivals {
  static constexpr const char* kFault = "Tavlo Deck - Network Fault: The .dS2 file's path ";
  static constexpr const char* kNotKnown =
      "Tavlo Deck - Retrieval: It is not known whether the file ";

  StalledConversion() : StalledArrivals("dS2Queue") {}

  /// A wave that a library makes has no name of its own yet.
  bool IsConverting() const {
    for (const auto& entry : fs::directory_iterator(home.QueuePath())) {
      if (entry.path().filename().string().starts_with(".")) return true;
    }
    return false;
  }
};

TEST_F(StalledConversion, IsRefusedWithWordsAndTheDeckWorksOnAndTheRestComesOnceTheShareAnswers) {
  Run([&] {
    Deliver(MakeRecordings(30, kSeed));
    StopInTheMiddle([&] { return IsConverting(); });
    const std::string told = RefreshInVain();
    // The file at hand, or its folder when that was asked for something by the rule itself.
    EXPECT_TRUE(told.starts_with(kNotKnown) || told.starts_with(kFault)) << told;
    ExpectTheDeckAtWork();
    program->Click("cmdSkip");
    EXPECT_TRUE(program->AnswerBox().starts_with(kFault));
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    RetrieveTheRest();
  });
}

struct StalledSendAll : StalledArrivals {
  StalledSendAll() : StalledArrivals("ImportQueue") {}

  void Choose(forms::Command forms::MainForm::*view) {
    PressByProgram(view);
    program->Do([] {});
  }
  void Agree() {
    ASSERT_TRUE(Until([&] { return program->Box().starts_with("Tavlo Deck - Import: "); }));
    program->Do([] { DrivenProgram::OpenBox()->button(QMessageBox::Yes)->click(); });
  }
};

TEST_F(StalledSendAll, IsRefusedWithWordsAndTheDeckWorksOnAndNothingIsLostOrDoubled) {
  Run([&] {
    Deliver(MakeWaves(100, kSeed));
    Choose(&forms::MainForm::mnuViewImport);
    ASSERT_TRUE(program->Until([&] { return Main().cmdSendAllImportFilesToQueue.Enabled.Get(); }));
    StopInTheMiddle();
    const std::string told = BoxInVain([&] {
      PressByProgram(&forms::MainForm::cmdSendAllImportFilesToQueue);
      Agree();
    });
    EXPECT_TRUE(told.starts_with("Tavlo Deck - Network Fault: The import file's path ")) << told;
    EXPECT_NE(Line().find(" of 100 files went to the Queue. "), std::string::npos) << Line();
    EXPECT_NE(Line().find("The others wait here"), std::string::npos) << Line();
    Choose(&forms::MainForm::mnuViewQueue);
    ExpectTheDeckAtWork();
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    GoOn();
    Refresh();
    EXPECT_GT(Left(), 0);
    ExpectEachOnceIn(Targets());
  });
}

}  // namespace
}  // namespace tavlo::test
