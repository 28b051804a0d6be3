#include <gtest/gtest.h>

#include "support/keys.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

class ConfigurationWindow : public testing::Test {
 protected:
  ConfigurationWindow() {
    form.frmConfiguration.Centre();
    form.frmConfiguration.Visible = true;
    shown.typist.Rest(300);
  }

  ShownWindows shown;
  forms::ConfigurationForm& form = shown.configuration;
};

TEST_F(ConfigurationWindow, SlidersBoxesAndTextsChangeTheSettings) {
  form.frameAutoBackspace.Caption = "Auto Backspace:  2.5";
  form.txtSubjectHeading.Value = "";
  shown.typist.Rest();
  shown.typist.Picture("configuration");
  shown.typist.Click("sliderABS");
  EXPECT_NEAR(form.sliderABS.Value, 50, 2);
  shown.typist.Click("chkAutoQueueJob");
  EXPECT_TRUE(form.chkAutoQueueJob.Value);
  shown.typist.Click("txtSubjectHeading");
  shown.typist.Keys({'c'});
  shown.typist.Keys({'l'});
  EXPECT_EQ(form.txtSubjectHeading.Value.Get(), "cl");
}

TEST_F(ConfigurationWindow, TheVolumeOfThePromptsIsASlider) {
  shown.typist.Click("sldPromptVol");
  EXPECT_NEAR(form.sldPromptVol.Value, 32767, 700);
}

TEST_F(ConfigurationWindow, ATabLeadsBackFromAPageThatIsEmpty) {
  constexpr int kEqualizer = 1;
  form.tabConfiguration.ListIndex = kEqualizer;
  shown.typist.Rest();
  shown.typist.Keys({keys::kAlt, 's'});
  EXPECT_EQ(form.tabConfiguration.ListIndex, 0);
}

TEST_F(ConfigurationWindow, EveryWidgetOfASettingStandsInsideIt) {
  const QWidget* const window = shown.typist.Widget("frmConfiguration");
  for (const char* name :
       {"sliderABS", "sliderAutoPreview", "sliderWindIncrement", "chkAccelerateWindIncrement",
        "chkMinimizeMiniPlayer", "chkAlwaysOnTop", "chkAutoQueueJob", "chkAudioPrompts",
        "sldPromptVol", "txtSubjectHeading", "chkShowCustomDisplay", "txtCustomDisplay"}) {
    const QWidget* const widget = shown.typist.Widget(name);
    const QRect place(widget->mapTo(window, QPoint(0, 0)), widget->size());
    EXPECT_TRUE(window->rect().contains(place)) << name;
    EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << name;
  }
}

TEST_F(ConfigurationWindow, TheCloseButtonOnlyAsks) {
  int requests = 0;
  form.frmConfiguration.OnCloseRequest = [&] { ++requests; };
  shown.typist.Keys({keys::kAlt, keys::kF4});
  EXPECT_TRUE(shown.typist.Until([&] { return requests == 1; }));
  EXPECT_TRUE(shown.typist.Widget("frmConfiguration")->isVisible());
}

}  // namespace
}  // namespace tavlo::test
