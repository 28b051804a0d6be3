#include "platform/qt/equalizer_page.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/deck_slider.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kMargin = 24;
constexpr int kBetweenLines = 16;
constexpr int kBetweenBands = 8;
constexpr int kBandHeight = 220;
constexpr int kSliderRow = 0;
constexpr int kLabelRow = 1;

}  // namespace

EqualizerPage::EqualizerPage(forms::EqualizerPage& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const lines = new QVBoxLayout(this);
  lines->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  lines->setSpacing(kBetweenLines);
  AddCurves(*lines);
  AddBands(*lines);
  binder.Frame(form.frameConfigEqualizer, *this);
}

void EqualizerPage::AddCurves(QBoxLayout& lines) {
  auto* const row = new QHBoxLayout;
  auto* const enable = new QCheckBox(this);
  row->addWidget(enable);
  binder_.Tick(form_.chkEqEnable, *enable);
  row->addSpacing(kBetweenLines);
  for (forms::PresetCommand* const curve :
       {&form_.cmdEqFlat, &form_.cmdEqLo, &form_.cmdEqMid, &form_.cmdEqHi, &form_.cmdEqCustom}) {
    AddCurve(*row, *curve);
  }
  row->addStretch(1);
  auto* const save = new QPushButton(this);
  save->setAutoDefault(false);
  row->addWidget(save);
  binder_.Press(form_.cmdSaveCustom, *save);
  lines.addLayout(row);
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
    key->setAccessibleDescription(colour ? QStringLiteral("Chosen") : QString());
  });
}

void EqualizerPage::AddBands(QBoxLayout& lines) {
  auto* const desk = new QGridLayout;
  desk->setHorizontalSpacing(kBetweenBands);
  desk->setRowMinimumHeight(kSliderRow, kBandHeight);
  AddScale(*desk);
  for (int band = 0; band < forms::kEqualizerBands; ++band) {
    const auto index = static_cast<std::size_t>(band);
    const int column = band + 1;
    desk->setColumnStretch(column, 1);
    auto* const slider = new DeckSlider(DeckSlider::Look::Upright, this);
    desk->addWidget(slider, kSliderRow, column, Qt::AlignHCenter);
    binder_.Slide(form_.sldEQ[index], *slider);
    auto* const label = new QLabel(this);
    desk->addWidget(label, kLabelRow, column, Qt::AlignHCenter);
    binder_.Show(form_.lblBand[index], *label);
  }
  desk->setRowStretch(kSliderRow, 1);
  lines.addLayout(desk, 1);
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
    desk.addWidget(label, kSliderRow, 0, mark.where | Qt::AlignRight);
    binder_.Show(mark.text, *label);
  }
}

}  // namespace tavlo::platform::qt
