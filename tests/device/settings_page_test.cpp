#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <QApplication>
#include <QLabel>
#include <QWidget>
#include <string>

#include "desk.h"
#include "support/keys.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

/// The foot pedal's part of the settings page, as a typist uses it who tries the pedals out.
struct PedalsOfTheSettingsPage : AtTheDesk {
  void SetUp() override {
    ASSERT_TRUE(program.Until([] { return QApplication::activeWindow() != nullptr; }));
    program.Keys({keys::kAlt, 'f'});
    ASSERT_TRUE(program.Until([] { return QApplication::activePopupWidget() != nullptr; }));
    program.Keys({'c'});
    ASSERT_TRUE(Shows(true));
  }
  void TearDown() override {
    program.Keys({keys::kAlt, 'c'});
    EXPECT_TRUE(Shows(false));
    AtTheDesk::TearDown();
  }
  bool Shows(bool shows) {
    return program.Until([&] { return page.frmConfiguration.Visible == shows; }) &&
           program.Until([&] { return program.Main().frmMain.Visible != shows; });
  }
  /// The label that says how the pedal is doing, while it shows.
  static const QLabel* StateLabel() {
    for (const QWidget* const widget : QApplication::allWidgets()) {
      const auto* const label = qobject_cast<const QLabel*>(widget);
      if (label && label->objectName() == "lblPedalState" && label->isVisible()) return label;
    }
    return nullptr;
  }
  std::string Said() {
    return program.Ask([] {
      const QLabel* const label = StateLabel();
      return label ? label->text().toStdString() : std::string();
    });
  }
  /// True once every line of that label can be seen.
  bool SaidInFull() {
    return program.Until([] {
      const QLabel* const label = StateLabel();
      return label && label->visibleRegion().boundingRect().height() >=
                          label->heightForWidth(label->width());
    });
  }
  bool Lit(forms::PedalShape forms::SettingsPage::*shape) {
    return program.Until([&] { return (page.*shape).FillColour == forms::PedalShape::kDown; });
  }

  DrivenProgram& program = *desk->program;
  forms::ConfigurationForm& page = program.Windows().configuration;
};

TEST_F(PedalsOfTheSettingsPage, SaysHowTheUsbPedalIsDoingAndLightsIt) {
  EXPECT_TRUE(Until([&] { return Said() == "No USB pedal is plugged in."; }));
  ASSERT_TRUE(desk->hardware.PlugPedal());
  EXPECT_TRUE(Until([&] { return Said().find("you may not read it") != std::string::npos; }));
  EXPECT_TRUE(SaidInFull());
  desk->Picture("pedal-without-permission");
  ASSERT_TRUE(desk->hardware.PermitPedal());
  EXPECT_TRUE(Until([&] { return Said() == "A USB pedal is ready."; }));
  ASSERT_TRUE(desk->hardware.Press({6}));
  EXPECT_TRUE(Lit(&forms::SettingsPage::ShapeCenterPedal));
  EXPECT_TRUE(Lit(&forms::SettingsPage::ShapeRightPedal));
  desk->Picture("usb-pedals-down");
  ASSERT_TRUE(desk->hardware.UnplugPedal());
  EXPECT_TRUE(Until([&] { return Said() == "No USB pedal is plugged in."; }));
  EXPECT_TRUE(
      program.Until([&] { return page.ShapeRightPedal.FillColour == forms::PedalShape::kUp; }));
}

TEST_F(PedalsOfTheSettingsPage, SerialPedalAndItsPortAreChosenByHand) {
  ASSERT_TRUE(desk->hardware.PlugSerialBox());
  program.Do([&] { page.txtSerialFootPedalComPort.Value = "9"; });
  program.Click("optionSerial");
  EXPECT_TRUE(Until([&] { return Said() == "Port 9 can not be read."; }));
  program.Click("txtSerialFootPedalComPort");
  ASSERT_TRUE(program.Until([] {
    const QWidget* const holder = QApplication::focusWidget();
    return holder && holder->objectName() == "txtSerialFootPedalComPort";
  }));
  program.Keys({keys::kControl, 'a'});
  program.Keys({'5'});
  EXPECT_TRUE(Until([&] { return Said() == "Port 5 is being read."; })) << Said();
  desk->hardware.Wires().Close(TIOCM_CD);
  EXPECT_TRUE(Lit(&forms::SettingsPage::ShapeLeftPedal));
  desk->Picture("serial-pedal-down");
  program.Click("optionUSB");
  EXPECT_TRUE(Until([&] { return Said() == "No USB pedal is plugged in."; }));
  EXPECT_TRUE(Until([&] { return desk->hardware.Wires().openings == 0; }));
}

}  // namespace
}  // namespace tavlo::test
