#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "reports/noted_start.h"
#include "support/driven_program.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/stalling_mount.h"

namespace tavlo::test {
namespace {

using Lines = std::vector<std::string>;

TEST(StalledWordProcessor, GivesWayToTheDesktopAndDoesNotStartWhenItsShareAnswersAgain) {
  const TemporaryFolder behind;
  const TemporaryFolder point;
  const TemporaryFolder bin;
  const NotedProgram writer(behind, "writer");
  const NotedProgram opener(bin, "xdg-open");
  const StallingMount share(behind.Path(), point.Path());
  if (!share.Fault().empty()) GTEST_SKIP() << share.Fault();
  ::setenv("PATH", bin.Path().c_str(), 1);
  const Home home;
  home.MakeRoot(QuietSettings({{"WordProcessorPath", point / "writer"}}));
  home.AddToQueue(DocumentName("Brown"), WaveBytes(Chirp(8000, 8000)));

  DrivenProgram program(home);
  const int status = program.Run([&] {
    ASSERT_TRUE(program.Begin());
    program.AnswerBox();  // There is no sound card.
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    share.Stop();
    program.Keys({keys::kAlt, 'r'});
    EXPECT_EQ(opener.Noted(),
              (Lines{"xdg-open", home.Root() + "/Reports/Tavlo_Deck_Queue_Report.txt"}));
    EXPECT_EQ(program.Box(), "");
    share.GoOn();
    program.Exit();
  });
  EXPECT_EQ(status, 0);
  EXPECT_FALSE(writer.HasStarted());
}

}  // namespace
}  // namespace tavlo::test
