#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <cstdlib>
#include <string>

#include "album.h"
#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

/// The number of a port that no machine has.
constexpr const char* kNoPort = "700";

struct SettingsScreen {
  const char* name;
  const char* factor;
  const char* pixels;
  int letters;  ///< Points, 0 for the desktop's own.
  bool whole;   ///< The page has room for all of it.
};

class SettingsPictures : public testing::TestWithParam<SettingsScreen> {
 protected:
  SettingsPictures() : desktop_(GetParam().pixels) {
    EXPECT_EQ(desktop_.Fault(), "");
    ::setenv("QT_SCALE_FACTOR", GetParam().factor, 1);
    EXPECT_TRUE(server_.Start());
    home.MakeRoot({{"WorkWaitingAlertMode", "1"},
                   {"DeleteCompletedFiles", "14"},
                   {"ViewDelay", "2"},
                   {"NewDictationAlertInterval", "1310"},
                   {"SerialFootPedalComPort", kNoPort}});
  }

  void Open(DrivenProgram& program) {
    ASSERT_TRUE(program.Begin());
    if (GetParam().letters > 0) {
      program.Do([] {
        QFont huge = QApplication::font();
        huge.setPointSize(GetParam().letters);
        QApplication::setFont(huge);
      });
    }
    program.Do([&] { program.Main().mnuConfiguration.Press(forms::By::Hand); });
    ASSERT_TRUE(program.Until(
        [&] { return program.Windows().configuration.frmConfiguration.Visible.Get(); }));
  }
  /// The area that the page is scrolled in; null when there is none.
  static const QScrollArea* Area() {
    for (const QWidget* const widget : QApplication::allWidgets()) {
      const auto* const area = qobject_cast<const QScrollArea*>(widget);
      if (area && area->isVisible()) return area;
    }
    return nullptr;
  }
  /// Whether the page must be scrolled to the sides, and up and down.
  static QSize Scrolls() {
    const QScrollArea* const area = Area();
    if (!area) return {-1, -1};
    return {area->horizontalScrollBar()->isVisible(), area->verticalScrollBar()->isVisible()};
  }
  /// The page fits the window, or is scrolled up and down alone.
  static void ExpectScrolls(DrivenProgram& program) {
    const QSize scrolls = program.Ask(Scrolls);
    EXPECT_EQ(scrolls.width(), 0);
    if (GetParam().whole) {
      EXPECT_EQ(scrolls.height(), 0);
    }
  }
  /// Keys as they were pressed: one is down, and two were refused.
  static void ShowPressedKeys(forms::ConfigurationForm& form) {
    const char* const keys[] = {"F4",          "CTRL+SHIFT+Next", "",      "LOGO+odiaeresis",
                                "XF86Launch5", "SHIFT+F12",       "",      "CTRL+plus",
                                "Scroll_Lock", "CTRL+ALT+s",      "Pause", ""};
    for (std::size_t row = 0; row < form.keys.size(); ++row)
      form.keys[row].txtKey.Change(keys[row]);
    form.keys[2].txtKey.Change("CTRL+SHIFT+Next");
    form.keys[6].txtKey.Change("Return");
    form.keys[0].Down = true;
    form.frmConfiguration.FocusOn(form.keys[2].txtKey);
  }
  /// Keys as they are where the desktop gives them.
  static void ShowKeysOfTheDesktop(forms::ConfigurationForm& form) {
    form.lblKeysWay.Value =
        "These keys run the deck while you type in another window. The desktop asks you first, and "
        "may give others; its settings of keyboard shortcuts change them.";
    form.lblMediaKeys.Value =
        "Media keys do not reach the deck: the desktop's session bus is not there.";
    form.cmdDesktopKeys.Visible = true;
    for (forms::KeyRow& row : form.keys) {
      row.Down = false;
      row.lblKeyState.Value = "The desktop gave: Strg+Umschalt+Bild ab";
    }
    form.keys[3].lblKeyState.Value = "The desktop is asked.";
  }
  /// Takes what shows, and all that a hand can scroll to.
  static void TakeAll(DrivenProgram& program, Album& album, const std::string& name) {
    album.Take(name);
    const auto scrollOn = [] {
      QScrollBar& bar = *Area()->verticalScrollBar();
      const int before = bar.value();
      bar.setValue(before + bar.pageStep() * 2 / 3);
      return bar.value() > before;
    };
    for (int part = 2; program.Ask(scrollOn); ++part) {
      album.Take(name + "-" + std::to_string(part));
    }
    program.Do([] { Area()->verticalScrollBar()->setValue(0); });
  }

  Home home;

 private:
  Desktop desktop_;
  SoundServer server_;
};

