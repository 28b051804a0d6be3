#include "platform/qt/key_box.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <functional>
#include <string>
#include <vector>

#include "platform/qt/theme.h"
#include "support/keys.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

using platform::qt::KeyBox;

constexpr std::uint32_t kF7 = 0xFFC4;
constexpr std::uint32_t kDelete = 0xFFFF;
constexpr std::uint32_t kKeypadEnter = 0xFF8D;
constexpr std::uint32_t kSuper = 0xFFEB;
constexpr std::uint32_t kAudioPlay = 0x1008FF14;

/// The page of the keys, whose first box has the keyboard. Each key that it takes is noted.
class KeyBoxes : public testing::Test {
 protected:
  KeyBoxes() {
    form.tabConfiguration.OnClick = [this] { TurnPages(); };
    form.mnuClose.OnPress = [this] { ++closed; };
    form.frmConfiguration.OnCloseRequest = [this] { ++closed; };
    form.tabConfiguration.ListIndex = form.TabOf(form.frameConfigKeys);
    TurnPages();
    form.keys[0].txtKey.OnChange = [this] { taken.push_back(form.keys[0].txtKey.Value); };
    form.frmConfiguration.Centre();
    form.frmConfiguration.Visible = true;
    shown.typist.Rest(300);
    shown.typist.Click("txtPlayStopKey");
    EXPECT_EQ(Holder(), "txtPlayStopKey");
  }

  void TurnPages() {
    for (forms::Pane* const page : form.Pages()) {
      page->Visible = form.TabOf(*page) == form.tabConfiguration.ListIndex;
    }
  }
  static std::string Holder() {
    const QWidget* const widget = QApplication::focusWidget();
    return widget ? widget->objectName().toStdString() : "";
  }
  /// What the box has made of these keys.
  std::string TakenOf(std::initializer_list<std::uint32_t> keys) {
    taken.clear();
    shown.typist.Keys(keys);
    return taken.size() == 1 ? taken.front() : std::to_string(taken.size()) + " keys";
  }
  KeyBox& Box() { return dynamic_cast<KeyBox&>(*shown.typist.Widget("txtPlayStopKey")); }

  ShownWindows shown;
  forms::ConfigurationForm& form = shown.configuration;
  std::vector<std::string> taken;
  int closed = 0;
};

TEST_F(KeyBoxes, TakeTheNextKeyWithItsModifiers) {
  EXPECT_EQ(TakenOf({keys::kF4}), "F4");
  EXPECT_EQ(TakenOf({keys::kControl, kF7}), "CTRL+F7");
  EXPECT_EQ(TakenOf({keys::kControl, keys::kShift, 'a'}), "CTRL+SHIFT+a");
  EXPECT_EQ(TakenOf({keys::kControl, keys::kAlt, kSuper, 'a'}), "CTRL+ALT+LOGO+a");
  EXPECT_EQ(TakenOf({kAudioPlay}), "XF86AudioPlay");
  EXPECT_EQ(TakenOf({'a'}), "a");
  EXPECT_EQ(TakenOf({keys::kShift, 'b'}), "SHIFT+b");
  EXPECT_EQ(TakenOf({keys::kControl, keys::kTab}), "CTRL+Tab");
  EXPECT_EQ(TakenOf({keys::kMenu}), "Menu");
}

TEST_F(KeyBoxes, TakeKeysThatDoSomethingInOtherBoxesAndLeaveTheRefusalToTheRules) {
  EXPECT_EQ(TakenOf({keys::kReturn}), "Return");
  EXPECT_EQ(TakenOf({kKeypadEnter}), "KP_Enter");
  EXPECT_EQ(TakenOf({' '}), "space");
  EXPECT_EQ(TakenOf({keys::kDown}), "Down");
  EXPECT_EQ(TakenOf({keys::kPageUp}), "Prior");
  EXPECT_EQ(TakenOf({keys::kControl, 'v'}), "CTRL+v");
  EXPECT_EQ(Holder(), "txtPlayStopKey");
}

