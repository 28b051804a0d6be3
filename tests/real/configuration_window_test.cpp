#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <cstdlib>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support/keys.h"
#include "support/shown_windows.h"
#include "window/bindings.h"

namespace tavlo::test {
namespace {

class ConfigurationWindow : public testing::Test {
 protected:
  ConfigurationWindow() {
    form.frmConfiguration.Centre();
    form.frmConfiguration.Visible = true;
    shown.typist.Rest(300);
  }

  /// A click on a tab brings its page.
  void TurnPages() {
    form.tabConfiguration.OnClick = [this] {
      for (forms::Pane* const page : form.Pages()) {
        page->Visible = form.TabOf(*page) == form.tabConfiguration.ListIndex;
      }
    };
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

TEST_F(ConfigurationWindow, TheRateOfConversionsIsSteppedByItsKeyOrTyped) {
  form.cmdWavConvMode.OnPress = [&] { form.txtWavConvMode.Value = "12"; };
  shown.typist.Click("cmdWavConvMode");
  EXPECT_EQ(form.txtWavConvMode.Value.Get(), "12");
  shown.typist.Click("txtWavConvMode");
  shown.typist.Keys({keys::kEnd});
  shown.typist.Keys({'5'});
  EXPECT_EQ(form.txtWavConvMode.Value.Get(), "125");
}

TEST_F(ConfigurationWindow, TheFoldersThatWorkComesFromAreOnAPageOfTheirOwn) {
  form.cmdDs2QueuePathDefault.OnPress = [&] { form.txtDs2QueuePath.Value = "/root/dS2Queue"; };
  TurnPages();
  form.txtEw2QueuePath.Value = "/media/recorder/out";
  form.txtWavQueuePath.Value = "/srv/office/import";
  shown.typist.Keys({keys::kAlt, 'p'});
  ASSERT_TRUE(shown.typist.Until([&] { return form.frameConfigAlternatePath.Visible.Get(); }));
  shown.typist.Click("cmdDs2QueuePathDefault");
  EXPECT_EQ(form.txtDs2QueuePath.Value.Get(), "/root/dS2Queue");
  shown.typist.Click("txtEu2QueuePath");
  shown.typist.Keys({'/'});
  shown.typist.Keys({'m'});
  EXPECT_EQ(form.txtEu2QueuePath.Value.Get(), "/m");
  shown.typist.Picture("configuration_paths");
  for (const char* name : {"txtEw2QueuePath", "cmdEw2QueuePathDefault", "txtWavQueuePath",
                           "cmdWavQueuePathDefault", "cmdEu2QueuePathDefault"}) {
    EXPECT_NE(shown.typist.Widget(name), nullptr) << name;
  }
}

TEST_F(ConfigurationWindow, APasswordShowsAsAsterisksAndIsGivenToNobody) {
  TurnPages();
  shown.typist.Keys({keys::kAlt, 'f'});
  ASSERT_TRUE(shown.typist.Until([&] { return form.frameFtp.Visible.Get(); }));
  QGuiApplication::clipboard()->setText("what was copied before");
  shown.typist.Click("ePass");
  for (const char letter : {'q', 'z', 'x'}) {
    shown.typist.Keys({static_cast<std::uint32_t>(letter)});
  }
  EXPECT_EQ(form.ePass.Value.Get(), "qzx");
  const auto* const box = dynamic_cast<QLineEdit*>(shown.typist.Widget("ePass"));
  ASSERT_TRUE(box);
  EXPECT_EQ(box->displayText(), "***");
  shown.typist.Keys({keys::kControl, 'a'});
  EXPECT_TRUE(shown.typist.Until([&] { return box->hasSelectedText(); }));
  for (const Qt::InputMethodQuery query : {Qt::ImSurroundingText, Qt::ImCurrentSelection,
                                           Qt::ImTextBeforeCursor, Qt::ImTextAfterCursor}) {
    EXPECT_EQ(box->inputMethodQuery(query).toString(), "") << query;
  }
  shown.typist.Keys({keys::kControl, 'c'});
  shown.typist.Keys({keys::kControl, 'x'});
  shown.typist.Rest();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "what was copied before");
}

TEST_F(ConfigurationWindow, ATextThatARulePutsIntoAnEmptiedBoxGivesWayToTheNextLetter) {
  form.txtSubjectHeading.Value = "C";
  form.txtSubjectHeading.OnChange = [&] {
    if (form.txtSubjectHeading.Value.Get().empty()) form.txtSubjectHeading.Value = "Subject";
  };
  shown.typist.Click("txtSubjectHeading");
  shown.typist.Keys({keys::kEnd});
  shown.typist.Keys({keys::kBackspace});
  ASSERT_TRUE(shown.typist.Until([&] { return form.txtSubjectHeading.Value.Get() == "Subject"; }));
  shown.typist.Keys({'p'});
  EXPECT_TRUE(shown.typist.Until([&] { return form.txtSubjectHeading.Value.Get() == "p"; }))
      << form.txtSubjectHeading.Value.Get();
}

TEST_F(ConfigurationWindow, ATextThatARuleCorrectsKeepsTheTypistsPlace) {
  form.txtViewDelay.Value = "12";
  form.txtViewDelay.OnChange = [&] {
    if (form.txtViewDelay.Value.Get() == "x12") form.txtViewDelay.Value = "12";
  };
  shown.typist.Click("txtViewDelay");
  shown.typist.Keys({keys::kHome});
  shown.typist.Keys({'x'});
  shown.typist.Keys({'3'});
  EXPECT_TRUE(shown.typist.Until([&] { return form.txtViewDelay.Value.Get() == "132"; }))
      << form.txtViewDelay.Value.Get();
}

TEST_F(ConfigurationWindow, WhatIsSaidBesideADisabledBoxLooksDisabledToo) {
  form.txtAutoQueueRefreshInterval.Enabled = false;
  form.txtSerialFootPedalComPort.Enabled = false;
  shown.typist.Rest();
  const QWidget* const page = shown.typist.Widget("frameSettings");
  std::multiset<std::string> disabled;
  for (const QLabel* const label : page->findChildren<QLabel*>()) {
    if (!label->isEnabled()) disabled.insert(label->text().toStdString());
  }
  EXPECT_EQ(disabled, (std::multiset<std::string>{"every", "seconds", "Port"}));
}

TEST_F(ConfigurationWindow, ADesktopThatPlacesItsWindowsShowsNoHeadingOverNothing) {
  for (forms::Control* const control : std::initializer_list<forms::Control*>{
           &form.chkMinimizeMiniPlayer, &form.chkAlwaysOnTop, &form.cmdCenterMiniPlayer}) {
    control->Visible = false;
  }
  shown.typist.Rest();
  for (const QLabel* const label : shown.typist.Widget("frameSettings")->findChildren<QLabel*>()) {
    EXPECT_FALSE(label->isVisible() && label->text() == "Window");
  }
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
  for (const char* name : {"sliderABS",
                           "sliderAutoPreview",
                           "sliderWindIncrement",
                           "chkAccelerateWindIncrement",
                           "chkMinimizeMiniPlayer",
                           "chkAlwaysOnTop",
                           "chkAutoQueueJob",
                           "chkAudioPrompts",
                           "sldPromptVol",
                           "txtSubjectHeading",
                           "chkShowCustomDisplay",
                           "txtCustomDisplay",
                           "chkAutoImportMode",
                           "txtWavConvMode",
                           "cmdWavConvMode",
                           "chkAutoRefreshMode",
                           "txtAutoQueueRefreshInterval",
                           "chkWorkWaitingAlertMode",
                           "optNewWorkWaitingAllJobs",
                           "optNewWorkWaitingPriority",
                           "txtNewDictationAlertInterval",
                           "txtDeleteCompletedFiles",
                           "txtViewDelay",
                           "txtWordProcessorPath"}) {
    const QWidget* const widget = shown.typist.Widget(name);
    const QRect place(widget->mapTo(window, QPoint(0, 0)), widget->size());
    EXPECT_TRUE(window->rect().contains(place)) << name;
    EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << name;
  }
}

TEST_F(ConfigurationWindow, EveryKeyOfOtherWindowsHasItsBoxBesideItsNameInsideThePage) {
  TurnPages();
  for (forms::KeyRow& row : form.keys) row.lblKey.Value = "Play, and stop again";
  shown.typist.Keys({keys::kAlt, 'k'});
  ASSERT_TRUE(shown.typist.Until([&] { return form.frameConfigKeys.Visible.Get(); }));
  const QWidget* const page = shown.typist.Widget("frameConfigKeys");
  const auto placeOf = [&](const forms::Control& control) {
    const QWidget* const widget = shown.typist.Widget(QString::fromStdString(control.Name));
    return QRect(widget->mapTo(page, QPoint(0, 0)), widget->size());
  };
  for (const forms::KeyRow& row : form.keys) {
    const QRect name = placeOf(row.lblKey);
    const QRect box = placeOf(row.txtKey);
    EXPECT_TRUE(page->rect().contains(box)) << row.txtKey.Name;
    EXPECT_LT(name.right(), box.left()) << row.txtKey.Name;
    EXPECT_LE(std::abs(name.center().y() - box.center().y()), 1) << row.txtKey.Name;
  }
  EXPECT_TRUE(page->rect().contains(placeOf(form.chkBusSaysNothing)));
}

/// Whether a control has a widget on its window.
bool HasAPlace(const forms::Control& control) {
  const QString window = QString::fromStdString(control.Home().Name);
  for (const QWidget* const top : QApplication::topLevelWidgets()) {
    if (top->objectName() != window) continue;
    if (&control == &control.Home()) return true;
    if (top->findChild<QWidget*>(QString::fromStdString(control.Name))) return true;
  }
  return false;
}

TEST_F(ConfigurationWindow, EverySettingHasAPlace) {
  // What a hand changes where neither a check box nor the text itself can be seen.
  const std::map<std::string_view, const forms::Control*> changedBy{
      {"AutoBackspace", &form.sliderABS},
      {"AutoPreview", &form.sliderAutoPreview},
      {"WindIncrement", &form.sliderWindIncrement},
      {"PromptVolume", &form.sldPromptVol},
      {"USBorSerialFootPedal", &form.optionUSB},
      {"EqualizerChoice", &form.cmdEqFlat},
      {"MixerSelection", &form.DeviceCombo},
      {"WorkWaitingAlertMode", &form.chkWorkWaitingAlertMode},
      {"FaciaImagePointer", &shown.main.imageFaciaA},
      {"Speed", &shown.main.Slider1},
      {"Volume", &shown.main.sldVol},
      {"FtpServerSelection", &shown.main.comboFtpServerNames},
      {"PlayerTop", &shown.main.frmMain},
      {"PlayerLeft", &shown.main.frmMain},
      {"TitleBarHeight", &shown.main.frmMain},
      {"ID", &form.dataFtpSettings},
      {"FtpParseGenericPointer", &form.comboAuthorLastName}};
  const auto controlOf = [&](const window::Binding& binding) -> const forms::Control* {
    if (binding.check) return binding.check;
    if (binding.text->Visible) return binding.text;
    if (binding.field.starts_with("CustomEq")) {
      return &form.sldEQ[std::stoul(std::string(binding.field.substr(8))) - 1];
    }
    const auto found = changedBy.find(binding.field);
    return found == changedBy.end() ? nullptr : found->second;
  };

  for (const auto& bindings : {window::ConfigurationBindings(form),
                               window::MainBindings(shown.main), window::FtpBindings(form)}) {
    for (const window::Binding& binding : bindings) {
      const forms::Control* const control = controlOf(binding);
      ASSERT_TRUE(control) << "nothing says by which control a hand changes " << binding.field;
      EXPECT_TRUE(HasAPlace(*control)) << binding.field;
    }
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
