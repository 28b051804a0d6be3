#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "handover/second_start.h"
#include "mini_player/word_processor.h"
#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

/// The deck behind the window of another program, under a real window manager.
struct OpenedFilesUnder : testing::TestWithParam<WindowManager> {
  void SetUp() override {
    if (desktop.LacksManager() && GetParam() != WindowManager::Openbox) {
      GTEST_SKIP() << desktop.Fault();
    }
    ASSERT_EQ(desktop.Fault(), "");
    ASSERT_TRUE(server.Start());
    home.MakeRoot(QuietSettings({{"AlwaysOnTopFlag", "N"}}));
    stick.Write("memo.wav", WaveBytes(Chirp(4000, 8000)));
  }

  bool IsAbove(xcb_window_t upper, xcb_window_t lower) {
    const auto order = screen.Numbers(screen.hands.Root(), "_NET_CLIENT_LIST_STACKING");
    const auto above = std::find(order.begin(), order.end(), upper);
    return above != order.end() && std::find(order.begin(), above, lower) != above;
  }
  bool HasKeyboard(xcb_window_t window) {
    const auto active = screen.Numbers(screen.hands.Root(), "_NET_ACTIVE_WINDOW");
    return !active.empty() && active.front() == window;
  }
  bool Hidden() { return screen.HasState(screen.Deck().id, "_NET_WM_STATE_HIDDEN"); }

  /// A letter is typed, and a file opened meanwhile.
  void OpenBesideALetter(DrivenProgram& program) {
    const WordProcessor word(screen);
    ASSERT_TRUE(word.ComeForward());
    ASSERT_TRUE(Until([&] { return Hidden() || IsAbove(word.Id(), screen.Deck().id); }));
    EXPECT_EQ(SecondStart({"memo.wav"}, stick.Path()), 0);
    EXPECT_TRUE(Until([&] { return !Hidden() && IsAbove(screen.Deck().id, word.Id()); }));
    ++opened;
    EXPECT_TRUE(
        program.Until([&] { return program.Main().listViewInQueue.Rows().size() == opened; }));
    EXPECT_TRUE(Until([&] { return program.IsReady(); }));
    program.Settle();
    // These two give it to whatever comes back.
    if (GetParam() != WindowManager::Openbox && GetParam() != WindowManager::Xfwm4) {
      EXPECT_TRUE(HasKeyboard(word.Id())) << "somebody types there";
    }
    EXPECT_TRUE(IsAbove(screen.Deck().id, word.Id()));
  }

  Desktop desktop{"1280x1024", GetParam()};
  SoundServer server;
  TemporaryFolder stick;
  Home home;
  Screen screen;
  std::size_t opened = 0;
};

TEST_P(OpenedFilesUnder, BringTheDeckToTheFrontAndTakeNoKeyFromALetter) {
  DrivenProgram program(home);
  const int status = program.Run([&] {
    ASSERT_TRUE(program.Begin());
    OpenBesideALetter(program);
    program.Do([&] { program.Loop().Post([&] { program.Main().mnuMinimize.Press(); }); });
    ASSERT_TRUE(Until([&] { return Hidden(); }));
    OpenBesideALetter(program);
    program.Exit();
  });
  EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(Manager, OpenedFilesUnder,
                         testing::Values(WindowManager::Openbox, WindowManager::Mutter,
                                         WindowManager::Kwin, WindowManager::Metacity,
                                         WindowManager::Xfwm4),
                         [](const testing::TestParamInfo<WindowManager>& manager) {
                           return NameOf(manager.param);
                         });

}  // namespace
}  // namespace tavlo::test
