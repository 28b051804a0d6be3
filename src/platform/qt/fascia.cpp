#include "platform/qt/fascia.h"

#include <QImageReader>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "platform/qt/binder.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

/// A picture that the user dropped into the folder may be of any size; more than this is no face.
constexpr qint64 kMostPixels = 40'000'000;

QPixmap ReadPicture(const std::string& path) {
  QImageReader reader(ToQt(path));
  const QSize size = reader.size();
  if (path.empty() || qint64{size.width()} * size.height() > kMostPixels) return {};
  return QPixmap::fromImageReader(&reader);
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

/// One of the two pictures; it shows nothing of its own and takes the clicks.
class Fascia::Half : public QWidget {
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

Fascia::Fascia(forms::MainForm& form, Binder& binder, QWidget* deck)
    : QWidget(deck),
      form_(form),
      left_(new Half(form.imageFaciaA, binder, this)),
      right_(new Half(form.imageFaciaB, binder, this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  binder.Bind(form.imageFaciaA, *left_, [this] { Show(); });
  binder.Bind(form.imageFaciaB, *right_, {});
  binder.Watch(form.listFasciaImages,
               [this] { setToolTip(ToQt(form_.listFasciaImages.Tooltip.Get())); });
  lower();
}

void Fascia::Show() {
  if (path_ == form_.imageFaciaA.Picture.Get()) return;
  path_ = form_.imageFaciaA.Picture;
  picture_ = ReadPicture(path_);
  face_ = QPixmap();
  update();
}

void Fascia::resizeEvent(QResizeEvent*) {
  left_->setGeometry(0, 0, width() / 2, height());
  right_->setGeometry(width() / 2, 0, width() - width() / 2, height());
}

void Fascia::paintEvent(QPaintEvent* event) {
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
