#include "platform/qt/about_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/binder.h"
#include "platform/qt/icons.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSignSize = 72;
constexpr int kSide = 28;

/// The dark heading of the box: the deck's own face with its sign.
class Heading : public QWidget {
 public:
  explicit Heading(QWidget* parent) : QWidget(parent) {
    setFixedHeight(kSignSize + 2 * 24);
    QPalette light = palette();
    light.setColor(QPalette::WindowText, theme::kText);
    setPalette(light);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QLinearGradient shade(0, 0, 0, height());
    shade.setColorAt(0, theme::kDeckTop);
    shade.setColorAt(1, theme::kDeckBottom);
    painter.fillRect(rect(), shade);
    PaintSign(painter, QRectF(kSide, 24, kSignSize, kSignSize));
  }
};

QWidget* HeadingOf(forms::AboutForm& form, Binder& binder, QWidget* parent) {
  auto* const heading = new Heading(parent);
  auto* const name = new QLabel("Tavlo Deck", heading);
  name->setFont(DeckFont(28, QFont::Bold));
  auto* const version = new QLabel(heading);
  QPalette quiet = heading->palette();
  quiet.setColor(QPalette::WindowText, theme::kQuietText);
  version->setPalette(quiet);
  binder.Show(form.lblVersion, *version);
  auto* const words = new QVBoxLayout(heading);
  words->setContentsMargins(kSide + kSignSize + 22, 0, kSide, 0);
  words->setSpacing(4);
  words->addStretch(1);
  words->addWidget(name);
  words->addWidget(version);
  words->addStretch(1);
  return heading;
}

}  // namespace

AboutWindow::AboutWindow(forms::AboutForm& form, QtLoop& loop, Binder& binder)
    : TopWindow(form.frmAbout, loop, binder, Qt::Dialog) {
  auto* const description = new QLabel(this);
  description->setWordWrap(true);
  description->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  binder.Show(form.lblAboutDescription, *description);
  // In large letters the text asks for a higher window than the form does.
  const int line = ToPixels(form.frmAbout.Width) - 2 * kSide;
  binder.Watch(form.lblAboutDescription, [description, line] {
    description->setMinimumHeight(std::max(0, description->heightForWidth(line)));
  });

  auto* const keys = new QHBoxLayout;
  keys->setSpacing(10);
  keys->addStretch(1);
  for (forms::Command* const command : {&form.mnuSystemInfo, &form.mnuClose}) {
    auto* const button = new QPushButton(this);
    button->setMinimumWidth(96);
    keys->addWidget(button);
    binder.Press(*command, *button);
  }
  auto* const body = new QVBoxLayout;
  body->setContentsMargins(kSide, 22, kSide, 20);
  body->addWidget(description, 1);
  body->addLayout(keys);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(HeadingOf(form, binder, this));
  rows->addLayout(body, 1);
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [&form, &binder] {
    binder.ByHand(form.frmAbout, [&form] { form.frmAbout.CloseRequest(); });
  });
  Bind();
}

}  // namespace tavlo::platform::qt
