#include "platform/qt/work_frames.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/busy_sign.h"
#include "platform/qt/choice_box.h"
#include "platform/qt/faded_inks.h"
#include "platform/qt/ftp_panel.h"
#include "platform/qt/import_panel.h"
#include "platform/qt/roomy_key.h"
#include "platform/qt/table_list.h"
#include "platform/qt/theme.h"
#include "platform/qt/wrapping_row.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSide = 16;
constexpr int kBeforeDirectory = 12;

}  // namespace

WorkFrames::WorkFrames(forms::MainForm& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder), frames_(new QVBoxLayout(this)) {
  frames_->setContentsMargins(kSide, 12, kSide, kSide);
  AddQueue();
  AddCompleted();
  AddImport();
  AddFtp();
  binder.Frame(form.frameFiles, *this);
  new BusySign(form, binder, this);
}

WorkFrames::Frame WorkFrames::AddFrame(forms::Pane& pane) {
  Frame frame{.widget = new QWidget(this), .rows = nullptr, .heading = new WrappingRow};
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
  frames_->addWidget(frame.widget, 1);
  binder_.Frame(pane, *frame.widget, caption);
  return frame;
}

void WorkFrames::BeginRightPart(WrappingRow& heading) {
  heading.BeginRightPart();
  // One in each frame: a row of its own would take the room of a row of the list.
  AddKeys(heading, {&form_.cmdRescued});
}

void WorkFrames::AddKeys(WrappingRow& row, std::initializer_list<forms::Command*> commands) {
  for (forms::Command* const command : commands) {
    auto* const key = new RoomyKey(this);
    row.addWidget(key);
    binder_.Press(*command, *key);
  }
}

void WorkFrames::AddRefresh(WrappingRow& row, forms::Command& command) {
  AddKeys(row, {&command});
  auto* const button = static_cast<QPushButton*>(binder_.WidgetOf(command));
  binder_.Watch(command, [button] { button->setShortcut(Qt::Key_F5); });
}

void WorkFrames::AddCombo(WrappingRow& row, forms::Table& table) {
  auto* const box = new ChoiceBox(this);
  row.addWidget(box);
  binder_.Pick(table, *box);
}

void WorkFrames::AddQueue() {
  const Frame frame = AddFrame(form_.frameInQueue);
  BeginRightPart(*frame.heading);
  AddRefresh(*frame.heading, form_.cmdUpdateFileList);
  frame.rows->addWidget(new TableList(form_.listViewInQueue, binder_, frame.widget), 1);
  frame.rows->addStretch();
}

void WorkFrames::AddCompleted() {
  const Frame frame = AddFrame(form_.frameCompleted);
  BeginRightPart(*frame.heading);
  AddKeys(*frame.heading,
          {&form_.cmdMoveToQueue, &form_.cmdDeleteOneCompleted, &form_.cmdDeleteAllCompleted});
  frame.rows->addWidget(new TableList(form_.listViewCompleted, binder_, frame.widget), 1);
}

void WorkFrames::AddImport() {
  const Frame frame = AddFrame(form_.frameImport);
  auto* const directory = new QLabel(frame.widget);
  directory->setIndent(kBeforeDirectory);
  frame.heading->addWidget(directory);
  binder_.Show(form_.txtWavImportSubdirectory, *directory, "Directory ");
  BeginRightPart(*frame.heading);
  auto* const link = new QCheckBox(frame.widget);
  frame.heading->addWidget(link);
  binder_.Tick(form_.chkImportSynchronize, *link);
  AddRefresh(*frame.heading, form_.cmdRefreshImportList);
  frame.rows->addWidget(new ImportPanel(form_, binder_, frame.widget), 1);
}

void WorkFrames::AddFtp() {
  const Frame frame = AddFrame(form_.frameFtp);
  KeepDisabledReadable(*frame.widget);
  BeginRightPart(*frame.heading);
  AddCombo(*frame.heading, form_.comboFtpServerNames);
  AddCombo(*frame.heading, form_.comboFtpFileTypesToList);
  auto* const list = new RoomyKey(this);
  frame.heading->addWidget(list);
  binder_.Press(form_.bList, *list, 'L');
  auto* const connect = new RoomyKey(this);
  connect->KeepRoomFor({"Connect", "Disconnect"});
  frame.heading->addWidget(connect);
  binder_.Press(form_.bConnect, *connect, 'o');
  frame.rows->addWidget(new FtpPanel(form_, binder_, frame.widget), 1);
}

}  // namespace tavlo::platform::qt