TEST_F(KeyBoxes, TakeNoModifierAloneAndShowTheOnesThatAreHeld) {
  for (const std::uint32_t modifier : {keys::kControl, keys::kShift, keys::kAlt, kSuper}) {
    shown.typist.Keys({modifier});
  }
  EXPECT_EQ(taken, std::vector<std::string>{});
  EXPECT_EQ(Holder(), "txtPlayStopKey") << "Alt alone leads to the menu";
  EXPECT_EQ(Box().Words(), "Press a key");
  Hands hands;
  hands.Hold(keys::kControl);
  EXPECT_TRUE(shown.typist.Until([&] { return Box().Words() == "Ctrl+"; }));
  hands.Hold(keys::kShift);
  EXPECT_TRUE(shown.typist.Until([&] { return Box().Words() == "Ctrl+Shift+"; }));
  hands.LetGo(keys::kControl);
  EXPECT_TRUE(shown.typist.Until([&] { return Box().Words() == "Shift+"; }));
  hands.LetGo(keys::kShift);
  EXPECT_TRUE(shown.typist.Until([&] { return Box().Words() == "Press a key"; }));
  EXPECT_EQ(TakenOf({keys::kControl, keys::kF5}), "CTRL+F5");
  EXPECT_EQ(Box().Words(), "Ctrl+F5");
}

TEST_F(KeyBoxes, AreClearedByDeleteAndBackspace) {
  for (const std::uint32_t eraser : {kDelete, keys::kBackspace}) {
    EXPECT_EQ(TakenOf({keys::kF4}), "F4");
    EXPECT_EQ(TakenOf({eraser}), "");
    EXPECT_EQ(form.keys[0].txtKey.Value.Get(), "");
    EXPECT_EQ(Box().Words(), "Press a key");
  }
  EXPECT_EQ(TakenOf({keys::kControl, kDelete}), "CTRL+Delete");
}

TEST_F(KeyBoxes, TakeAHeldKeyOnce) {
  const auto press = [&](bool repeated) {
    QKeyEvent key(QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier, 0, keys::kF5, 0, QString(),
                  repeated);
    QApplication::sendEvent(&Box(), &key);
    EXPECT_TRUE(key.isAccepted());
  };
  press(false);
  form.keys[0].txtKey.Value = "";
  taken.clear();
  press(true);
  EXPECT_EQ(taken, std::vector<std::string>{});
}

TEST_F(KeyBoxes, AreLeftByTabAndShiftTabAndEscapeClosesTheWindow) {
  shown.typist.Keys({keys::kTab});
  EXPECT_EQ(Holder(), "txtPlayHeldKey");
  shown.typist.Keys({keys::kShift, keys::kTab});
  EXPECT_EQ(Holder(), "txtPlayStopKey");
  shown.typist.Keys({keys::kEscape});
  EXPECT_TRUE(shown.typist.Until([&] { return closed == 1; }));
  EXPECT_EQ(taken, std::vector<std::string>{});
  EXPECT_EQ(TakenOf({keys::kControl, keys::kEscape}), "CTRL+Escape");
}

TEST_F(KeyBoxes, TakeTheLettersOfPagesAndMenusOnlyWhileTheyHaveTheKeyboard) {
  EXPECT_EQ(TakenOf({keys::kAlt, 's'}), "ALT+s");
  EXPECT_EQ(TakenOf({keys::kAlt, 'c'}), "ALT+c");
  EXPECT_TRUE(form.frameConfigKeys.Visible);
  EXPECT_EQ(closed, 0);
  shown.typist.Click("chkBusSaysNothing");
  shown.typist.Keys({keys::kAlt, 's'});
  EXPECT_TRUE(shown.typist.Until([&] { return form.frameSettings.Visible.Get(); }));
  shown.typist.Keys({keys::kAlt, 'k'});
  EXPECT_TRUE(shown.typist.Until([&] { return form.frameConfigKeys.Visible.Get(); }));
}

