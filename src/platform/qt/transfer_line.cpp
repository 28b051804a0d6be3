#include "platform/qt/transfer_line.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "forms/accessible_name.h"
#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/byte_count.h"
#include "platform/qt/figures_label.h"
#include "platform/qt/texts.h"
#include "platform/qt/thin_bar.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kRateMilliseconds = 500;  ///< A speed that changes more often can not be read.
constexpr int kUnderFigures = 4;
constexpr int kLeastBarHeight = 6;
constexpr int kLettersToBar = 3;  ///< The letters' height in the height of the bar.

}  // namespace

bool IsFetching(const forms::FtpFrame& form) {
  return form.bDownload.Caption.Get() == "Halt" && form.bConnect.Caption.Get() == "Disconnect";
}

TransferLine::TransferLine(forms::FtpFrame& form, Binder& binder, QWidget* parent)
    : QWidget(parent),
      form_(form),
      figures_(new FiguresLabel(this)),
      rate_(new FiguresLabel(this)),
      bar_(new ThinBar(this)) {
  auto* const lines = new QVBoxLayout(this);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(kUnderFigures);
  auto* const words = new QHBoxLayout;
  words->addWidget(figures_);
  words->addStretch(1);
  words->addWidget(rate_);
  lines->addStretch(1);
  lines->addLayout(words);
  lines->addWidget(bar_);
  lines->addStretch(1);
  QSizePolicy stays = bar_->sizePolicy();
  stays.setRetainSizeWhenHidden(true);
  bar_->setSizePolicy(stays);
  bar_->setVisible(false);
  SetHeardName(*figures_, ToOneLine(forms::AccessibleName(form.eByteCount)));
  SetHeardName(*rate_, "Speed");
  SetHeardName(*bar_, "Progress of the file");
  for (QLabel* const label : {figures_, rate_}) label->setTextFormat(Qt::PlainText);
  FitToLetters();
  looks_.setInterval(kRateMilliseconds);
  connect(&looks_, &QTimer::timeout, this, [this] { ShowRate(); });
  binder.Bind(form.eByteCount, *figures_, [this] { Show(); });
  for (const forms::Command* const key : {&form.bDownload, &form.bConnect}) {
    binder.Watch(*key, [this] { Show(); });
  }
}

void TransferLine::Show() {
  const QString words = ToOneLine(form_.eByteCount.Value.Get()).trimmed();
  if (figures_->text() != words) figures_->setText(words);
  const std::optional<ByteCount> count = ReadByteCount(form_.eByteCount.Value.Get());
  const bool fetching = IsFetching(form_);
  bar_->setVisible(count && count->percent);
  bar_->setValue(count ? count->percent.value_or(0) : 0);
  bar_->setEnabled(fetching);
  if (fetching) {
    if (count) measured_.Note(count->bytes, form_.bDownload.Home().EventLoop().Now());
    if (!looks_.isActive()) looks_.start();
    return;
  }
  measured_.Forget();
  looks_.stop();
  rate_->clear();
}

void TransferLine::ShowRate() {
  const std::optional<double> rate = measured_.At(form_.bDownload.Home().EventLoop().Now());
  rate_->setText(rate ? RateInWords(*rate) : QString());
}

/// Lines that say nothing yet have their height all the same.
void TransferLine::FitToLetters() {
  const int letters = fontMetrics().height();
  for (QLabel* const label : {figures_, rate_}) label->setMinimumHeight(letters);
  bar_->setFixedHeight(std::max(kLeastBarHeight, letters / kLettersToBar));
}

void TransferLine::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) FitToLetters();
}

}  // namespace tavlo::platform::qt
