#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QWidget>
#include <string>

#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

/// The foot pedal's part of the settings page.
struct PedalFrame : testing::Test {
  PedalFrame() {
    form.frmConfiguration.Centre();
    form.frmConfiguration.Visible = true;
    form.optionUSB.Value = true;
    form.lblPedalState.Value = "No USB pedal is plugged in.";
    shown.typist.Rest(300);
  }

  /// The colour in the middle of a widget.
  unsigned ColourOf(const char* name) {
    const QImage picture = shown.typist.Widget(name)->grab().toImage();
    return picture.pixelColor(picture.rect().center()).rgb() & 0xFFFFFF;
  }

  ShownWindows shown;
  forms::ConfigurationForm& form = shown.configuration;
};

TEST_F(PedalFrame, PedalsLightUnderTheFoot) {
  EXPECT_EQ(ColourOf("ShapeLeftPedal"), forms::PedalShape::kUp);
  form.ShapeLeftPedal.FillColour = forms::PedalShape::kDown;
  form.ShapeRightPedal.FillColour = forms::PedalShape::kDown;
  shown.typist.Rest();
  shown.typist.Picture("pedals");
  EXPECT_EQ(ColourOf("ShapeLeftPedal"), forms::PedalShape::kDown);
  EXPECT_EQ(ColourOf("ShapeCenterPedal"), forms::PedalShape::kUp);
  EXPECT_EQ(ColourOf("ShapeRightPedal"), forms::PedalShape::kDown);
}

TEST_F(PedalFrame, KindAndPortAreChosenByHand) {
  form.txtSerialFootPedalComPort.Enabled = true;
  shown.typist.Rest();
  shown.typist.Click("optionSerial");
  EXPECT_TRUE(form.optionSerial.Value);
  shown.typist.Click("txtSerialFootPedalComPort");
  shown.typist.Keys({'2'});
  EXPECT_EQ(form.txtSerialFootPedalComPort.Value.Get(), "2");
}

TEST_F(PedalFrame, BoxesAreTickedByHand) {
  shown.typist.Click("chkSwapRewindForwardPedals");
  EXPECT_TRUE(form.chkSwapRewindForwardPedals.Value);
  shown.typist.Click("chkSkipBegEnd");
  EXPECT_TRUE(form.chkSkipBegEnd.Value);
}

TEST_F(PedalFrame, LongestStateStandsInsideTheWindow) {
  form.lblPedalState.Value =
      "A USB pedal is plugged in, but you may not read it. The udev rule of Tavlo Deck allows it "
      "to whoever sits at the desk: install it, then plug the pedal in again.";
  shown.typist.Rest(200);
  shown.typist.Picture("pedals-no-permission");
  const QWidget* const window = shown.typist.Widget("frmConfiguration");
  for (const char* name :
       {"ShapeLeftPedal", "ShapeCenterPedal", "ShapeRightPedal", "lblLeftPedal", "lblPlay",
        "lblRightPedal", "chkSwapRewindForwardPedals", "chkSkipBegEnd", "optionUSB", "optionSerial",
        "lblSerialFootPedalComPort", "txtSerialFootPedalComPort", "lblPedalState"}) {
    const QWidget* const widget = shown.typist.Widget(name);
    const QRect place(widget->mapTo(window, QPoint(0, 0)), widget->size());
    EXPECT_TRUE(window->rect().contains(place)) << name;
    EXPECT_GE(widget->height(), widget->hasHeightForWidth()
                                    ? widget->heightForWidth(widget->width())
                                    : widget->minimumSizeHint().height())
        << name;
  }
}

}  // namespace
}  // namespace tavlo::test
