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
constexpr int kStripLetters = 13;
constexpr int kWholePanel = 130;  ///< A long author must not squeeze department and date away.

}  // namespace

StatusStrip::StatusStrip(forms::Pane& bar, forms::Text& notice, Binder& binder, DeckScale& scale,
                         QWidget* parent)
    : QFrame(parent), bar_(bar), notice_(notice), binder_(binder) {
  setAccessibleName("Document");
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  for (std::size_t i = 0; i < bar.Panels.Get().size(); ++i) {
    panels_.push_back(AddLabel(i == 0 ? theme::kRed : QColor(0xC3, 0xCA, 0xD3)));
    panels_.back()->setTextFormat(Qt::PlainText);
  }
  line_ = AddLabel(theme::kAmber);
  row->addStretch(1);
  binder.Show(notice, *line_);
  scale.Fit([this, &scale] { FitPanels(scale); });
  binder.Bind(bar, *this, [this] { Show(); });
  binder.Watch(notice, [this] { Show(); });
}

ElidingLabel* StatusStrip::AddLabel(const QColor& colour) {
  auto* const label = new ElidingLabel(this);
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, colour);
  label->setPalette(colours);
  layout()->addWidget(label);
  return label;
}

void StatusStrip::FitPanels(const DeckScale& scale) {
  setFixedHeight(scale(kHeight));
  const auto fit = [&scale](ElidingLabel& label, QFont::Weight weight) {
    label.setFont(DeckFont(scale(kStripLetters), weight));
    label.setContentsMargins(scale(kPad), 0, scale(kPad), 0);
  };
  for (ElidingLabel* const panel : panels_) {
    fit(*panel, panel == panels_.front() ? QFont::Bold : QFont::Normal);
    panel->KeepWhole(scale(kWholePanel));
  }
  fit(*line_, QFont::Normal);
}

void StatusStrip::Show() {
  const auto& texts = bar_.Panels.Get();
  const auto& tooltips = bar_.PanelTooltips.Get();
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    const QString text = i < texts.size() ? ToOneLine(texts[i]) : QString();
    const QString tooltip = i < tooltips.size() ? ToQt(tooltips[i]) : QString();
    if (panels_[i]->text() != text) panels_[i]->setText(text);
    panels_[i]->setToolTip(tooltip);
    panels_[i]->setVisible(!notice_.Visible);
  }
  update();
}

void StatusStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), theme::kStrip);
  painter.fillRect(0, 0, width(), 1, QColor(0x07, 0x0A, 0x0D));
  for (const ElidingLabel* const panel : panels_) {
    if (panel->text().isEmpty() || panel->isHidden()) continue;
    painter.fillRect(panel->geometry().right(), 1, 1, height() - 1, QColor(0x2A, 0x31, 0x3A));
  }
}

void StatusStrip::mouseDoubleClickEvent(QMouseEvent*) {
  binder_.ByHand(bar_, [this] { bar_.DoubleClick(); });
}

}  // namespace tavlo::platform::qt
