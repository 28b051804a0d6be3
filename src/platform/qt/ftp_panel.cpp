#include "platform/qt/ftp_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/colours.h"
#include "platform/qt/file_list.h"
#include "platform/qt/glyph_key.h"
#include "platform/qt/main_key.h"
#include "platform/qt/message_line.h"
#include "platform/qt/transfer_line.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kBetweenFtpParts = 8;
constexpr int kBesideMovingKeys = 8;
constexpr int kBesideTransfer = 16;
constexpr int kCaptionSide = 9;
constexpr int kCaptionAir = 6;        ///< Above and below the caption of a list.
constexpr double kCaptionLine = 0.2;  ///< Share of the letters' colour in the line under it.
constexpr double kBoxLine = 0.3;      ///< The same in the edge of both.

void KeepPlace(QWidget& widget) {
  QSizePolicy stays = widget.sizePolicy();
  stays.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(stays);
}

QColor LineColour(const QPalette& palette, double share) {
  return Mixed(palette.color(QPalette::Base), palette.color(QPalette::Active, QPalette::Text),
               share);
}

/// What a list and its caption share. Its edge is whole at every scale of the screen.
class ListBox : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(LineColour(palette(), kBoxLine), 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
  }
};

/// A caption that stands over its list as headings do.
class ListCaption : public QLabel {
 public:
  explicit ListCaption(QWidget* box) : QLabel(box) {
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    setFont(bold);
    setContentsMargins(kCaptionSide, kCaptionAir, kCaptionSide, kCaptionAir);
    setBackgroundRole(QPalette::Button);
    setAutoFillBackground(true);
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QLabel::paintEvent(event);
    QPainter(this).fillRect(0, height() - 1, width(), 1, LineColour(palette(), kCaptionLine));
  }
};

}  // namespace

FtpPanel::FtpPanel(forms::FtpFrame& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kBetweenFtpParts);
  AddLists(*rows);
  AddStatus(*rows);
  for (const forms::Control* const telling : std::initializer_list<const forms::Control*>{
           &form.bConnect, &form.bDownload, &form.listFtpDownloadList}) {
    binder.Watch(*telling, [this] { ShowFetched(); });
  }
}

void FtpPanel::AddLists(QBoxLayout& rows) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(kBesideMovingKeys);
  rows.addLayout(row, 1);
  AddList(*row, form_.frameFtpFilename, form_.listFtpList);
  AddMovingKeys(*row);
  downloads_ = AddList(*row, form_.frameFtpDownloadList, form_.listFtpDownloadList);
}

FileList* FtpPanel::AddList(QBoxLayout& row, forms::Pane& pane, forms::Table& table) {
  auto* const box = new ListBox(this);
  auto* const lines = new QVBoxLayout(box);
  lines->setContentsMargins(1, 1, 1, 1);
  lines->setSpacing(0);
  auto* const caption = new ListCaption(box);
  lines->addWidget(caption);
  auto* const list = new FileList(table, binder_, box);
  lines->addWidget(list, 1);
  row.addWidget(box, 1);
  binder_.Frame(pane, *box, caption);
  KeepPlace(*box);
  return list;
}

void FtpPanel::AddMovingKeys(QBoxLayout& row) {
  auto* const column = new QVBoxLayout;
  column->addStretch(1);
  const auto add = [&](Glyph glyph, forms::Command& command) {
    auto* const key = new GlyphKey(glyph, command, binder_, this);
    column->addWidget(key);
    KeepPlace(*key);
  };
  add(Glyph::AllToTheRight, form_.cmdFtpListToDownload);
  add(Glyph::AllToTheLeft, form_.cmdFtpDownloadToList);
  column->addStretch(1);
  row.addLayout(column);
}

void FtpPanel::AddStatus(QBoxLayout& rows) {
  auto* const status = new QWidget(this);
  auto* const lines = new QVBoxLayout(status);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(kBetweenFtpParts);
  auto* const message = new MessageLine(form_.eMessage, binder_, status);
  lines->addWidget(message);
  auto* const row = new QHBoxLayout;
  row->setSpacing(kBesideTransfer);
  row->addWidget(new TransferLine(form_, binder_, status), 1);
  auto* const key = new MainKey(status);
  key->KeepRoomFor({"Download", "Halt"});
  row->addWidget(key);
  binder_.Press(form_.bDownload, *key, 'D');
  binder_.Watch(form_.bDownload, [key, &command = form_.bDownload] {
    key->SetStops(command.Caption.Get() == "Halt");
  });
  lines->addLayout(row);
  rows.addWidget(status);
  binder_.Frame(form_.frameFtpConnectionStatus, *status);
  KeepPlace(*message);
  KeepPlace(*status);
}

void FtpPanel::ShowFetched() {
  const bool some = !form_.listFtpDownloadList.Rows().empty();
  downloads_->SetFetched(some && IsFetching(form_) ? 0 : -1);
}

}  // namespace tavlo::platform::qt
