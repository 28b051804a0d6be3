#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/driven_program.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

/// Starts the program, which must refuse in these words.
void ExpectRefusal(const Home& home, const std::string& words) {
  DrivenProgram program(home);
  const int status = program.Run([&] { EXPECT_EQ(program.AnswerBox(), "Tavlo Deck: " + words); });
  EXPECT_EQ(status, 1);
}

constexpr const char* kRemedy =
    " Put a copy of it back, or rename its folder to begin with a new installation.";

TEST(ProgramThatCannotStart, NamesSettingsThatAreMissing) {
  const Home home;
  home.MakeRoot();
  fs::remove(home.SettingsPath());
  ExpectRefusal(home,
                "The settings database " + home.SettingsPath() + " does not exist." + kRemedy);
}

TEST(ProgramThatCannotStart, NamesSettingsThatAreDamaged) {
  const Home home;
  home.MakeRoot();
  std::ofstream(home.SettingsPath()) << std::string(5000, 'x');
  ExpectRefusal(home, "The settings database " + home.SettingsPath() +
                          " is damaged (it is no database)." + kRemedy);
}

TEST(ProgramThatCannotStart, NamesWhatStandsInThePlaceOfItsFolder) {
  const Home home;
  std::ofstream(home.Path() + "/Lyrane") << "a note of the user's";
  ExpectRefusal(home, "Tavlo Deck needs its work folder " + home.Root() + ".\n\n" + home.Path() +
                          "/Lyrane can not be made: something of that name stands there already.");
}

TEST(ProgramWithoutSound, SaysSoAndTheQueueWorks) {
  const Home home;
  home.MakeRoot({{"AutoPreview", "0"}});
  home.AddToQueue(DocumentName("Brown", 1), WaveBytes(Chirp(8000, 8000)));
  home.AddToQueue(DocumentName("Okafor", 2), WaveBytes(Chirp(16000, 8000)));
  DrivenProgram program(home);
  const int status = program.Run([&] {
    ASSERT_TRUE(program.Begin());
    EXPECT_EQ(program.AnswerBox(), "Tavlo Deck - Sound Card: A sound card can not be found");
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    EXPECT_EQ(program.Ask([&] { return program.Main().listViewInQueue.Rows().size(); }), 2u);
    program.ClickRow(1);
    EXPECT_TRUE(
        program.Until([&] { return program.Main().StatusBar1.Panels.Get()[2] == "Okafor"; }));
    EXPECT_TRUE(program.Until([&] { return program.Main().cmdPlay.Enabled.Get(); }));
    EXPECT_EQ(program.Box(), "");

    home.AddToQueue(DocumentName("Haddad", 3), WaveBytes(Chirp(800, 8000)));
    program.Keys({keys::kF5});
    EXPECT_TRUE(program.Until([&] { return program.Main().listViewInQueue.Rows().size() == 3; }));
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    program.Exit();
  });
  EXPECT_EQ(status, 0);
}

TEST(ProgramWithoutSound, StaysSilentAtAPreviewAndAsksForNothing) {
  const Home home;
  home.MakeRoot({{"AutoPreview", "5"}});
  home.AddToQueue(DocumentName("Brown"), WaveBytes(Chirp(8000, 8000)));
  DrivenProgram program(home);
  const int status = program.Run([&] {
    ASSERT_TRUE(program.Begin());
    program.AnswerBox();
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    program.ClickRow(0);
    ASSERT_TRUE(program.Until([&] { return program.Main().cmdPlay.Enabled.Get(); }));
    EXPECT_FALSE(program.Ask([&] { return program.Windows().main.DeckRuns.Get(); }));
    EXPECT_TRUE(program.Ask([&] { return program.Main().frmMain.Visible.Get(); }));
    program.Exit();
  });
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace tavlo::test
