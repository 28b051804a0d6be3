#include "platform/qt/message_dialog.h"

#include <QMessageBox>

#include "platform/qt/texts.h"

namespace tavlo::platform::qt {
namespace {

QMessageBox::Icon IconOf(base::Icon icon) {
  switch (icon) {
    case base::Icon::Information:
      return QMessageBox::Information;
    case base::Icon::Question:
      return QMessageBox::Question;
    case base::Icon::Warning:
      return QMessageBox::Warning;
    case base::Icon::Critical:
      return QMessageBox::Critical;
    case base::Icon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

}  // namespace

base::Reply RunMessageDialog(const base::MessageBox& box, QWidget* owner) {
  QMessageBox dialog(owner);
  dialog.setObjectName("messageBox");
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.setWindowTitle(ToQt(box.title));
  dialog.setTextFormat(Qt::PlainText);
  dialog.setText(ToQt(box.text).remove(u'\r'));
  dialog.setIcon(IconOf(box.icon));
  if (box.buttons == base::Buttons::Ok) {
    dialog.setStandardButtons(QMessageBox::Ok);
    dialog.exec();
    return base::Reply::Ok;
  }
  dialog.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  dialog.setDefaultButton(QMessageBox::Yes);
  return dialog.exec() == QMessageBox::Yes ? base::Reply::Yes : base::Reply::No;
}

}  // namespace tavlo::platform::qt
