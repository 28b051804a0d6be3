#include "platform/qt/splash_window.h"

#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <cmath>

#include "platform/qt/binder.h"
#include "platform/qt/colours.h"
#include "platform/qt/icons.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSignSize = 84;
constexpr int kWaveHeight = 96;

/// The program's sign; a click on it ends the wait.
class Sign : public QPushButton {
 public:
  Sign(forms::Pane& pane, Binder& binder, QWidget* parent) : QPushButton(parent) {
    setFixedSize(kSignSize, kSignSize);
    setMouseTracking(true);
    setAccessibleName(ToQt(pane.Heard.Get()));
    connect(this, &QPushButton::clicked, this,
            [&pane, &binder] { binder.ByHand(pane, [&pane] { pane.Click(); }); });
    binder.Bind(pane, *this, {});
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    PaintSign(painter, rect());
  }
};

/// Speech that becomes lines of writing. As far as the bar has come it is lit.
class WaveBar : public QProgressBar {
 public:
  explicit WaveBar(QWidget* parent) : QProgressBar(parent) {
    setFixedHeight(kWaveHeight);
    setTextVisible(false);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double lit = 1.0 * width() * (value() - minimum()) / (maximum() - minimum());
    const auto draw = [&](const QColor& voice, const QColor& writing) {
      PaintVoice(painter, voice);
      PaintWriting(painter, writing);
    };
    draw(Mixed(theme::kDeckBottom, theme::kAmber, 0.26),
         Mixed(theme::kDeckBottom, theme::kQuietText, 0.2));
    painter.setClipRect(QRectF(0, 0, lit, height()));
    draw(theme::kAmber, theme::kTeal);
  }

 private:
  static constexpr int kPitch = 7;
  static constexpr int kThickness = 4;

  /// Syllables: a slow swell with a quick one in it.
  void PaintVoice(QPainter& painter, const QColor& colour) const {
    painter.setBrush(colour);
    const int end = width() * 11 / 20;
    for (int x = 0; x + kThickness <= end; x += kPitch) {
      const double swell = std::abs(std::sin(x * 0.041) * std::cos(x * 0.0127 + 0.4));
      const double syllable = 0.55 + 0.45 * std::sin(x * 0.37);
      const double length = 5 + (height() - 10) * swell * syllable;
      painter.drawRoundedRect(QRectF(x, (height() - length) / 2, kThickness, length), 2, 2);
    }
  }

  void PaintWriting(QPainter& painter, const QColor& colour) const {
    painter.setBrush(colour);
    constexpr double kLines[] = {1, 0.86, 0.94, 0.52};
    const double left = width() * 12 / 20.0;
    double top = height() / 2.0 - 31;
    for (const double length : kLines) {
      painter.drawRoundedRect(QRectF(left, top, (width() - left) * length, 6), 3, 3);
      top += 18;
    }
  }
};

QLabel* LabelOf(QWidget* parent, const QString& text, const QFont& font, const QColor& colour) {
  auto* const label = new QLabel(text, parent);
  label->setFont(font);
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
  auto* const words = new QVBoxLayout;
  words->setSpacing(4);
  words->addStretch(1);
  words->addWidget(LabelOf(this, "Tavlo Deck", DeckFont(36, QFont::Bold), theme::kText));
  QLabel* const version = LabelOf(this, {}, DeckFont(13), theme::kQuietText);
  words->addWidget(version);
  words->addStretch(1);
  auto* const heading = new QHBoxLayout;
  heading->setSpacing(24);
  auto* const sign = new Sign(form.picIcon, binder, this);
  heading->addWidget(sign);
  for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
    connect(new QShortcut(key, this), &QShortcut::activated, sign, [sign] { sign->click(); });
  }
  heading->addLayout(words, 1);

  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(40, 40, 40, 36);
  rows->addLayout(heading);
  rows->addStretch(1);
  auto* const progress = new WaveBar(this);
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