TEST_P(SettingsPictures, AreLegibleAndWholeInEveryStateOfTheAlerts) {
  DrivenProgram program(home);
  const int status = program.Run([&] {
    Album album(program, std::string("settings-") + GetParam().name);
    Open(program);
    forms::ConfigurationForm& form = program.Windows().configuration;
    TakeAll(program, album, "neither");
    EXPECT_EQ(program.Ask(Scrolls), QSize(0, GetParam().whole ? 0 : 1));
    program.Do([&] { form.chkAutoRefreshMode.Click(); });
    TakeAll(program, album, "refresh");
    program.Do([&] {
      form.chkAutoRefreshMode.Click();
      form.chkWorkWaitingAlertMode.Click();
      form.optionSerial.Click();
      form.txtWordProcessorPath.Value = "";
    });
    TakeAll(program, album, "alert");
    program.Do([&] { form.mnuClose.Press(forms::By::Hand); });
    ASSERT_TRUE(program.Until([&] { return program.Main().frmMain.Visible.Get(); }));
    program.Exit();
  });
  EXPECT_EQ(status, 0);
}

TEST_P(SettingsPictures, AreLegibleAndWholeOnThePageOfTheServers) {
  DrivenProgram program(home);
  const int status = program.Run([&] {
    Album album(program, std::string("servers-") + GetParam().name);
    Open(program);
    forms::ConfigurationForm& form = program.Windows().configuration;
    program.Do([&] { form.tabConfiguration.RowClick(form.TabOf(form.frameFtp)); });
    TakeAll(program, album, "empty");
    EXPECT_EQ(program.Ask(Scrolls).width(), 0);
    if (GetParam().whole) {
      EXPECT_EQ(program.Ask(Scrolls).height(), 0);
    }
    program.Do([&] {
      form.cmdFtpLast.Press(forms::By::Hand);
      form.txtFtpName.Change("ClinicNorth");
      form.eServer.Change("ftp.clinic.example");
      form.eUser.Change("typist4");
      form.ePass.Change("eight888");
      form.eServerDir.Change("/outgoing/" + std::string(200, 'W'));
      form.chkFtpAutoListAndDownload.Click();
      form.chkFtpFileDeleteMode.Click();
      form.cmdFtpMemorize.Press(forms::By::Hand);
    });
    TakeAll(program, album, "unprotected");
    program.Do([&] {
      form.cmdFtpPrevious.Press(forms::By::Hand);
      form.eServer.Change("ftpes://ftp.clinic.example");
      form.chkFtpAutoRetrieve.Click();
    });
    TakeAll(program, album, "protected");
    program.Do([&] { form.eServer.Change("http://ftp.clinic.example/outgoing"); });
    TakeAll(program, album, "unreadable");
    program.Do([&] {
      form.chkFtpAutoRetrieve.Click();
      form.mnuClose.Press(forms::By::Hand);
    });
    ASSERT_TRUE(program.Until([&] { return program.Main().frmMain.Visible.Get(); }));
    program.Exit();
  });
  EXPECT_EQ(status, 0);
}

TEST_P(SettingsPictures, AreLegibleAndWholeOnThePageOfTheKeys) {
  DrivenProgram program(home);
  const int status = program.Run([&] {
    Album album(program, std::string("keys-") + GetParam().name);
    Open(program);
    forms::ConfigurationForm& form = program.Windows().configuration;
    program.Do([&] { form.tabConfiguration.RowClick(form.TabOf(form.frameConfigKeys)); });
    TakeAll(program, album, "empty");
    ExpectScrolls(program);
    program.Do([&] { ShowPressedKeys(form); });
    TakeAll(program, album, "pressed");
    ExpectScrolls(program);
    program.Do([&] { ShowKeysOfTheDesktop(form); });
    TakeAll(program, album, "given");
    program.Do([&] {
      form.keys[2].txtKey.Value = std::string(40, 'W');
      form.keys[3].txtKey.Value = "CTRL+ALT+SHIFT+LOGO+XF86AudioLowerVolume";
      for (forms::KeyRow& row : form.keys) {
        row.lblKeyState.Value =
            "Ctrl+Alt+Shift+Super+AudioLowerVolume is the key of \"Forward while held\".";
      }
    });
    TakeAll(program, album, "longest");
    program.Do([&] { form.mnuClose.Press(forms::By::Hand); });
    ASSERT_TRUE(program.Until([&] { return program.Main().frmMain.Visible.Get(); }));
    program.Exit();
  });
  EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(
    OnEachScreen, SettingsPictures,
    testing::Values(SettingsScreen{"100Percent", "1", "1366x768", 0, true},
                    SettingsScreen{"150Percent", "1.5", "1920x1080", 0, true},
                    SettingsScreen{"200Percent", "2", "2560x1440", 0, true},
                    SettingsScreen{"1024x768", "1", "1024x768", 0, true},
                    SettingsScreen{"150PercentOfASmallScreen", "1.5", "1366x768", 0, false},
                    SettingsScreen{"200PercentOfASmallScreen", "2", "1920x1080", 0, false},
                    SettingsScreen{"HugeFont", "1", "1366x768", 24, false}),
    [](const auto& screen) { return std::string(screen.param.name); });

}  // namespace
}  // namespace tavlo::test
