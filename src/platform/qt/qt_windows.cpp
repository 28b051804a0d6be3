#include "platform/qt/qt_windows.h"

#include <QApplication>
#include <QFontMetrics>
#include <QImageReader>
#include <QStyle>
#include <algorithm>
#include <cstdio>

#include "platform/qt/desk_style.h"
#include "platform/qt/desktop_limits.h"
#include "platform/qt/icons.h"
#include "platform/qt/qt_loop.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kMostMegabytesOfPicture = 128;

/// Told on the standard error, since a message box could not be read either.
void TellOfMissingFonts() {
  if (QFontMetrics(QApplication::font()).inFont(QChar('A'))) return;
  std::fputs("tavlodeck: There are no fonts, so nothing that the deck writes can be read.\n",
             stderr);
}

}  // namespace

void PrepareApplication() {
  QApplication::setApplicationName("Tavlo Deck");
  QGuiApplication::setDesktopFileName("tavlodeck");
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QApplication::setWindowIcon(ApplicationIcon());
  if (QApplication::style()->name() == "fusion") QApplication::setStyle(new DeskStyle);
  TellOfMissingFonts();
  // Some kinds of picture do not say how large they are before they are read.
  QImageReader::setAllocationLimit(kMostMegabytesOfPicture);
  // Where no desktop has chosen a font, the toolkit falls back on a generic one.
  QFont font = QApplication::font();
  if (font.family() == "Sans Serif" || font.family() == "Sans") {
    font.setFamilies({"Inter", font.family()});
    font.setPointSizeF(10);
    QApplication::setFont(font);
  }
}

QtWindows::QtWindows(QtLoop& loop, Hush& hush, forms::MainForm& main, forms::SplashForm& splash,
                     forms::AboutForm& about, forms::ConfigurationForm& configuration)
    : loop_(loop),
      binder_(loop, hush),
      deck_(main, loop, binder_),
      splash_(splash, loop, binder_),
      about_(about, loop, binder_),
      configuration_(configuration, loop, binder_),
      order_{&about_, &configuration_, &deck_, &splash_} {
  if (!WindowsCanBePlaced()) {
    configuration.chkAlwaysOnTop.Visible = false;
    configuration.cmdCenterMiniPlayer.Visible = false;
    configuration.chkMinimizeMiniPlayer.Visible = false;
  }
  about_.StandBefore(deck_);
  loop.ShowChanges = [this] { binder_.ShowChanges(); };
  loop.BoxOwner = [this]() -> QWidget* { return Foremost(); };
  loop.OnLastBoxClosed = [this] {
    if (TopWindow* const window = Foremost()) window->BoxClosed();
  };
}

QtWindows::~QtWindows() {
  loop_.ShowChanges = nullptr;
  loop_.BoxOwner = nullptr;
  loop_.OnLastBoxClosed = nullptr;
}

TopWindow* QtWindows::Foremost() {
  const auto found = std::find_if(order_.begin(), order_.end(),
                                  [](const TopWindow* window) { return window->isVisible(); });
  return found == order_.end() ? nullptr : *found;
}

}  // namespace tavlo::platform::qt
