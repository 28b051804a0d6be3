#include "platform/qt/message_dialog.h"

#include <QAbstractButton>
#include <QMessageBox>

#include "platform/qt/icons.h"
#include "platform/qt/texts.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSignSize = 48;

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
    dialog.setIconPixmap(BoxSign(box.icon, kSignSize, dialog.devicePixelRatioF()));
  }
  if (box.buttons == base::Buttons::Ok) {
    dialog.setStandardButtons(QMessageBox::Ok);
    PlainButtons(dialog);
    dialog.exec();
    return base::Reply::Ok;
  }
  dialog.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  dialog.setDefaultButton(box.byDefault == base::Reply::No ? QMessageBox::No : QMessageBox::Yes);
  PlainButtons(dialog);
  return dialog.exec() == QMessageBox::Yes ? base::Reply::Yes : base::Reply::No;
}

}  // namespace tavlo::platform::qt
