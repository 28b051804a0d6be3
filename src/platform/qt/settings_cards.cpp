#include "platform/qt/settings_cards.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/card.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/pedal_frame.h"
#include "platform/qt/roomy_key.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kMargin = 16;
constexpr int kBetweenCards = 12;
constexpr int kRateSides = 16;    ///< Room for the frame of the box of the conversion's rate.
constexpr int kBetweenParts = 2;  ///< Pixels added between two groups of controls on one card.

}  // namespace

SettingsCards::SettingsCards(forms::ConfigurationForm& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const columns = new QHBoxLayout(this);
  columns->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  columns->setSpacing(kBetweenCards);
  auto* const left = new QVBoxLayout;
  auto* const right = new QVBoxLayout;
  for (QVBoxLayout* const column : {left, right}) {
    column->setSpacing(kBetweenCards);
    columns->addLayout(column, 1);
  }
  AddPlaying(AddCard(*left));
  AddWindow(AddCard(*left));
  AddShowing(AddCard(*left));
  AddSpeaking(AddCard(*right));
  AddFiles(AddCard(*right));
  right->addWidget(new PedalFrame(form, binder, this));
  // The last card of each column is stretched, so that both columns are equally high.
  for (QVBoxLayout* const column : {left, right}) column->setStretch(column->count() - 1, 1);
  binder.Frame(form.frameSettings, *this);
}

QVBoxLayout& SettingsCards::AddCard(QVBoxLayout& column) {
  auto* const card = new Card(this);
  column.addWidget(card);
  return card->Lines();
}

void SettingsCards::AddPlaying(QVBoxLayout& lines) {
  AddSlider(lines, form_.frameAutoBackspace, form_.sliderABS);
  AddSlider(lines, form_.frameAutoPreview, form_.sliderAutoPreview);
  AddSlider(lines, form_.frameWindIncrement, form_.sliderWindIncrement,
            &form_.chkAccelerateWindIncrement);
}

void SettingsCards::AddWindow(QVBoxLayout& lines) {
  auto* const line = new QHBoxLayout;
  auto* const boxes = new QVBoxLayout;
  boxes->setSpacing(lines.spacing());
  AddBoxes(*boxes, {&form_.chkMinimizeMiniPlayer, &form_.chkAlwaysOnTop, &form_.chkAutoQueueJob});
  line->addLayout(boxes, 1);
  auto* const key = new RoomyKey(this);
  line->addWidget(key);
  binder_.Press(form_.cmdCenterMiniPlayer, *key);
  lines.addLayout(line);
}

void SettingsCards::AddSpeaking(QVBoxLayout& lines) {
  AddBoxes(lines, {&form_.chkAudioPrompts});
  lines.addSpacing(kBetweenParts);
  auto* const volumeLabel = new QLabel(this);
  lines.addWidget(volumeLabel);
  binder_.Show(form_.lblPromptVolume, *volumeLabel);
  auto* const volume = new DeckSlider(DeckSlider::Look::Level, this);
  lines.addWidget(volume);
  binder_.Slide(form_.sldPromptVol, *volume);
}

void SettingsCards::AddFiles(QVBoxLayout& lines) {
  AddBoxes(lines, {&form_.chkAutoImportMode});
  auto* const row = new QHBoxLayout;
  auto* const label = new QLabel(this);
  row->addWidget(label);
  binder_.Show(form_.lblWavConvMode, *label);
  row->addStretch(1);
  auto* const rate = new QLineEdit(this);
  rate->setFixedWidth(rate->fontMetrics().horizontalAdvance("0000") + kRateSides);
  label->setBuddy(rate);
  row->addWidget(rate);
  binder_.Edit(form_.txtWavConvMode, *rate);
  auto* const next = new RoomyKey(this);
  row->addWidget(next);
  binder_.Press(form_.cmdWavConvMode, *next);
  lines.addLayout(row);
}

void SettingsCards::AddShowing(QVBoxLayout& lines) {
  auto* const heading = new QLabel(this);
  lines.addWidget(heading);
  binder_.Show(form_.lblSubjectHeading, *heading);
  AddEdit(lines, form_.txtSubjectHeading);
  lines.addSpacing(kBetweenParts);
  AddBoxes(lines, {&form_.chkShowCustomDisplay});
  AddEdit(lines, form_.txtCustomDisplay);
  lines.addStretch(1);
}

void SettingsCards::AddSlider(QVBoxLayout& column, forms::Pane& frame, forms::Range& range,
                              forms::Choice* box) {
  auto* const group = new QWidget(this);
  auto* const lines = new QVBoxLayout(group);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(2);
  auto* const top = new QHBoxLayout;
  auto* const caption = new QLabel(group);
  top->addWidget(caption, 1);
  lines->addLayout(top);
  auto* const slider = new DeckSlider(DeckSlider::Look::Level, group);
  lines->addWidget(slider);
  binder_.Slide(range, *slider);
  if (box) {
    auto* const tick = new QCheckBox(group);
    top->addWidget(tick);
    binder_.Tick(*box, *tick);
  }
  column.addWidget(group);
  binder_.Frame(frame, *group, caption);
}

void SettingsCards::AddBoxes(QVBoxLayout& column, std::initializer_list<forms::Choice*> boxes) {
  for (forms::Choice* const box : boxes) {
    auto* const tick = new QCheckBox(this);
    column.addWidget(tick, 0, Qt::AlignLeft);
    binder_.Tick(*box, *tick);
  }
}

void SettingsCards::AddEdit(QVBoxLayout& column, forms::Text& text) {
  auto* const box = new QLineEdit(this);
  column.addWidget(box);
  binder_.Edit(text, *box);
}

}  // namespace tavlo::platform::qt
