#include "platform/qt/brand_logo.h"

#include <QPainter>

namespace tavlo::platform::qt {

BrandLogo::BrandLogo(Brand brand, QWidget* parent) : QWidget(parent), brand_(brand) {}

void BrandLogo::SetHeight(int height) {
  setFixedSize(BrandSize(brand_, height));
  update();
}

void BrandLogo::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.drawPixmap(0, 0, BrandPixmap(brand_, height(), devicePixelRatioF()));
}

}  // namespace tavlo::platform::qt
