#include "platform/qt/splash_window.h"

#include <QLabel>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QProgressBar>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/icons.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSignSize = 96;

/// The program's sign; a click on it ends the wait.
class Sign : public QWidget {
 public:
  Sign(forms::Pane& pane, Binder& binder, QWidget* parent)
      : QWidget(parent), pane_(pane), binder_(binder) {
    setFixedSize(kSignSize, kSignSize);
    setMouseTracking(true);
    setAccessibleName("Tavlo Deck");
    binder.Bind(pane, *this, {});
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    PaintSign(painter, rect());
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint())) return;
    binder_.ByHand(pane_, [this] { pane_.Click(); });
  }

 private:
  forms::Pane& pane_;
  Binder& binder_;
};

/// A thin bar without figures.
class ThinBar : public QProgressBar {
 public:
  explicit ThinBar(QWidget* parent) : QProgressBar(parent) {
    setFixedHeight(4);
    setTextVisible(false);
    setAccessibleName("Starting");
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), theme::kWell);
    painter.fillRect(0, 0, width() * (value() - minimum()) / (maximum() - minimum()), height(),
                     theme::kTeal);
  }
};

QLabel* LabelOf(QWidget* parent, const QString& text, const QFont& font, const QColor& colour) {
  auto* const label = new QLabel(text, parent);
  label->setFont(font);
  label->setAlignment(Qt::AlignHCenter);
  QPalette colours = label->palette();
  colours.setColor(QPalette::WindowText, colour);
  label->setPalette(colours);
  label->setMouseTracking(true);
  return label;
}

}  // namespace

SplashWindow::SplashWindow(forms::SplashForm& form, QtLoop& loop, Binder& binder)
    : TopWindow(form.frmInitSplash, loop, binder, Qt::SplashScreen | Qt::FramelessWindowHint) {
  setMouseTracking(true);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(40, 36, 40, 32);
  rows->setSpacing(6);
  rows->addWidget(new Sign(form.picIcon, binder, this), 0, Qt::AlignHCenter);
  rows->addSpacing(14);
  rows->addWidget(LabelOf(this, "Tavlo Deck", DeckFont(30, QFont::Bold), theme::kText));
  QLabel* const version = LabelOf(this, {}, DeckFont(13), theme::kQuietText);
  rows->addWidget(version);
  rows->addStretch(1);
  auto* const progress = new ThinBar(this);
  rows->addWidget(progress);
  binder.Show(form.lblVersion, *version);
  binder.Progress(form.ProgressBar1, *progress);
  Bind();
}

void SplashWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QLinearGradient shade(0, 0, 0, height());
  shade.setColorAt(0, theme::kDeckTop);
  shade.setColorAt(1, theme::kDeckBottom);
  painter.fillRect(rect(), shade);
  painter.setPen(theme::kWellEdge.lighter(140));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace tavlo::platform::qt
