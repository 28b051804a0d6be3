#include "platform/qt/message_dialog.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPainter>

#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kIconSize = 44;

struct Sign {
  QColor colour;
  QChar letter;
};

Sign SignOf(base::Icon icon) {
  switch (icon) {
    case base::Icon::Question:
      return {theme::kTeal.darker(140), u'?'};
    case base::Icon::Warning:
      return {QColor(0xC9, 0x7A, 0x12), u'!'};
    case base::Icon::Critical:
      return {QColor(0xC0, 0x39, 0x2B), u'\u00D7'};
    case base::Icon::Information:
    case base::Icon::None:
      break;
  }
  return {QColor(0x2F, 0x6F, 0xB5), u'i'};
}

QPixmap IconPixmap(base::Icon icon, double ratio) {
  QPixmap pixmap(QSize(kIconSize, kIconSize) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  const Sign sign = SignOf(icon);
  painter.setPen(Qt::NoPen);
  painter.setBrush(sign.colour);
  painter.drawEllipse(2, 2, kIconSize - 4, kIconSize - 4);
  painter.setPen(Qt::white);
  painter.setFont(DeckFont(26, QFont::Bold));
  painter.drawText(QRect(0, 0, kIconSize, kIconSize), Qt::AlignCenter, sign.letter);
  return pixmap;
}

/// Words without the small pictures that some styles put before them.
void PlainButtons(QMessageBox& dialog) {
  for (QAbstractButton* const button : dialog.buttons()) button->setIcon(QIcon());
}

}  // namespace

base::Reply RunMessageDialog(const base::MessageBox& box, QWidget* owner) {
  QMessageBox dialog(owner);
  dialog.setObjectName("messageBox");
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.setWindowTitle(ToQt(box.title));
  dialog.setTextFormat(Qt::PlainText);
  dialog.setText(ToQt(box.text).remove(u'\r'));
  if (box.icon != base::Icon::None) {
    dialog.setIconPixmap(IconPixmap(box.icon, dialog.devicePixelRatioF()));
  }
  if (box.buttons == base::Buttons::Ok) {
    dialog.setStandardButtons(QMessageBox::Ok);
    PlainButtons(dialog);
    dialog.exec();
    return base::Reply::Ok;
  }
  dialog.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  dialog.setDefaultButton(QMessageBox::Yes);
  PlainButtons(dialog);
  return dialog.exec() == QMessageBox::Yes ? base::Reply::Yes : base::Reply::No;
}

}  // namespace tavlo::platform::qt
