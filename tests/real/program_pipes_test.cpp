#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/driven_program.h"
#include "support/face.h"
#include "support/screen.h"
#include "support/unread_pipe.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Shows what stands in the place of the face, twice, since the first look may be another's.
void ShowFace(DrivenProgram& program) {
  for (int turn = 0; turn < 2; ++turn) {
    program.Do([&] { program.Rooms().fascia.LoadFasciaPictures(); });
    program.Do([] {});
    EXPECT_TRUE(program.Until([] { return !FaceIsOnItsWay(); }));
  }
}

TEST(ProgramWithPipesInItsRoot, StartsSpeaksShowsAndEndsAsIfTheFilesWereMissing) {
  const Home home;
  home.MakeRoot({{"AudioPromptsFlag", "Y"}, {"FaciaImagePointer", "1"}});
  const std::string face = home.Root() + "/Fascia/face.png";
  QImage picture(400, 100, QImage::Format_RGB32);
  picture.fill(Qt::darkBlue);
  ASSERT_TRUE(picture.save(QString::fromStdString(face)));
  std::vector<std::unique_ptr<UnreadPipe>> pipes;
  DrivenProgram program(home);
  const int status = program.Run([&] {
    ASSERT_TRUE(
        program.Until([&] { return program.Windows().splash.frmInitSplash.Visible.Get(); }));
    pipes.push_back(std::make_unique<UnreadPipe>(home.Root() + "/PedalWatch.so"));
    for (const char* prompt : {"Welcome", "Complete"}) {
      pipes.push_back(
          std::make_unique<UnreadPipe>(home.Root() + "/Prompts/" + std::string(prompt) + ".wav"));
    }
    program.Click("picIcon");
    ASSERT_TRUE(Until([&] { return program.IsReady() || !program.Box().empty(); }));
    EXPECT_EQ(program.AnswerBox().substr(0, 23), "Tavlo Deck - Sound Card");
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    program.Do([&] { program.Rooms().prompts.PlayPrompt("Complete"); });
    ShowFace(program);
    pipes.push_back(std::make_unique<UnreadPipe>(face));
    ShowFace(program);
    fs::remove(face);
    fs::create_symlink("/dev/zero", face);
    ShowFace(program);
    program.Exit();
  });
  EXPECT_EQ(status, 0);
  for (const auto& pipe : pipes) EXPECT_FALSE(pipe->HeldSomebody());
}

TEST(ProgramWithAPipeForItsSettings, SaysSoAndEnds) {
  const Home home;
  home.MakeRoot();
  const UnreadPipe pipe(home.SettingsPath());
  DrivenProgram program(home);
  const int status = program.Run([&] {
    EXPECT_EQ(program.AnswerBox(),
              "Tavlo Deck: The settings database " + home.SettingsPath() + " is no file.");
  });
  EXPECT_EQ(status, 1);
  EXPECT_FALSE(pipe.HeldSomebody());
}

}  // namespace
}  // namespace tavlo::test
