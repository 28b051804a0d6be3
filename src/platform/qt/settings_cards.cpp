#include "platform/qt/settings_cards.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <utility>

#include "platform/qt/binder.h"
#include "platform/qt/card.h"
#include "platform/qt/card_columns.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/number_box.h"
#include "platform/qt/pedal_frame.h"
#include "platform/qt/roomy_key.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kSettingsMargin = 16;
constexpr int kBetweenCards = 12;
constexpr int kSettingSpacing = 8;
constexpr int kToItsOwn = 2;        ///< From a name down to what it names.
constexpr int kBetweenNumbers = 6;  ///< Between the lines of numbers, which are higher than others.

/// A box for a text, which tells when it is clicked twice.
class TwiceClickedEdit : public QLineEdit {
 public:
  TwiceClickedEdit(QWidget* parent, std::function<void()> onDoubleClick)
      : QLineEdit(parent), onDoubleClick_(std::move(onDoubleClick)) {}

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    QLineEdit::mouseDoubleClickEvent(event);
    onDoubleClick_();
  }

 private:
  const std::function<void()> onDoubleClick_;
};

}  // namespace

SettingsCards::SettingsCards(forms::ConfigurationForm& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const columns = new CardColumns(this, kSettingsMargin, kBetweenCards);
  // What is made first is reached first by Tab.
  AddPlaying(AddCard("Playing"));
  columns->addWidget(new PedalFrame(form, binder, this));
  columns->BeginColumnOf(3);
  AddNewWork(AddCard("New work"));
  columns->BeginColumnOf(2);
  AddFiles(AddCard("Files"));
  columns->BeginColumnOf(3);
  AddReports(AddCard("Reports"));
  AddPrompts(AddCard("Spoken prompts"));
  AddWindow(AddCard("Window"));
  AddWords(AddCard("Your own words"));
  binder.Frame(form.frameSettings, *this);
}

QVBoxLayout& SettingsCards::AddCard(const QString& heading) {
  auto* const card = new Card(this);
  card->AddHeading(heading);
  card->Lines().setSpacing(kSettingSpacing);
  layout()->addWidget(card);
  return card->Lines();
}

void SettingsCards::AddPlaying(QVBoxLayout& lines) {
  AddSlider(lines, form_.frameAutoBackspace, form_.sliderABS);
  AddSlider(lines, form_.frameAutoPreview, form_.sliderAutoPreview);
  AddSlider(lines, form_.frameWindIncrement, form_.sliderWindIncrement,
            &form_.chkAccelerateWindIncrement);
  lines.addStretch(1);
}

void SettingsCards::AddNewWork(QVBoxLayout& lines) {
  AddBoxes(lines, {&form_.chkAutoRefreshMode});
  AddInterval(lines, form_.txtAutoQueueRefreshInterval);
  AddBoxes(lines, {&form_.chkWorkWaitingAlertMode});
  QBoxLayout& options = AddIndented(lines);
  for (forms::Choice* const option :
       {&form_.optNewWorkWaitingAllJobs, &form_.optNewWorkWaitingPriority}) {
    auto* const button = new QRadioButton(this);
    options.addWidget(button);
    binder_.Tick(*option, *button);
  }
  options.addStretch(1);
  AddInterval(lines, form_.txtNewDictationAlertInterval);
  AddBoxes(lines, {&form_.chkAutoImportMode, &form_.chkAutoQueueJob});
  AddHint(lines, "Auto Queue takes the next dictation.");
  lines.addStretch(1);
}

void SettingsCards::AddFiles(QVBoxLayout& lines) {
  auto* const numbers = new QGridLayout;
  numbers->setVerticalSpacing(kBetweenNumbers);
  numbers->setColumnStretch(0, 1);
  AddNumber(*numbers, form_.lblDeleteCompletedFiles, form_.txtDeleteCompletedFiles, "days");
  auto* const limit = new QLabel(this);
  numbers->addWidget(limit, numbers->rowCount(), 0, 1, 3);
  binder_.Show(form_.lblDeleteCompletedLimit, *limit);
  AddNumber(*numbers, form_.lblViewDelay, form_.txtViewDelay, "seconds");
  AddNumber(*numbers, form_.lblWavConvMode, form_.txtWavConvMode, "kHz");
  auto* const next = new RoomyKey(this);
  numbers->addWidget(next, numbers->rowCount(), 1, 1, 2);
  binder_.Press(form_.cmdWavConvMode, *next);
  lines.addLayout(numbers);
  AddHint(lines, "View Delay and Wav Conversion change nothing.");
  lines.addStretch(1);
}

