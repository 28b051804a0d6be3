#include "platform/qt/about_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/icons.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSignSize = 72;

}  // namespace

AboutWindow::AboutWindow(forms::AboutForm& form, QtLoop& loop, Binder& binder)
    : TopWindow(form.frmAbout, loop, binder, Qt::Dialog) {
  auto* const sign = new QLabel(this);
  sign->setPixmap(ApplicationIcon().pixmap(QSize(kSignSize, kSignSize), devicePixelRatioF()));
  auto* const name = new QLabel("Tavlo Deck", this);
  name->setFont(DeckFont(26, QFont::Bold));
  auto* const version = new QLabel(this);
  auto* const description = new QLabel(this);
  description->setWordWrap(true);
  description->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  binder.Show(form.lblVersion, *version);
  binder.Show(form.lblAboutDescription, *description);

  auto* const words = new QVBoxLayout;
  words->setSpacing(6);
  words->addWidget(name);
  words->addWidget(version);
  words->addSpacing(10);
  words->addWidget(description, 1);
  auto* const top = new QHBoxLayout;
  top->setSpacing(24);
  top->addWidget(sign, 0, Qt::AlignTop);
  top->addLayout(words, 1);

  auto* const keys = new QHBoxLayout;
  keys->addStretch(1);
  for (forms::Command* const command : {&form.mnuSystemInfo, &form.mnuClose}) {
    auto* const button = new QPushButton(this);
    keys->addWidget(button);
    binder.Press(*command, *button);
  }
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(28, 28, 28, 20);
  rows->addLayout(top, 1);
  rows->addLayout(keys);
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [&form, &binder] {
    binder.ByHand(form.frmAbout, [&form] { form.frmAbout.CloseRequest(); });
  });
  Bind();
}

}  // namespace tavlo::platform::qt
