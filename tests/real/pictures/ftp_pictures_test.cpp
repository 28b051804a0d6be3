#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>
#include <string>
#include <vector>

#include "album.h"
#include "ftp_view/ftp_states.h"
#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

struct FtpScreen {
  const char* name;
  const char* factor;
  const char* pixels;
  int letters;  ///< Points, 0 for the desktop's own.
};

class FtpPictures : public testing::TestWithParam<FtpScreen> {
 protected:
  FtpPictures() : desktop_(GetParam().pixels) {
    EXPECT_EQ(desktop_.Fault(), "");
    ::setenv("QT_SCALE_FACTOR", GetParam().factor, 1);
    EXPECT_TRUE(server_.Start());
    home.MakeRoot({});
  }

  /// Opens the view as a hand does.
  static void Open(DrivenProgram& program) {
    ASSERT_TRUE(program.Begin());
    if (GetParam().letters > 0) {
      program.Do([] {
        QFont huge = QApplication::font();
        huge.setPointSize(GetParam().letters);
        QApplication::setFont(huge);
      });
    }
    forms::MainForm& form = program.Main();
    program.Do([&] { form.mnuViewFtp.Press(forms::By::Hand); });
    ASSERT_TRUE(program.Until([&] { return form.frameFtp.Visible && form.mnuView.Enabled; }));
  }
  static std::vector<std::string> ThousandNames() {
    std::vector<std::string> names;
    for (int i = 0; i < 1000; ++i) names.push_back("dictation_" + std::to_string(i) + ".dS2");
    return names;
  }

  Home home;

 private:
  Desktop desktop_;
  SoundServer server_;
};

TEST_P(FtpPictures, AreLegibleAndWholeInEveryState) {
  DrivenProgram program(home);
  const int status = program.Run([&] {
    Album album(program, std::string("ftp-") + GetParam().name);
    Open(program);
    FtpStates states(program.Main());
    const auto take = [&](const char* name, const std::function<void()>& enter) {
      program.Do(enter);
      album.Take(name);
    };
    take("idle", [&] { states.Idle(); });
    take("connecting", [&] { states.Connecting(); });
    take("connected", [&] { states.Connected(); });
    take("listed", [&] { states.Listed(FtpStates::UsualNames()); });
    take("chosen", [&] { states.Chosen(3); });
    take("downloading", [&] { states.Downloading(" 1204224 bytes  52%"); });
    take("halting", [&] { states.Halting(); });
    take("connection-lost", [&] { states.ConnectionLost(); });
    take("sorting", [&] { states.Sorting(); });
    take("troublesome-names", [&] {
      states.Idle();
      states.Listed(FtpStates::TroublesomeNames());
    });
    take("downloading-a-long-name", [&] {
      states.Chosen(5);
      states.Downloading(" 2147483647 bytes");
    });
    take("a-thousand-names", [&] {
      states.Idle();
      states.Listed(ThousandNames());
    });
    take("all-of-a-thousand", [&] { states.Chosen(1000); });
    program.Do([&] { states.Idle(); });
    program.Exit();
  });
  EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(OnEachScreen, FtpPictures,
                         testing::Values(FtpScreen{"100Percent", "1", "1280x1024", 0},
                                         FtpScreen{"150Percent", "1.5", "1920x1536", 0},
                                         FtpScreen{"200Percent", "2", "2560x2048", 0},
                                         FtpScreen{"1024x768", "1", "1024x768", 0},
                                         FtpScreen{"HugeFont", "1", "1280x1024", 24},
                                         FtpScreen{"HugeFontOnASmallScreen", "1", "1024x768", 24}),
                         [](const auto& screen) { return std::string(screen.param.name); });

}  // namespace
}  // namespace tavlo::test
