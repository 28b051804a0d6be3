#include "platform/qt/deck_window.h"

#include <QAction>
#include <QEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "forms/accessible_name.h"
#include "platform/qt/binder.h"
#include "platform/qt/focus_keeper.h"
#include "platform/qt/player_panel.h"
#include "platform/qt/state_speaker.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"
#include "platform/qt/work_frames.h"
#include "window/deck_in_words.h"

namespace tavlo::platform::qt {
namespace {

/// The least outer height of the full shape: above it a window cannot be the mini-player's.
constexpr forms::Twips kLeastFullHeight = 6001;
constexpr int kFrameSides = 12;  ///< Room for a window's frame, left and right together.
constexpr double kMostOfHeight =
    0.4;  ///< Of the screen's, for a deck that grows: lists need room too.

int PixelsToHold(forms::Twips length) { return (length + kTwipsInPixel - 1) / kTwipsInPixel; }

}  // namespace

DeckWindow::DeckWindow(forms::MainForm& form, QtLoop& loop, Binder& binder)
    : TopWindow(form.frmMain, loop, binder),
      form_(form),
      menus_(new QMenuBar(this)),
      player_(new PlayerPanel(form, binder, this)),
      drawnHeight_(form.framePlayer.Height) {
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
  AddSpeakers(binder);
  binder.Watch(form.frameFiles, [this] { KeepLeastSize(); });
  OnSettled = [this] {
    FitDeck();
    KeepLeastSize();
    MeasureFrame();
  };
  FitDeck();
  Bind();
}

void DeckWindow::changeEvent(QEvent* event) {
  TopWindow::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  FitDeck();
  KeepLeastSize();
}

void DeckWindow::FitDeck() {
  const QSize space = screen()->availableSize();
  const forms::Twips before = form_.framePlayer.Height;
  player_->FitInto({space.width() - kFrameSides, static_cast<int>(space.height() * kMostOfHeight)});
  const forms::Twips growth = form_.framePlayer.Height - before;
  if (growth == 0) return;
  form_.frmMain.Height = form_.frmMain.Height + growth;
  const QMargins frame = Frame();
  const int least = player_->LeastWidth() + frame.left() + frame.right();
  form_.frmMain.Width = std::max(form_.frmMain.Width.Get(), ToTwips(least));
}

QMargins DeckWindow::Frame() const {
  return windowHandle() ? windowHandle()->frameMargins() : QMargins();
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

void DeckWindow::AddSpeakers(Binder& binder) {
  new StateSpeaker(
      [this] { return window::DeckInWords(form_); },
      {&form_.frmMain, &form_.slPosition, &form_.StatusBar1, &form_.cmdPlay, &form_.cmdSkip,
       &form_.cmdComplete, &form_.lblFilePositionHMS, &form_.lblFileLengthHMS},
      binder, this);
  new StateSpeaker(
      [this] {
        return form_.lblFtpParsing.Visible ? form_.lblFtpParsing.Value.Get() : std::string();
      },
      {&form_.lblFtpParsing}, binder, this);
  new StateSpeaker([this] { return form_.lblNotice.Value.Get(); }, {&form_.lblNotice}, binder,
                   this);
}

void DeckWindow::KeepLeastSize() {
  const QSize least =
      QSize(player_->LeastWidth(), LeastHeight()).boundedTo(screen()->availableSize());
  if (minimumSize() != least) setMinimumSize(least);
}

int DeckWindow::LeastHeight() const {
  const forms::Twips deck = form_.framePlayer.Height;
  if (form_.frameFiles.Visible) {
    const QMargins margins = Frame();
    const forms::Twips grown = deck - drawnHeight_;
    return PixelsToHold(kLeastFullHeight + grown) - margins.top() - margins.bottom();
  }
  // The height that is stored for the mini-player may come from a time of smaller letters.
  return player_->Scale().Grown() ? menus_->height() + ToPixels(deck) : 1;
}

void DeckWindow::MeasureFrame() {
  const QMargins margins = Frame();
  form_.frmMain.AboveContent = ToTwips(margins.top() + menus_->height() + margins.bottom());
}

}  // namespace tavlo::platform::qt
