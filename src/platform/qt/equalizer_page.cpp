#include "platform/qt/equalizer_page.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/card.h"
#include "platform/qt/colours.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/roomy_key.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kMargin = 16;
constexpr int kEqualizerLineSpacing = 12;
constexpr int kBetweenCurves = 6;
constexpr int kBetweenBands = 8;
constexpr double kLine = 0.13;  ///< Share of the letters' colour.
constexpr double kMarkedLine = 0.28;
constexpr int kScaleLines = 9;  ///< One every five decibels, both ends included.
constexpr int kBandHeight = 220;
constexpr int kSliderRow = 0;
constexpr int kLabelRow = 1;

/// The card on which the bands stand, ruled behind them so that the eye can compare them.
class BandCard : public Card {
 public:
  BandCard(const QGridLayout& desk, QWidget* page) : Card(page), desk_(desk) {}

 protected:
  void paintEvent(QPaintEvent* event) override {
    Card::paintEvent(event);
    const QRect first = desk_.cellRect(kSliderRow, 1);
    const QRect last = desk_.cellRect(kSliderRow, forms::kEqualizerBands);
    const double left = first.united(last).left();
    const double right = first.united(last).right() + 1;
    const double top = first.top() + DeckSlider::Reach();
    const double height = first.height() - 2.0 * DeckSlider::Reach();
    const QColor page = palette().color(QPalette::Window);
    QPainter painter(this);
    for (int line = 0; line < kScaleLines; ++line) {
      const bool marked = line % (kScaleLines / 2) == 0;
      const double place = top + height * line / (kScaleLines - 1);
      painter.fillRect(
          QRectF(left, place - 0.5, right - left, 1),
          Mixed(page, palette().color(QPalette::WindowText), marked ? kMarkedLine : kLine));
    }
  }

 private:
  const QGridLayout& desk_;
};

}  // namespace

EqualizerPage::EqualizerPage(forms::EqualizerPage& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const lines = new QVBoxLayout(this);
  lines->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  lines->setSpacing(kEqualizerLineSpacing);
  AddCurves(*lines);
  AddBands(*lines);
  binder.Frame(form.frameConfigEqualizer, *this);
}

void EqualizerPage::AddCurves(QBoxLayout& lines) {
  auto* const card = new Card(this);
  card->AddHeading("Curve");
  auto* const row = new QHBoxLayout;
  row->setSpacing(kBetweenCurves);
  auto* const enable = new QCheckBox(this);
  row->addWidget(enable);
  binder_.Tick(form_.chkEqEnable, *enable);
  row->addSpacing(kEqualizerLineSpacing);
  for (forms::PresetCommand* const curve :
       {&form_.cmdEqFlat, &form_.cmdEqLo, &form_.cmdEqMid, &form_.cmdEqHi, &form_.cmdEqCustom}) {
    AddCurve(*row, *curve);
  }
  row->addStretch(1);
  auto* const save = new RoomyKey(this);
  row->addWidget(save);
  binder_.Press(form_.cmdSaveCustom, *save);
  card->Lines().addLayout(row);
  lines.addWidget(card);
}

void EqualizerPage::AddCurve(QBoxLayout& row, forms::PresetCommand& command) {
  auto* const key = new QPushButton(this);
  key->setAutoDefault(false);
  row.addWidget(key);
  binder_.Press(command, *key);
  binder_.Watch(command, [&command, key] {
    const std::optional<forms::Colour> colour = command.BackColour;
    // The colour is a light one, so its letters are dark in a dark desktop too.
    key->setStyleSheet(colour ? QStringLiteral("QPushButton { background-color: %1; color: black; "
                                               "font-weight: bold; }")
                                    .arg(QColor::fromRgb(*colour).name())
                              : QString());
    SetHeardDescription(*key, colour ? QStringLiteral("Chosen") : QString());
  });
}

void EqualizerPage::AddBands(QBoxLayout& lines) {
  auto* const desk = new QGridLayout;
  auto* const card = new BandCard(*desk, this);
  card->AddHeading("Gain of each band");
  desk->setHorizontalSpacing(kBetweenBands);
  desk->setRowMinimumHeight(kSliderRow, kBandHeight);
  AddScale(*desk);
  for (int band = 0; band < forms::kEqualizerBands; ++band) {
    const auto index = static_cast<std::size_t>(band);
    const int column = band + 1;
    desk->setColumnStretch(column, 1);
    auto* const slider = new DeckSlider(DeckSlider::Look::Upright, this);
    slider->SetNought(0);
    desk->addWidget(slider, kSliderRow, column, Qt::AlignHCenter);
    binder_.Slide(form_.sldEQ[index], *slider);
    auto* const label = new QLabel(this);
    desk->addWidget(label, kLabelRow, column, Qt::AlignHCenter);
    binder_.Show(form_.lblBand[index], *label);
  }
  desk->setRowStretch(kSliderRow, 1);
  card->Lines().addLayout(desk);
  lines.addWidget(card, 1);
}

void EqualizerPage::AddScale(QGridLayout& desk) {
  struct Mark {
    forms::Text& text;
    Qt::Alignment where;
  };
  const Mark marks[] = {{form_.lblScaleTop, Qt::AlignTop},
                        {form_.lblScaleMiddle, Qt::AlignVCenter},
                        {form_.lblScaleBottom, Qt::AlignBottom}};
  for (const Mark& mark : marks) {
    auto* const label = new QLabel(this);
    // The handle's last place is this far from the slider's end. A label twice as high as that has
    // its middle on the same line.
    label->setMinimumHeight(2 * DeckSlider::Reach());
    desk.addWidget(label, kSliderRow, 0, mark.where | Qt::AlignRight);
    binder_.Show(mark.text, *label);
  }
}

}  // namespace tavlo::platform::qt
