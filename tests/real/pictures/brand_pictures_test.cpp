#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "album.h"
#include "each_face.h"
#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

struct Branded {
  const char* stored;  ///< In the settings.
  const char* percent;
  const char* factor;
  const char* screen;
};

class PicturesOfABrand : public testing::TestWithParam<Branded> {};

/// The logo on each face, beside a line of one's own that is too long for it, and in the
/// mini-player.
void TakeBrand(DrivenProgram& program, Album&& album) {
  forms::MainForm& main = program.Main();
  ASSERT_TRUE(program.Begin());
  program.AnswerBox();
  ASSERT_TRUE(Until([&] { return program.IsReady(); }));
  album.Take("queue");
  EachFace(program, [&](const std::string& name) { album.TakeLight(name); });
  program.Do([&] {
    main.lblCustomDisplay.Value =
        "The transcription pool of the third floor, ward seven  and a second line that is long " +
        std::string(60, 'W');
  });
  album.TakeLight("long-line");
  program.ClickRow(0);
  program.Click("cmdPlay");
  ASSERT_TRUE(program.Until([&] { return !main.frameFiles.Visible; }));
  album.TakeLight("mini-player");
  program.Click("cmdSkip");
  ASSERT_TRUE(Until([&] { return program.IsReady(); }));
}

TEST_P(PicturesOfABrand, ShowItsLogoLegibleAndWholeOnEachFace) {
  const auto [stored, percent, factor, screen] = GetParam();
  const Desktop desktop(screen);
  ASSERT_EQ(desktop.Fault(), "");
  ::setenv("QT_SCALE_FACTOR", factor, 1);
  SoundServer::HideServers();
  const Home home;
  home.MakeRoot({{"AutoPreview", "10"}, {"OEMLogo", stored}});
  home.AddToQueue("0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 P_.wav",
                  WaveBytes(Chirp(8000 * 90, 8000)));
  std::filesystem::copy(TAVLO_FASCIA, home.Root() + "/Fascia",
                        std::filesystem::copy_options::overwrite_existing);
  DrivenProgram program(home);
  const int status = program.Run([&] {
    TakeBrand(program, Album(program, std::string(stored) + "-" + percent));
    program.Exit();
  });
  EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(EachScale, PicturesOfABrand,
                         testing::Values(Branded{"KRT", "100", "1", "1280x1024"},
                                         Branded{"KRT", "150", "1.5", "1920x1536"},
                                         Branded{"KRT", "200", "2", "2560x2048"},
                                         Branded{"SorelTek", "100", "1", "1280x1024"},
                                         Branded{"SorelTek", "150", "1.5", "1920x1536"},
                                         Branded{"SorelTek", "200", "2", "2560x2048"}),
                         [](const auto& test) {
                           return std::string(test.param.stored) + "At" + test.param.percent +
                                  "Percent";
                         });

}  // namespace
}  // namespace tavlo::test
