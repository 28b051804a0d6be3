#pragma once

#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_windows.h"
#include "support/counted_hush.h"
#include "support/typist.h"

namespace tavlo::test {

/// All forms with their real windows, and hands to use them. Nothing stands behind the forms: a
/// test hangs its own handlers.
struct ShownWindows {
  ShownWindows();

  /// Shows the main window in the middle of the screen, with the keys of an idle deck.
  void ShowMain();
  /// Fills the Queue list with the documents of an ordinary morning.
  void FillQueue();
  /// The deck while a document plays.
  void PlayDocument();
  /// The place on the screen of a row of the Queue list.
  QPoint QueueRow(int row);
  /// Clicks while the loop is in a long breath, which ends when the click has come. A window
  /// manager that takes a press first hands it on with the pointer where that is by then, so the
  /// next click has to wait for this one.
  void ClickInABreath(QPoint place);

  platform::qt::QtLoop loop;
  forms::MainForm main{loop};
  forms::SplashForm splash{loop};
  forms::AboutForm about{loop};
  forms::ConfigurationForm configuration{loop};
  CountedHush hush;
  platform::qt::QtWindows windows{loop, hush, main, splash, about, configuration};
  Typist typist{loop};
};

}  // namespace tavlo::test