TEST_F(KeyBoxes, DoNotHaveTheKeyboardWhenTheWindowIsOpenedAgain) {
  form.frmConfiguration.Visible = false;
  shown.typist.Rest(300);
  form.frmConfiguration.Visible = true;
  shown.typist.Rest(300);
  EXPECT_EQ(Holder(), "txtFocus");
  EXPECT_EQ(TakenOf({keys::kAlt, 's'}), "0 keys");
  EXPECT_TRUE(form.frameSettings.Visible);
}

TEST_F(KeyBoxes, LeaveTheLetterOfTheDesktopsPageToTheWindowWhileThatShows) {
  int pages = 0;
  form.cmdDesktopKeys.OnPress = [&] { ++pages; };
  shown.typist.Keys({keys::kTab});
  form.cmdDesktopKeys.Visible = true;
  form.frmConfiguration.FocusOn(form.txtFocus);
  shown.typist.Rest();
  shown.typist.Keys({keys::kAlt, 'd'});
  EXPECT_TRUE(shown.typist.Until([&] { return pages == 1; }));
}

TEST_F(KeyBoxes, TakeNothingThatIsPastedDroppedOrChosenInAMenu) {
  QApplication::clipboard()->setText("F9", QClipboard::Clipboard);
  QApplication::clipboard()->setText("F9", QClipboard::Selection);
  KeyBox& box = Box();
  EXPECT_FALSE(box.acceptDrops());
  EXPECT_FALSE(box.testAttribute(Qt::WA_InputMethodEnabled));
  QMouseEvent middle(QEvent::MouseButtonPress, QPointF(9, 9), box.mapToGlobal(QPointF(9, 9)),
                     Qt::MiddleButton, Qt::MiddleButton, Qt::NoModifier);
  QApplication::sendEvent(&box, &middle);
  QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(9, 9), box.mapToGlobal(QPoint(9, 9)));
  QApplication::sendEvent(&box, &menu);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  EXPECT_EQ(taken, std::vector<std::string>{});
}

TEST_F(KeyBoxes, ShowTheKeyInWordsAndNoneWhereThereIsNone) {
  form.keys[1].txtKey.Value = "CTRL+SHIFT+Next";
  form.keys[2].txtKey.Value = "+no trigger\n";
  shown.typist.Rest();
  const auto words = [&](const char* name) {
    return dynamic_cast<KeyBox&>(*shown.typist.Widget(name)).Words().toStdString();
  };
  EXPECT_EQ(words("txtPlayHeldKey"), "Ctrl+Shift+Page Down");
  EXPECT_EQ(words("txtRewindHeldKey"), "+no trigger\u240A");
  EXPECT_EQ(words("txtForwardHeldKey"), "none");
  EXPECT_EQ(words("txtPlayStopKey"), "Press a key");
}

TEST_F(KeyBoxes, LightWhileTheirKeyIsDown) {
  const QColor amber = platform::qt::theme::kAmberKey;
  const auto rim = [&] {
    const QImage picture = shown.typist.Widget("txtSkipKey")->grab().toImage();
    return picture.pixelColor(1, picture.height() / 2);
  };
  form.keys[11].txtKey.Value = "F9";
  form.keys[11].Down = true;
  shown.typist.Rest();
  EXPECT_EQ(rim(), amber);
  form.keys[11].Down = false;
  shown.typist.Rest();
  EXPECT_NE(rim(), amber);
}

TEST_F(KeyBoxes, SayWhoOfThemHasTheKeyboard) {
  EXPECT_TRUE(form.keys[0].HasKeyboard);
  EXPECT_FALSE(form.keys[4].HasKeyboard);
  form.frmConfiguration.FocusOn(form.txtFocus);
  EXPECT_TRUE(shown.typist.Until([&] { return !form.keys[0].HasKeyboard; }));
  shown.typist.Click("txtToBeginningKey");
  EXPECT_TRUE(shown.typist.Until([&] { return form.keys[4].HasKeyboard; }));
  EXPECT_FALSE(form.keys[0].HasKeyboard);
}

}  // namespace
}  // namespace tavlo::test
