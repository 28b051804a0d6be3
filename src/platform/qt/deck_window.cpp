#include "platform/qt/deck_window.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include "forms/accessible_name.h"
#include "platform/qt/binder.h"
#include "platform/qt/focus_keeper.h"
#include "platform/qt/player_panel.h"
#include "platform/qt/state_speaker.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"
#include "platform/qt/work_frames.h"

namespace tavlo::platform::qt {
namespace {

/// The least outer height of the full shape: above it a window cannot be the mini-player's.
constexpr forms::Twips kLeastFullHeight = 6001;
constexpr int kLeastWidth = 860;

int PixelsToHold(forms::Twips length) { return (length + kTwipsInPixel - 1) / kTwipsInPixel; }

}  // namespace

DeckWindow::DeckWindow(forms::MainForm& form, QtLoop& loop, Binder& binder)
    : TopWindow(form.frmMain, loop, binder),
      form_(form),
      menus_(new QMenuBar(this)),
      player_(new PlayerPanel(form, binder, this)) {
  menus_->setNativeMenuBar(false);
  AddMenus(binder);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  // The form says how high the window is; a layout that insisted on its own least height would
  // fight it while the shape changes.
  rows->setSizeConstraint(QLayout::SetNoConstraint);
  rows->setMenuBar(menus_);
  rows->addWidget(player_);
  rows->addWidget(new WorkFrames(form, binder, this), 1);
  rows->addStretch();
  AddFocusKeeper(binder);
  new StateSpeaker(form, binder, this);
  binder.Watch(form.frameFiles, [this] { KeepLeastSize(); });
  OnSettled = [this] {
    KeepLeastSize();
    MeasureFrame();
  };
  Bind();
}

void DeckWindow::AddMenus(Binder& binder) {
  const auto add = [&](forms::Pane& pane, std::initializer_list<forms::Command*> entries) {
    QMenu* const menu = menus_->addMenu(ToQt(pane.Caption.Get()));
    menu->setObjectName(ToQt(pane.Name));
    menu->setAccessibleName(WithoutMnemonic(pane.Caption.Get()));
    bool first = true;
    for (forms::Command* const entry : entries) {
      if (!first) menu->addSeparator();
      first = false;
      binder.Choose(*entry, *menu->addAction(QString()));
    }
    binder.Watch(pane, [menu, &pane] { menu->menuAction()->setEnabled(pane.Enabled); });
  };
  add(form_.mnuFile,
      {&form_.mnuConfiguration, &form_.mnuMinimize, &form_.mnuAbout, &form_.mnuExit});
  add(form_.mnuView,
      {&form_.mnuViewQueue, &form_.mnuViewCompleted, &form_.mnuViewImport, &form_.mnuViewFtp});
  binder.Choose(form_.mnuReport, *menus_->addAction(QString()));
}

void DeckWindow::AddFocusKeeper(Binder& binder) {
  auto* const keeper = new FocusKeeper(this);
  keeper->setAccessibleName(ToQt(forms::AccessibleName(form_.txtFocus)));
  binder.Bind(form_.txtFocus, *keeper, {});
}

void DeckWindow::KeepLeastSize() {
  const QMargins margins = windowHandle() ? windowHandle()->frameMargins() : QMargins();
  const int least = form_.frameFiles.Visible
                        ? PixelsToHold(kLeastFullHeight) - margins.top() - margins.bottom()
                        : 1;
  const QSize size = QSize(kLeastWidth, least).boundedTo(screen()->availableSize());
  if (minimumSize() != size) setMinimumSize(size);
}

void DeckWindow::MeasureFrame() {
  const QMargins margins = windowHandle()->frameMargins();
  form_.frmMain.AboveContent = ToTwips(margins.top() + menus_->height() + margins.bottom());
}

}  // namespace tavlo::platform::qt
