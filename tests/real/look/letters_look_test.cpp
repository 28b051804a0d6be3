#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QScreen>
#include <map>

#include "look/desktop_letters.h"
#include "platform/qt/theme.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

constexpr int kUsual = 10;
constexpr int kHuge = 24;

/// The deck under desktops with letters of several sizes.
struct DeckLetters : testing::Test {
  void Show(int points) {
    letters.Resize(points);
    shown.ShowMain();
    shown.FillQueue();
    shown.PlayDocument();
    shown.typist.Rest(300);
    ASSERT_NE(Deck(), nullptr);
  }
  void ChangeTo(int points) {
    letters.Resize(points);
    ComeToRest();
  }
  /// The window as a playing document leaves it, at the height that was stored with usual letters.
  void ShrinkToMiniPlayer(forms::Twips titleBarHeight) {
    shown.main.frameFiles.Visible = false;
    shown.main.frmMain.Height = titleBarHeight + shown.main.framePlayer.Height;
    ComeToRest();
  }
  /// On a busy machine the window manager takes its time for each of the steps in which a window
  /// and its form agree on a height.
  void ComeToRest() {
    shown.typist.Rest(300);
    shown.typist.Until([this] { return DeckHasRoom() && IsOnTheScreen() && FormKnowsTheHeight(); });
  }
  bool DeckHasRoom() const {
    const QRect deck(Deck()->mapTo(Window(), QPoint(0, 0)), Deck()->size());
    return Window()->rect().contains(deck);
  }
  bool IsOnTheScreen() const {
    return Window()->screen()->availableGeometry().contains(Window()->frameGeometry());
  }
  bool FormKnowsTheHeight() const {
    const int height = Window()->frameGeometry().height();
    return shown.main.frmMain.Height == platform::qt::ToTwips(height);
  }
  QWidget* Window() const { return shown.typist.Widget("frmMain"); }
  QWidget* Deck() const { return shown.typist.Widget("framePlayer"); }

  /// Height in pixels of the letters of everything on the deck that has any.
  std::map<const QWidget*, int> Sizes() const {
    std::map<const QWidget*, int> sizes;
    for (const QWidget* const part : Deck()->findChildren<QWidget*>()) {
      const bool hasLetters =
          qobject_cast<const QLabel*>(part) || qobject_cast<const QAbstractButton*>(part);
      if (hasLetters) sizes[part] = part->font().pixelSize();
    }
    return sizes;
  }
  void ExpectEverythingOnTheDeck() const {
    const QWidget* const deck = Deck();
    int parts = 0;
    for (const QWidget* const part : deck->findChildren<QWidget*>()) {
      if (!part->isVisible()) continue;
      ++parts;
      const QRect place(part->mapTo(deck, QPoint(0, 0)), part->size());
      EXPECT_TRUE(deck->rect().contains(place)) << part->objectName().toStdString();
    }
    EXPECT_GT(parts, 20);
    EXPECT_TRUE(DeckHasRoom()) << deck->height() << " in " << Window()->height();
    const QRect outer = Window()->frameGeometry();
    EXPECT_TRUE(IsOnTheScreen()) << outer.width() << "x" << outer.height() << " at " << outer.x()
                                 << ", " << outer.y();
    EXPECT_EQ(platform::qt::ToTwips(deck->height()), shown.main.framePlayer.Height);
  }

  DesktopLetters letters{kUsual};
  ShownWindows shown;
};

TEST_F(DeckLetters, AreAsManyTimesLargerAsThoseOfTheDesktop) {
  Show(kUsual);
  const auto usual = Sizes();
  const int height = Deck()->height();
  EXPECT_GT(usual.size(), 15u);
  ChangeTo(12);
  for (const auto& [part, size] : Sizes()) {
    EXPECT_NEAR(size, usual.at(part) * 1.2, 0.5) << part->objectName().toStdString();
  }
  EXPECT_NEAR(Deck()->height(), height * 1.2, 0.5);
  ExpectEverythingOnTheDeck();
}

TEST_F(DeckLetters, GrowNoFurtherThanTheScreenHasRoomForTheDeck) {
  Show(kUsual);
  const auto usual = Sizes();
  ChangeTo(kHuge);
  for (const auto& [part, size] : Sizes()) {
    EXPECT_GE(size, usual.at(part) * 1.4) << part->objectName().toStdString();
  }
  ExpectEverythingOnTheDeck();
  EXPECT_GT(Window()->width(), Window()->screen()->availableSize().width() * 0.9);
}

TEST_F(DeckLetters, AreLargeFromTheStartOnADesktopWithLargeLetters) {
  Show(kHuge);
  const auto fromTheStart = Sizes();
  ChangeTo(kUsual);
  for (const auto& [part, size] : Sizes()) {
    EXPECT_LE(size, fromTheStart.at(part) / 1.4) << part->objectName().toStdString();
  }
}

TEST_F(DeckLetters, DoNotShrinkBelowThoseThatTheDeckWasDrawnWith) {
  Show(kUsual);
  const auto usual = Sizes();
  ChangeTo(7);
  EXPECT_EQ(Sizes(), usual);
}

TEST_F(DeckLetters, LeaveTheWindowAsItWasWhenTheyAreUsualAgain) {
  Show(kUsual);
  const QSize before = Window()->size();
  ChangeTo(12);
  EXPECT_GT(Window()->height(), before.height());
  ChangeTo(kUsual);
  EXPECT_EQ(Window()->height(), before.height());
  EXPECT_EQ(shown.main.framePlayer.Height, 3210);
}

TEST_F(DeckLetters, LeaveTheMiniPlayerWholeAtAHeightFromATimeOfSmallerOnes) {
  Show(kUsual);
  const forms::Twips stored = shown.main.frmMain.AboveContent;
  ChangeTo(kHuge);
  ShrinkToMiniPlayer(stored);
  ExpectEverythingOnTheDeck();
  EXPECT_TRUE(FormKnowsTheHeight());
}

TEST_F(DeckLetters, LeaveTheMiniPlayerWholeWhenTheyGrowUnderIt) {
  Show(kUsual);
  ShrinkToMiniPlayer(shown.main.frmMain.AboveContent);
  ChangeTo(kHuge);
  ExpectEverythingOnTheDeck();
}

}  // namespace
}  // namespace tavlo::test