void SettingsCards::AddReports(QVBoxLayout& lines) {
  forms::Text& path = form_.txtWordProcessorPath;
  auto* const box = new TwiceClickedEdit(
      this, [this, &path] { binder_.ByHand(path, [&path] { path.DoubleClick(); }); });
  AddNamedEdit(lines, form_.lblWordProcessorPath, path, *box);
  lines.addStretch(1);
}

void SettingsCards::AddPrompts(QVBoxLayout& lines) {
  AddBoxes(lines, {&form_.chkAudioPrompts});
  auto* const group = new QVBoxLayout;
  group->setSpacing(kToItsOwn);
  auto* const name = new QLabel(this);
  group->addWidget(name);
  binder_.Show(form_.lblPromptVolume, *name);
  auto* const volume = new DeckSlider(DeckSlider::Look::Level, this);
  group->addWidget(volume);
  binder_.Slide(form_.sldPromptVol, *volume);
  lines.addLayout(group);
  lines.addStretch(1);
}

void SettingsCards::AddWindow(QVBoxLayout& lines) {
  AddBoxes(lines, {&form_.chkMinimizeMiniPlayer, &form_.chkAlwaysOnTop});
  auto* const key = new RoomyKey(this);
  lines.addWidget(key);
  binder_.Press(form_.cmdCenterMiniPlayer, *key);
  lines.addStretch(1);
  // Where a desktop lets windows do none of this, the card would be a heading over nothing.
  QWidget* const card = lines.parentWidget();
  const auto hideEmpty = [this, card] {
    card->setVisible(form_.chkMinimizeMiniPlayer.Visible || form_.chkAlwaysOnTop.Visible ||
                     form_.cmdCenterMiniPlayer.Visible);
  };
  binder_.Watch(form_.chkMinimizeMiniPlayer, hideEmpty);
  binder_.Watch(form_.chkAlwaysOnTop, hideEmpty);
  binder_.Watch(form_.cmdCenterMiniPlayer, hideEmpty);
}

void SettingsCards::AddWords(QVBoxLayout& lines) {
  AddNamedEdit(lines, form_.lblSubjectHeading, form_.txtSubjectHeading, *new QLineEdit(this));
  AddBoxes(lines, {&form_.chkShowCustomDisplay});
  auto* const line = new QLineEdit(this);
  lines.addWidget(line);
  binder_.Edit(form_.txtCustomDisplay, *line);
  lines.addStretch(1);
}

void SettingsCards::AddSlider(QVBoxLayout& column, forms::Pane& frame, forms::Range& range,
                              forms::Choice* box) {
  auto* const group = new QWidget(this);
  auto* const lines = new QVBoxLayout(group);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(kToItsOwn);
  auto* const top = new QHBoxLayout;
  auto* const caption = new QLabel(group);
  top->addWidget(caption);
  top->addWidget(new QLabel("s", group));
  top->addStretch(1);
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

void SettingsCards::AddHint(QVBoxLayout& column, const QString& words) {
  auto* const hint = new QLabel(words, this);
  hint->setWordWrap(true);
  column.addWidget(hint);
}

QBoxLayout& SettingsCards::AddIndented(QVBoxLayout& column) {
  auto* const row = new QHBoxLayout;
  row->setContentsMargins(style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                              style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing),
                          0, 0, 0);
  column.addLayout(row);
  return *row;
}

void SettingsCards::AddInterval(QVBoxLayout& column, forms::Text& seconds) {
  QBoxLayout& row = AddIndented(column);
  auto* const every = new QLabel("every", this);
  row.addWidget(every);
  auto* const box = new NumberBox(this);
  row.addWidget(box);
  auto* const unit = new QLabel("seconds", this);
  row.addWidget(unit);
  row.addStretch(1);
  binder_.Edit(seconds, *box);
  binder_.Watch(seconds, [every, unit, &seconds] {
    every->setEnabled(seconds.Enabled);
    unit->setEnabled(seconds.Enabled);
  });
}

void SettingsCards::AddNumber(QGridLayout& grid, forms::Text& label, forms::Text& number,
                              const QString& unit) {
  const int row = grid.rowCount();
  auto* const name = new QLabel(this);
  grid.addWidget(name, row, 0);
  binder_.Show(label, *name);
  auto* const box = new NumberBox(this);
  grid.addWidget(box, row, 1);
  binder_.Edit(number, *box);
  grid.addWidget(new QLabel(unit, this), row, 2);
}

void SettingsCards::AddNamedEdit(QVBoxLayout& column, forms::Text& label, forms::Text& text,
                                 QLineEdit& box) {
  auto* const group = new QVBoxLayout;
  group->setSpacing(kToItsOwn);
  auto* const name = new QLabel(this);
  group->addWidget(name);
  binder_.Show(label, *name);
  group->addWidget(&box);
  binder_.Edit(text, box);
  column.addLayout(group);
}

}  // namespace tavlo::platform::qt
