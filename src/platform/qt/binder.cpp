#include "platform/qt/binder.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QTextDocument>
#include <algorithm>
#include <memory>
#include <utility>

#include "forms/accessible_name.h"
#include "platform/qt/accessible_parts.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/focus_keeper.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/texts.h"
#include "platform/reach/hush.h"

namespace tavlo::platform::qt {
namespace {

using forms::By;

/// Captions and tooltips change rarely; asking first keeps the toolkit from laying out again.
void SetCaption(QAbstractButton& button, const std::string& caption, char letter = 0) {
  QString text = ToQt(caption);
  if (letter != 0) text.insert(std::max<qsizetype>(0, text.indexOf(QChar(letter))), u'&');
  if (button.text() != text) button.setText(text);
}

template <typename ControlType>
void NameAs(QWidget& widget, const ControlType& control) {
  SetHeardName(widget, ToOneLine(AccessibleName(control)));
}

/// Some tooltips follow what a person has typed, which the toolkit must not take for mark-up.
QString TooltipOf(const forms::Control& control) {
  const QString text = ToQt(control.Tooltip.Get());
  // The toolkit breaks no lines of a plain one.
  constexpr qsizetype kLongestLine = 500;
  return text.size() > kLongestLine || Qt::mightBeRichText(text) ? ToTooltip(text) : text;
}

/// What stands already stays, so that rows may be added under a hand that has the list open.
void ShowRows(const forms::Table& table, QComboBox& box) {
  const int rows = static_cast<int>(table.Rows().size());
  for (int row = 0; row < rows; ++row) {
    const QString text = ToOneLine(table.TextAt(row, 0));
    if (row >= box.count()) {
      box.addItem(text);
    } else if (box.itemText(row) != text) {
      box.setItemText(row, text);
    }
  }
  while (box.count() > rows) box.removeItem(box.count() - 1);
}

}  // namespace

Binder::Binder(QtLoop& loop, Hush& hush) : loop_(loop), hush_(hush) {
  // Before the first widget: what a screen reader gets of a widget is decided when that is first
  // named.
  InstallAccessibleParts();
}

void Binder::Watch(const forms::Control& control, std::function<void()> show) {
  bounds_.push_back({&control, std::move(show)});
}

void Binder::Bind(const forms::Control& control, QWidget& widget, std::function<void()> show) {
  widget.setObjectName(ToQt(control.Name));
  StandsFor(widget, control);
  Watch(control, [&control, &widget, show = std::move(show)] {
    const QString tooltip = TooltipOf(control);
    if (widget.toolTip() != tooltip) widget.setToolTip(tooltip);
    if (show) show();
    if (!control.Enabled || !control.Visible) FocusKeeper::TakeFrom(widget);
    widget.setEnabled(control.Enabled);
    if (widget.isHidden() == control.Visible) widget.setVisible(control.Visible);
  });
}

bool Binder::ByHand(const forms::Control& control, std::function<void()> door) {
  return loop_.ByHand([this, &control, door = std::move(door)] {
    door();
    for (Bound& bound : bounds_) {
      if (bound.control == &control) bound.shownVersion = 0;
    }
  });
}

void Binder::ForgetHands() { loop_.ForgetHands(); }

void Binder::StopByHand(forms::Command& command) {
  if (!ByHand(command, [&command] { command.Press(By::Hand); })) hush_.Silence();
}

void Binder::ShowChanges() {
  for (Bound& bound : bounds_) {
    const unsigned version = bound.control->Version();
    if (bound.shownVersion == version) continue;
    bound.shownVersion = version;
    bound.show();
  }
}

QWidget* Binder::WidgetOf(const forms::Control& control) const {
  const auto found = widgets_.find(&control);
  return found == widgets_.end() ? nullptr : found->second;
}

void Binder::Show(forms::Text& text, QLabel& label, const QString& before) {
  label.setTextFormat(Qt::PlainText);
  Bind(text, label, [&text, &label, before] {
    const QString shown = before + ToOneLine(text.Value.Get());
    if (label.text() != shown) label.setText(shown);
  });
}

void Binder::Edit(forms::Text& text, QLineEdit& box) {
  if (text.Longest > 0) box.setMaxLength(static_cast<int>(text.Longest));
  QObject::connect(&box, &QLineEdit::textEdited, &box, [this, &text](const QString& typed) {
    ByHand(text, [&text, typed = FromQt(typed)] { text.Change(typed); });
  });
  Bind(text, box, [&text, &box] {
    NameAs(box, text);
    const QString value = ToQt(text.Value.Get());
    // Setting an equal text would move the typist's cursor.
    if (box.text() == value) return;
    const int cursor = box.cursorPosition();
    const bool emptiedByHand = box.isModified() && box.text().isEmpty();
    box.setText(value);
    if (!box.hasFocus()) return;
    // What a rule puts into a box that a hand has emptied gives way to what is typed next.
    if (emptiedByHand) return box.selectAll();
    box.setCursorPosition(cursor);
  });
}

void Binder::Press(forms::Command& command, QAbstractButton& key, char letter) {
  QObject::connect(&key, &QAbstractButton::clicked, &key,
                   [this, &command] { ByHand(command, [&command] { command.Press(By::Hand); }); });
  Bind(command, key, [&command, &key, letter] {
    SetCaption(key, command.Caption, letter);
    NameAs(key, command);
  });
}

void Binder::Choose(forms::Command& command, QAction& entry) {
  entry.setObjectName(ToQt(command.Name));
  QObject::connect(&entry, &QAction::triggered, &entry,
                   [this, &command] { ByHand(command, [&command] { command.Press(By::Hand); }); });
  Watch(command, [&command, &entry] {
    const QString caption = ToQt(command.Caption.Get());
    if (entry.text() != caption) entry.setText(caption);
    entry.setToolTip(ToQt(command.Tooltip.Get()));
    entry.setEnabled(command.Enabled);
    entry.setVisible(command.Visible);
  });
}

void Binder::Tick(forms::Choice& choice, QAbstractButton& box) {
  box.setCheckable(true);
  // The form says which option is on; the toolkit would switch the others off by itself.
  box.setAutoExclusive(false);
  QObject::connect(&box, &QAbstractButton::clicked, &box,
                   [this, &choice] { ByHand(choice, [&choice] { choice.Click(); }); });
  Bind(choice, box, [&choice, &box] {
    SetCaption(box, choice.Caption);
    NameAs(box, choice);
    box.setChecked(choice.Value);
  });
}

void Binder::Slide(forms::Range& range, DeckSlider& slider) {
  slider.SetSpan(range.Bounds);
  slider.OnPress = [this, &range] { ByHand(range, [&range] { range.Press(); }); };
  slider.OnMove = [this, &range](int value) {
    ByHand(range, [&range, value] { range.Change(value); });
  };
  slider.OnRelease = [this, &range] { ByHand(range, [&range] { range.Release(); }); };
  slider.OnStep = [this, &range](int value) {
    ByHand(range, [&range, value] { range.Step(value); });
  };
  Bind(range, slider, [&range, &slider] {
    NameAs(slider, range);
    // Under the hand the slider stands where the hand holds it.
    if (!slider.isSliderDown()) slider.setValue(range.Value);
  });
}

void Binder::Progress(forms::Range& range, QProgressBar& bar) {
  bar.setRange(range.Bounds.minimum, range.Bounds.maximum);
  Bind(range, bar, [&range, &bar] {
    NameAs(bar, range);
    bar.setValue(range.Value);
  });
}

void Binder::Pick(forms::Table& table, QComboBox& box) {
  QObject::connect(&box, &QComboBox::activated, &box, [this, &table](int row) {
    ByHand(table, [&table, row] { table.RowClick(row); });
  });
  Bind(table, box, [&table, &box, shownRows = std::make_shared<unsigned>(0)] {
    NameAs(box, table);
    if (*shownRows != table.RowsVersion()) {
      *shownRows = table.RowsVersion();
      ShowRows(table, box);
    }
    box.setCurrentIndex(table.ListIndex);
  });
}

void Binder::Frame(forms::Pane& pane, QWidget& frame, QLabel* caption) {
  if (caption) caption->setTextFormat(Qt::PlainText);
  Bind(pane, frame, [&pane, &frame, caption] {
    SetHeardName(frame, WithoutMnemonic(pane.Caption.Get()));
    if (caption) caption->setText(ToOneLine(pane.Caption.Get()));
  });
}

}  // namespace tavlo::platform::qt
