#include "platform/qt/fascia_panel.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <string>

#include "platform/qt/binder.h"
#include "platform/qt/colours.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

/// The largest share of the colour's brightness, 0 to 1, at which the faintest lettering of the
/// deck is readable on it.
double ReadableLight(const QColor& brightest) {
  for (double light = 1; light > 0; light -= 0.02) {
    if (Contrast(theme::kQuietText, Mixed(Qt::black, brightest, light)) >= kReadableContrast) {
      return light;
    }
  }
  return 0;
}

QColor Brightest(const QImage& picture) {
  // Scaled down to about the size of letters: a single bright pixel makes no letter unreadable.
  const QImage coarse = picture.scaled(120, 30, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                            .convertToFormat(QImage::Format_RGB32);
  QColor brightest = Qt::black;
  double most = 0;
  for (int y = 0; y < coarse.height(); ++y) {
    for (int x = 0; x < coarse.width(); ++x) {
      const QColor colour = coarse.pixelColor(x, y);
      const double light = Luminance(colour);
      if (light <= most) continue;
      most = light;
      brightest = colour;
    }
  }
  return brightest;
}

/// The picture, darkened until the deck's lettering, which is light, is readable everywhere on it.
QImage Darkened(const QImage& picture) {
  const double light = ReadableLight(Brightest(picture));
  if (light >= 1) return picture;
  QImage dark(picture.size(), QImage::Format_RGB32);
  dark.fill(Qt::black);
  QPainter painter(&dark);
  painter.setOpacity(light);
  painter.drawImage(0, 0, picture);
  return dark;
}

QPixmap PlainFace(QSize size) {
  QPixmap face(size);
  QPainter painter(&face);
  QLinearGradient shade(0, 0, 0, size.height());
  shade.setColorAt(0, theme::kDeckTop);
  shade.setColorAt(1, theme::kDeckBottom);
  painter.fillRect(face.rect(), shade);
  return face;
}

QPixmap Cover(const QPixmap& picture, QSize size) {
  const QPixmap scaled =
      picture.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
  const QPoint corner((scaled.width() - size.width()) / 2, (scaled.height() - size.height()) / 2);
  return scaled.copy(QRect(corner, size));
}

}  // namespace

/// One half of the face: it takes the clicks, and the panel behind it paints the picture.
class FasciaPanel::Half : public QWidget {
 public:
  Half(forms::Pane& pane, Binder& binder, QWidget* parent)
      : QWidget(parent), pane_(pane), binder_(binder) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override { event->accept(); }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint())) return;
    binder_.ByHand(pane_, [this] { pane_.Click(); });
  }

 private:
  forms::Pane& pane_;
  Binder& binder_;
};

FasciaPanel::FasciaPanel(forms::MainForm& form, Binder& binder, QWidget* deck)
    : QWidget(deck),
      form_(form),
      reader_(Darkened, [this](const QImage& picture) { Show(picture); }),
      left_(new Half(form.imageFaciaA, binder, this)),
      right_(new Half(form.imageFaciaB, binder, this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  binder.Bind(form.imageFaciaA, *left_, [this] { Read(); });
  binder.Bind(form.imageFaciaB, *right_, {});
  binder.Watch(form.listFasciaImages,
               [this] { setToolTip(ToQt(form_.listFasciaImages.Tooltip.Get())); });
  lower();
}

void FasciaPanel::Read() {
  const std::string& path = form_.imageFaciaA.Picture;
  if (!path.empty()) reader_.Read(path);
}

void FasciaPanel::Show(const QImage& picture) {
  picture_ = QPixmap::fromImage(picture);
  face_ = QPixmap();
  update();
}

void FasciaPanel::resizeEvent(QResizeEvent*) {
  left_->setGeometry(0, 0, width() / 2, height());
  right_->setGeometry(width() / 2, 0, width() - width() / 2, height());
}

void FasciaPanel::paintEvent(QPaintEvent* event) {
  const QSize size = this->size() * devicePixelRatioF();
  if (face_.size() != size) {
    face_ = picture_.isNull() ? PlainFace(size) : Cover(picture_, size);
    face_.setDevicePixelRatio(devicePixelRatioF());
  }
  QPainter painter(this);
  painter.setClipRect(event->rect());
  painter.drawPixmap(0, 0, face_);
}

}  // namespace tavlo::platform::qt
