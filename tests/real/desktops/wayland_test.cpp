#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "support/driven_program.h"
#include "support/screen.h"
#include "support/send_signal.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

enum class XWayland { No, Yes };

/// A Wayland desktop without a screen that anybody sees.
class WaylandDesktop {
 public:
  explicit WaylandDesktop(XWayland xwayland) : before_(std::getenv("DISPLAY")) {
    ::setenv("XDG_RUNTIME_DIR", folder_.Path().c_str(), 1);
    compositor_ = ::fork();
    if (compositor_ == 0) {
      ::execlp("weston", "weston", "--backend=headless-backend.so", "--socket=desk", "--no-config",
               "--idle-time=0", "--width=1280", "--height=1024",
               ("--log=" + folder_.Path() + "/log").c_str(),
               xwayland == XWayland::Yes ? "--xwayland" : nullptr, nullptr);
      ::_exit(127);
    }
    ::setenv("WAYLAND_DISPLAY", "desk", 1);
    ::unsetenv("DISPLAY");
    ::unsetenv("QT_QPA_PLATFORM");
    if (xwayland == XWayland::Yes) TakeXServer();
  }
  ~WaylandDesktop() {
    if (SendSignal(compositor_, SIGTERM)) ::waitpid(compositor_, nullptr, 0);
    ::unsetenv("WAYLAND_DISPLAY");
    ::setenv("DISPLAY", before_.c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
  }
  WaylandDesktop(const WaylandDesktop&) = delete;

  bool Answers() const {
    return Until([this] { return std::filesystem::exists(folder_.Path() + "/desk"); });
  }

 private:
  void TakeXServer() {
    std::string display;
    EXPECT_TRUE(Until([&] {
      const std::string said = folder_.Read("log");
      const std::string mark = "xserver listening on display ";
      const auto at = said.find(mark);
      if (at == said.npos || said.find('\n', at) == said.npos) return false;
      display = said.substr(at + mark.size(), said.find('\n', at) - at - mark.size());
      return true;
    })) << folder_.Read("log");
    ::setenv("DISPLAY", display.c_str(), 1);
  }

  const std::string before_;
  TemporaryFolder folder_;
  pid_t compositor_ = -1;
};

/// Ends the splash, which must come, as a click on its sign does.
bool PassSplash(DrivenProgram& program) {
  forms::SplashForm& splash = program.Windows().splash;
  if (!program.Until([&] { return splash.frmInitSplash.Visible.Get(); })) return false;
  program.Do([&] {
    QMetaObject::invokeMethod(
        qApp, [&] { splash.picIcon.Click(); }, Qt::QueuedConnection);
  });
  return true;
}

/// Presses the button of the open box that Return would press; one must come.
void AnswerBox(DrivenProgram& program) {
  ASSERT_TRUE(Until([&] { return !program.Box().empty(); }));
  program.Do([] {
    auto* const box = DrivenProgram::OpenBox();
    if (box) (box->defaultButton() ? box->defaultButton() : box->button(QMessageBox::Ok))->click();
  });
}

TEST(Wayland, LeavesTheStoredPlaceAloneAndOffersNothingThatItCannotDo) {
  const WaylandDesktop desktop(XWayland::No);
  ASSERT_TRUE(desktop.Answers());
  Home home;
  home.MakeRoot({{"PlayerLeft", "1500"}, {"PlayerTop", "2250"}, {"MinimizeMiniPlayerFlag", "Y"}});
  DrivenProgram program(home);
  EXPECT_EQ(program.Run([&] {
    ASSERT_TRUE(PassSplash(program));
    AnswerBox(program);
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    EXPECT_EQ(program.Ask([] { return QGuiApplication::platformName(); }), "wayland");
    program.Do([&] { program.Rooms().mainWindow.EnterMiniPlayer(); });
    const int height = program.Ask([&] { return program.Main().frmMain.Height / 15; });
    EXPECT_TRUE(program.Until([&] {
      for (const QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->objectName() == "frmMain" && window->height() <= height) return true;
      }
      return false;
    }));
    std::this_thread::sleep_for(300ms);
    program.Do([&] {
      program.Rooms().mainWindow.SavePlayerPosition();
      program.Rooms().mainWindow.LeaveMiniPlayer();
    });
    EXPECT_EQ(program.Ask([&] { return program.Main().txtPlayerLeft.Value.Get(); }), "1500");
    EXPECT_EQ(program.Ask([&] { return program.Main().txtPlayerTop.Value.Get(); }), "2250");
    const forms::ConfigurationForm& config = program.Windows().configuration;
    EXPECT_FALSE(program.Ask([&] { return config.chkAlwaysOnTop.Visible.Get(); }));
    EXPECT_FALSE(program.Ask([&] { return config.cmdCenterMiniPlayer.Visible.Get(); }));
    EXPECT_FALSE(program.Ask([&] { return config.chkMinimizeMiniPlayer.Visible.Get(); }));
    program.Do([&] {
      QMetaObject::invokeMethod(
          qApp, [&] { program.Main().mnuExit.Press(); }, Qt::QueuedConnection);
    });
    AnswerBox(program);
  }),
            0);
}

TEST(Wayland, IsWorkedOnThroughXWaylandWhereTheDesktopHasIt) {
  const WaylandDesktop desktop(XWayland::Yes);
  ASSERT_TRUE(desktop.Answers());
  Home home;
  home.MakeRoot({{"PlayerLeft", "1500"}, {"PlayerTop", "2250"}});
  DrivenProgram program(home);
  EXPECT_EQ(program.Run([&] {
    ASSERT_TRUE(PassSplash(program));
    AnswerBox(program);
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    EXPECT_EQ(program.Ask([] { return QGuiApplication::platformName(); }), "xcb");
    const auto frame = [] {
      for (const QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->objectName() == "frmMain") return window->frameGeometry();
      }
      return QRect();
    };
    const int full = program.Ask(frame).height();
    for (int turn = 0; turn < 2; ++turn) {
      program.Do([&] { program.Rooms().mainWindow.EnterMiniPlayer(); });
      EXPECT_TRUE(program.Until([&] {
        return frame().topLeft() == QPoint(100, 150) && frame().height() < full;
      })) << "turn "
          << turn;
      program.Do([&] {
        program.Rooms().mainWindow.SavePlayerPosition();
        program.Rooms().mainWindow.LeaveMiniPlayer();
      });
      EXPECT_TRUE(program.Until([&] { return frame().height() == full; })) << "turn " << turn;
    }
    EXPECT_EQ(program.Ask([&] { return program.Main().txtPlayerLeft.Value.Get(); }), "1500");
    EXPECT_EQ(program.Ask([&] { return program.Main().txtPlayerTop.Value.Get(); }), "2250");
    EXPECT_TRUE(program.Ask(
        [&] { return program.Windows().configuration.chkMinimizeMiniPlayer.Visible.Get(); }));
    program.Do([&] {
      QMetaObject::invokeMethod(
          qApp, [&] { program.Main().mnuExit.Press(); }, Qt::QueuedConnection);
    });
    AnswerBox(program);
  }),
            0);
}

}  // namespace
}  // namespace tavlo::test
