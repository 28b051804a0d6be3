#include "platform/qt/choice_box.h"

#include <QHelpEvent>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QToolTip>

#include "platform/qt/texts.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kRoomForLetters = 11;
constexpr int kLeastChoiceWidth = 200;

}  // namespace

ChoiceBox::ChoiceBox(QWidget* parent) : QComboBox(parent) {
  setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(kRoomForLetters);
  setMinimumWidth(kLeastChoiceWidth);
}

QString ChoiceBox::Fitting() const {
  QStyleOptionComboBox option;
  initStyleOption(&option);
  const QRect place =
      style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
  return fontMetrics().elidedText(currentText(), Qt::ElideRight, place.width() - 2);
}

bool ChoiceBox::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || Fitting() == currentText()) {
    return QComboBox::event(event);
  }
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                     ToTooltip(toolTip() + ": " + currentText()), this);
  return true;
}

void ChoiceBox::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionComboBox option;
  initStyleOption(&option);
  option.currentText = Fitting();
  painter.drawComplexControl(QStyle::CC_ComboBox, option);
  painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

}  // namespace tavlo::platform::qt
