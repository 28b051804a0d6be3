#include "platform/qt/work_frames.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/table_list.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSide = 16;
constexpr int kComboWidth = 200;
/// Both sides of a key's caption together; some styles leave next to nothing.
constexpr int kKeyPadding = 28;

}  // namespace

WorkFrames::WorkFrames(forms::MainForm& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder), frames_(new QVBoxLayout(this)) {
  frames_->setContentsMargins(kSide, 12, kSide, kSide);
  AddQueue();
  AddCompleted();
  AddImport();
  AddFtp();
  binder.Frame(form.frameFiles, *this);
}

WorkFrames::Frame WorkFrames::AddFrame(forms::Pane& pane) {
  Frame frame{.widget = new QWidget(this), .rows = nullptr, .heading = new QHBoxLayout};
  frame.rows = new QVBoxLayout(frame.widget);
  frame.rows->setContentsMargins(0, 0, 0, 0);
  frame.rows->setSpacing(8);
  frame.rows->addLayout(frame.heading);
  auto* const caption = new QLabel(frame.widget);
  QFont bold = caption->font();
  bold.setWeight(QFont::DemiBold);
  caption->setFont(bold);
  caption->setMinimumHeight(28);
  frame.heading->addWidget(caption);
  frame.heading->addStretch(1);
  frames_->addWidget(frame.widget, 1);
  binder_.Frame(pane, *frame.widget, caption);
  return frame;
}

void WorkFrames::AddKeys(QHBoxLayout& row, std::initializer_list<forms::Command*> commands) {
  for (forms::Command* const command : commands) {
    auto* const button = new QPushButton(this);
    button->setAutoDefault(false);
    row.addWidget(button);
    binder_.Press(*command, *button);
    binder_.Watch(*command, [button] {
      const QString caption = button->text().remove('&');
      button->setMinimumWidth(button->fontMetrics().horizontalAdvance(caption) + kKeyPadding);
    });
  }
}

void WorkFrames::AddRefresh(QHBoxLayout& row, forms::Command& command) {
  AddKeys(row, {&command});
  auto* const button = static_cast<QPushButton*>(binder_.WidgetOf(command));
  binder_.Watch(command, [button] { button->setShortcut(Qt::Key_F5); });
}

void WorkFrames::AddCombo(QHBoxLayout& row, forms::Table& table) {
  auto* const box = new QComboBox(this);
  box->setMinimumWidth(kComboWidth);
  row.addWidget(box);
  binder_.Pick(table, *box);
}

void WorkFrames::AddQueue() {
  const Frame frame = AddFrame(form_.frameInQueue);
  AddRefresh(*frame.heading, form_.cmdUpdateFileList);
  frame.rows->addWidget(new TableList(form_.listViewInQueue, binder_, frame.widget), 1);
  frame.rows->addStretch();
}

void WorkFrames::AddCompleted() {
  const Frame frame = AddFrame(form_.frameCompleted);
  AddKeys(*frame.heading,
          {&form_.cmdMoveToQueue, &form_.cmdDeleteOneCompleted, &form_.cmdDeleteAllCompleted});
  frame.rows->addWidget(new TableList(form_.listViewCompleted, binder_, frame.widget), 1);
}

void WorkFrames::AddImport() {
  const Frame frame = AddFrame(form_.frameImport);
  AddRefresh(*frame.heading, form_.cmdRefreshImportList);
  frame.rows->addWidget(new TableList(form_.listViewImport, binder_, frame.widget), 1);
  auto* const keys = new QHBoxLayout;
  AddKeys(*keys, {&form_.cmdSendImportFileToQueue, &form_.cmdSendAllImportFilesToQueue,
                  &form_.cmdDeleteOneImportFile, &form_.cmdDeleteAllImportFile});
  keys->addStretch(1);
  auto* const link = new QCheckBox(frame.widget);
  keys->addWidget(link);
  binder_.Tick(form_.chkImportSynchronize, *link);
  frame.rows->addLayout(keys);
}

void WorkFrames::AddFtp() {
  const Frame frame = AddFrame(form_.frameFtp);
  AddCombo(*frame.heading, form_.comboFtpServerNames);
  AddCombo(*frame.heading, form_.comboFtpFileTypesToList);
  AddKeys(*frame.heading, {&form_.bConnect});
  frame.rows->addStretch(1);
}

}  // namespace tavlo::platform::qt
