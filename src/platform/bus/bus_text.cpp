#include "platform/bus/bus_text.h"

#include <QList>
#include <QString>

#include "platform/qt/texts.h"

namespace tavlo::platform {

std::string ToBusText(std::string_view text) {
  auto points = qt::ToOneLine(text).toUcs4();
  for (auto& point : points) {
    if (QChar::isNonCharacter(point)) point = QChar::ReplacementCharacter;
  }
  return QString::fromUcs4(reinterpret_cast<const char32_t*>(points.constData()), points.size())
      .toStdString();
}

}  // namespace tavlo::platform
