#include "platform/qt/qt_loop.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QEvent>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "support/keys.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

using base::Timer;
using base::operator""ms;

/// Counts how often a widget paints itself.
class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget* widget) { widget->installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
};

/// A descriptor that can be read from Tell to Take.
class News {
 public:
  News() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  ~News() { ::close(descriptor_); }
  News(const News&) = delete;

  int Descriptor() const { return descriptor_; }
  void Tell() const {
    const std::uint64_t one = 1;
    EXPECT_EQ(::write(descriptor_, &one, sizeof one), sizeof one);
  }
  void Take() const {
    std::uint64_t told = 0;
    EXPECT_EQ(::read(descriptor_, &told, sizeof told), sizeof told);
  }

 private:
  int descriptor_;
};

TEST(RealLoop, ABreathPaintsAndFeedsAndRunsNoRule) {
  ShownWindows shown;
  shown.PlayDocument();
  shown.ShowMain();
  std::string ran;
  Timer feed(shown.loop, "feed", 20ms, base::TimerKind::Feed);
  Timer rule(shown.loop, "rule", 20ms);
  feed.OnTick = [&] {
    if (!ran.ends_with("feed ")) ran += "feed ";
  };
  rule.OnTick = [&] { ran += "rule "; };
  shown.main.cmdRewind.OnPress = [&] { ran += "hand "; };
  const QPoint rewind = shown.typist.Middle("cmdRewind");
  PaintCount paints(shown.typist.Widget("lblFilePositionHMS"));
  feed.Start();
  rule.Start();
  shown.loop.Post([&] { ran += "post "; });
  shown.typist.ClickUnseen(rewind);
  shown.main.lblFilePositionHMS.Value = "00:04:13";
  for (const auto end = shown.loop.Now() + 150ms; shown.loop.Now() < end;) shown.loop.Breathe();
  EXPECT_EQ(ran, "feed ");
  EXPECT_EQ(paints.count, 1);
  rule.Stop();
  feed.Stop();
  shown.typist.Rest();
  EXPECT_EQ(ran, "feed post hand ") << "what waited comes after the breath";
}

TEST(RealLoop, AWaitLastsAsLongAsItWasAsked) {
  ShownWindows shown;
  int ticks = 0;
  Timer timer(shown.loop, "t", 50ms);
  timer.OnTick = [&] { ++ticks; };
  timer.Start();
  const auto begin = shown.loop.Now();
  constexpr int kTurnsBefore = 10;
  int turns = 0;
  int turnsTooMany = 0;
  auto waitsSince = begin;
  const std::function<void()> again = [&] {
    // The first turns belong to the pass with which a wait begins; only behind it the time runs.
    if (++turns == kTurnsBefore) waitsSince = shown.loop.Now();
    turnsTooMany += turns > kTurnsBefore && shown.loop.Now() - waitsSince > 275ms ? 1 : 0;
    shown.loop.Post(again);
  };
  shown.loop.Post(again);
  shown.loop.Wait(275ms);
  const auto waited = shown.loop.Now() - begin;
  EXPECT_GE(waited, 275ms);
  // A machine with much else to do may come back late, but once there the loop turns no more: the
  // toolkit may let what is due at the same moment run first.
  EXPECT_LE(turnsTooMany, 2);
  EXPECT_GE(ticks, 1);
  EXPECT_LE(ticks, waited / 50ms);
}

TEST(RealLoop, WhatADescriptorTellsIsTakenOnceItCanBeReadAndNotInABreath) {
  ShownWindows shown;
  const News news;
  int taken = 0;
  const auto wait = shown.loop.WaitFor(news.Descriptor(), "news", [&] {
    news.Take();
    ++taken;
  });
  shown.typist.Rest();
  EXPECT_EQ(taken, 0);
  news.Tell();
  for (const auto end = shown.loop.Now() + 50ms; shown.loop.Now() < end;) shown.loop.Breathe();
  EXPECT_EQ(taken, 0);
  EXPECT_TRUE(shown.typist.Until([&] { return taken == 1; }));
  shown.typist.Rest();
  EXPECT_EQ(taken, 1);
}

TEST(RealLoop, WaitForADescriptorEndsFromWithinItsOwnCall) {
  ShownWindows shown;
  const News news;
  int calls = 0;
  std::unique_ptr<platform::DescriptorWait> wait =
      shown.loop.WaitFor(news.Descriptor(), "news", [&] {
        ++calls;
        wait.reset();
      });
  news.Tell();
  EXPECT_TRUE(shown.typist.Until([&] { return calls == 1; }));
  shown.typist.Rest();
  EXPECT_EQ(calls, 1);
}

TEST(RealLoop, RunEndsWithTheCodeThatQuitGave) {
  ShownWindows shown;
  shown.loop.Post([&] { shown.loop.Quit(3); });
  EXPECT_EQ(shown.loop.Run(), 3);
}

TEST(MessageBox, TimersGoOnUnderItAndHandsAreRefused) {
  ShownWindows shown;
  int presses = 0;
  int activations = 0;
  shown.main.cmdRewind.OnPress = [&] { ++presses; };
  shown.ShowMain();
  shown.FillQueue();
  shown.main.frmMain.OnActivate = [&] { ++activations; };
  const QPoint rewind = shown.typist.Middle("cmdRewind");
  int ticks = 0;
  Timer timer(shown.loop, "t", 250ms);
  timer.OnTick = [&] {
    ++ticks;
    if (ticks == 1) shown.typist.ClickUnseen(rewind);
    if (ticks == 2) {
      timer.Stop();
      shown.typist.Picture("message_box");
      timer.Start();
    }
    if (ticks == 3) shown.typist.KeysUnseen({keys::kEscape});
  };
  timer.Start();
  const base::Reply reply =
      shown.loop.Show({.title = "Tavlo Deck - Exit",
                       .text = "Are you sure you want to exit\r\nthe Tavlo Deck?",
                       .icon = base::Icon::Question,
                       .buttons = base::Buttons::YesNo});
  timer.Stop();
  EXPECT_EQ(reply, base::Reply::No);
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(presses, 0);
  shown.typist.Rest(200);
  EXPECT_EQ(activations, 1) << "the owner is activated once when the box closes";
  EXPECT_EQ(presses, 0) << "a click that the box refused is gone";
}

TEST(MessageBox, WhatADescriptorTellsIsTakenUnderIt) {
  ShownWindows shown;
  shown.ShowMain();
  const News news;
  bool takenUnderABox = false;
  const auto wait = shown.loop.WaitFor(news.Descriptor(), "news", [&] {
    news.Take();
    takenUnderABox = shown.loop.MessageBoxOpen();
  });
  Timer timer(shown.loop, "t", 300ms);
  timer.OnTick = [&] { shown.typist.KeysUnseen({keys::kReturn}); };
  timer.Start();
  news.Tell();
  shown.loop.Show({.title = "Tavlo Deck", .text = "!"});
  EXPECT_TRUE(takenUnderABox);
}

TEST(MessageBox, ReturnPressesTheDefaultButton) {
  ShownWindows shown;
  shown.ShowMain();
  Timer timer(shown.loop, "t", 300ms);
  timer.OnTick = [&] { shown.typist.KeysUnseen({keys::kReturn}); };
  timer.Start();
  EXPECT_EQ(shown.loop.Show({.title = "Tavlo Deck", .text = "?", .buttons = base::Buttons::YesNo}),
            base::Reply::Yes);
  EXPECT_EQ(shown.loop.Show({.title = "Tavlo Deck", .text = "!"}), base::Reply::Ok);
}

}  // namespace
}  // namespace tavlo::test
