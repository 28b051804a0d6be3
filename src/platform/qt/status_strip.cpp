#include "platform/qt/status_strip.h"

#include <QHBoxLayout>
#include <QPainter>

#include "platform/qt/binder.h"
#include "platform/qt/deck_scale.h"
#include "platform/qt/eliding_label.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kPad = 12;
constexpr int kHeight = 28;
constexpr int kLetters = 13;
constexpr int kWholePanel = 130;  ///< A long author must not squeeze department and date away.

}  // namespace

StatusStrip::StatusStrip(forms::Pane& bar, Binder& binder, DeckScale& scale, QWidget* parent)
    : QFrame(parent), bar_(bar), binder_(binder) {
  setAccessibleName("Document");
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  for (std::size_t i = 0; i < bar.Panels.Get().size(); ++i) {
    auto* const panel = new ElidingLabel(this);
    panel->setTextFormat(Qt::PlainText);
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, i == 0 ? theme::kRed : QColor(0xC3, 0xCA, 0xD3));
    panel->setPalette(colours);
    row->addWidget(panel);
    panels_.push_back(panel);
  }
  row->addStretch(1);
  scale.Fit([this, &scale] { FitPanels(scale); });
  binder.Bind(bar, *this, [this] { Show(); });
}

void StatusStrip::FitPanels(const DeckScale& scale) {
  setFixedHeight(scale(kHeight));
  for (ElidingLabel* const panel : panels_) {
    const bool first = panel == panels_.front();
    panel->setFont(DeckFont(scale(kLetters), first ? QFont::Bold : QFont::Normal));
    panel->setContentsMargins(scale(kPad), 0, scale(kPad), 0);
    panel->KeepWhole(scale(kWholePanel));
  }
}

void StatusStrip::Show() {
  const auto& texts = bar_.Panels.Get();
  const auto& tooltips = bar_.PanelTooltips.Get();
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    const QString text = i < texts.size() ? ToOneLine(texts[i]) : QString();
    const QString tooltip = i < tooltips.size() ? ToQt(tooltips[i]) : QString();
    if (panels_[i]->text() != text) panels_[i]->setText(text);
    panels_[i]->setToolTip(tooltip);
  }
  update();
}

void StatusStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), theme::kStrip);
  painter.fillRect(0, 0, width(), 1, QColor(0x07, 0x0A, 0x0D));
  for (const ElidingLabel* const panel : panels_) {
    if (panel->text().isEmpty()) continue;
    painter.fillRect(panel->geometry().right(), 1, 1, height() - 1, QColor(0x2A, 0x31, 0x3A));
  }
}

void StatusStrip::mouseDoubleClickEvent(QMouseEvent*) {
  binder_.ByHand(bar_, [this] { bar_.DoubleClick(); });
}

}  // namespace tavlo::platform::qt
