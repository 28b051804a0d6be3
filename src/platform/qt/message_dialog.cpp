#include "platform/qt/message_dialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QScreen>
#include <algorithm>

#include "platform/qt/icons.h"
#include "platform/qt/others_keyboard.h"
#include "platform/qt/quiet_box.h"
#include "platform/qt/texts.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSignSize = 48;

/// Words without the small pictures that some styles put before them.
void PlainButtons(QMessageBox& dialog) {
  for (QAbstractButton* const button : dialog.buttons()) button->setIcon(QIcon());
}

/// The toolkit asks for less than a title in bold letters takes between the keys of a frame.
void MakeRoomForTitle(QMessageBox& dialog) {
  constexpr int kKeysInLines = 7;
  QFont bold = QApplication::font("QMdiSubWindowTitleBar");
  bold.setBold(true);
  const QFontMetrics letters(bold);
  const int wanted =
      letters.horizontalAdvance(dialog.windowTitle()) + kKeysInLines * letters.height();
  const int width = std::min(wanted, dialog.screen()->availableGeometry().width() / 2);
  auto* const grid = qobject_cast<QGridLayout*>(dialog.layout());
  if (!grid) return;
  grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

void RunDialog(QMessageBox& dialog, bool ownerIsMinimized, OthersKeyboard* typing) {
  if (!typing && !ownerIsMinimized) {
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.exec();
    return;
  }
  QuietBox quiet(dialog);
  if (typing) dialog.setAttribute(Qt::WA_ShowWithoutActivating);
  if (typing) typing->WatchUnder(dialog);
  quiet.Run();
  if (typing) typing->GiveBack();
}

}  // namespace

base::Reply MessageDialogs::Run(const base::MessageBox& box, QWidget* owner,
                                OthersKeyboard* typing) {
  // To the toolkit a modal box blocks each window that does not belong to it, also a box that came
  // later and would be refused every hand.
  if (foremost_) owner = foremost_;
  // A box that belongs to a minimized window is hidden with it.
  const bool minimized = !foremost_ && owner && owner->isMinimized();
  QMessageBox dialog(minimized ? nullptr : owner);
  if (foremost_ && foremost_->windowFlags().testFlag(Qt::WindowStaysOnTopHint)) {
    dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  }
  dialog.setObjectName("messageBox");
  dialog.setWindowTitle(ToQt(box.title));
  dialog.setTextFormat(Qt::PlainText);
  dialog.setText(ToScreen(ToQt(box.text).remove(u'\r')));
  if (box.icon != base::Icon::None) {
    dialog.setIconPixmap(BoxSign(box.icon, kSignSize, dialog.devicePixelRatioF()));
  }
  const bool asks = box.buttons == base::Buttons::YesNo;
  dialog.setStandardButtons(asks ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
  if (asks) {
    dialog.setDefaultButton(box.byDefault == base::Reply::No ? QMessageBox::No : QMessageBox::Yes);
  }
  PlainButtons(dialog);
  MakeRoomForTitle(dialog);
  const QScopedValueRollback<QDialog*> open(foremost_, &dialog);
  RunDialog(dialog, minimized, typing);
  if (!asks) return base::Reply::Ok;
  const QAbstractButton* const answer = dialog.clickedButton();
  return answer && answer == dialog.button(QMessageBox::Yes) ? base::Reply::Yes : base::Reply::No;
}

}  // namespace tavlo::platform::qt
