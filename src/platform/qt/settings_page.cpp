#include "platform/qt/settings_page.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/pedal_frame.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kMargin = 24;
constexpr int kBetweenColumns = 40;
constexpr int kBetweenLines = 10;

}  // namespace

SettingsPage::SettingsPage(forms::ConfigurationForm& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const columns = new QHBoxLayout(this);
  columns->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  columns->setSpacing(kBetweenColumns);
  auto* const left = new QVBoxLayout;
  auto* const right = new QVBoxLayout;
  for (QVBoxLayout* const column : {left, right}) {
    column->setSpacing(kBetweenLines);
    columns->addLayout(column, 1);
  }
  AddPlaying(*left);
  left->addSpacing(kBetweenLines);
  AddShowing(*left);
  AddSpeaking(*right);
  right->addSpacing(kBetweenLines);
  right->addWidget(new PedalFrame(form, binder, this));
  left->addStretch(1);
  right->addStretch(1);
  binder.Frame(form.frameSettings, *this);
}

void SettingsPage::AddPlaying(QVBoxLayout& column) {
  AddSlider(column, form_.frameAutoBackspace, form_.sliderABS);
  AddSlider(column, form_.frameAutoPreview, form_.sliderAutoPreview);
  AddSlider(column, form_.frameWindIncrement, form_.sliderWindIncrement,
            &form_.chkAccelerateWindIncrement);
  AddBoxes(column, {&form_.chkMinimizeMiniPlayer, &form_.chkAlwaysOnTop, &form_.chkAutoQueueJob});
  AddKey(column, form_.cmdCenterMiniPlayer);
}

void SettingsPage::AddSpeaking(QVBoxLayout& column) {
  AddBoxes(column, {&form_.chkAudioPrompts});
  auto* const volumeLabel = new QLabel(this);
  column.addWidget(volumeLabel);
  binder_.Show(form_.lblPromptVolume, *volumeLabel);
  auto* const volume = new DeckSlider(DeckSlider::Look::Small, this);
  column.addWidget(volume);
  binder_.Slide(form_.sldPromptVol, *volume);
}

void SettingsPage::AddShowing(QVBoxLayout& column) {
  auto* const heading = new QLabel(this);
  column.addWidget(heading);
  binder_.Show(form_.lblSubjectHeading, *heading);
  AddEdit(column, form_.txtSubjectHeading);
  AddBoxes(column, {&form_.chkShowCustomDisplay});
  AddEdit(column, form_.txtCustomDisplay);
}

void SettingsPage::AddSlider(QVBoxLayout& column, forms::Pane& frame, forms::Range& range,
                             forms::Choice* box) {
  auto* const group = new QWidget(this);
  auto* const lines = new QVBoxLayout(group);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(2);
  auto* const top = new QHBoxLayout;
  auto* const caption = new QLabel(group);
  top->addWidget(caption, 1);
  lines->addLayout(top);
  auto* const slider = new DeckSlider(DeckSlider::Look::Small, group);
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

void SettingsPage::AddBoxes(QVBoxLayout& column, std::initializer_list<forms::Choice*> boxes) {
  for (forms::Choice* const box : boxes) {
    auto* const tick = new QCheckBox(this);
    column.addWidget(tick, 0, Qt::AlignLeft);
    binder_.Tick(*box, *tick);
  }
}

void SettingsPage::AddKey(QVBoxLayout& column, forms::Command& command) {
  auto* const key = new QPushButton(this);
  key->setAutoDefault(false);
  column.addWidget(key, 0, Qt::AlignLeft);
  binder_.Press(command, *key);
}

void SettingsPage::AddEdit(QVBoxLayout& column, forms::Text& text) {
  auto* const box = new QLineEdit(this);
  column.addWidget(box);
  binder_.Edit(text, *box);
}

}  // namespace tavlo::platform::qt
