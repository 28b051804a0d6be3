#pragma once

#include <QProxyStyle>

namespace tavlo::platform::qt {

/// The toolkit's own style, where no desktop brings another one, with boxes to tick whose edge can
/// be seen on a light and on a dark page.
class DeskStyle : public QProxyStyle {
 public:
  DeskStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace tavlo::platform::qt
