#pragma once

#include <QString>
#include <deque>
#include <functional>
#include <unordered_map>

#include "forms/controls.h"

class QAbstractButton;
class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QWidget;

namespace tavlo::platform {
class Hush;
}

namespace tavlo::platform::qt {

class DeckSlider;
class QtLoop;

/// Ties controls to widgets, one way for each kind of control: a control whose version moved is
/// shown again at the next pass, and what a user does goes through the control's hand doors. It
/// decides nothing. Forms and widgets must outlive it.
class Binder {
 public:
  /// What is kept for later refers to the binder, so that must outlive every turn of the loop.
  Binder(QtLoop& loop, Hush& hush);
  Binder(const Binder&) = delete;

  /// A label. `before` stands in front of its text.
  void Show(forms::Text& text, QLabel& label, const QString& before = {});
  void Edit(forms::Text& text, QLineEdit& box);
  /// A key. Alt and `letter` press it, where one is named; in the caption it is underlined.
  void Press(forms::Command& command, QAbstractButton& key, char letter = 0);
  void Choose(forms::Command& command, QAction& entry);
  void Tick(forms::Choice& choice, QAbstractButton& box);
  void Slide(forms::Range& range, DeckSlider& slider);
  void Progress(forms::Range& range, QProgressBar& bar);
  void Pick(forms::Table& table, QComboBox& box);
  /// A frame; `caption` may be null.
  void Frame(forms::Pane& pane, QWidget& frame, QLabel* caption = nullptr);

  /// Any control: name, tooltip, enabled and visible are kept up to date; `show` does the rest
  /// whenever the control changed.
  void Bind(const forms::Control& control, QWidget& widget, std::function<void()> show);
  /// Calls `show` whenever the control changed, and nothing else.
  void Watch(const forms::Control& control, std::function<void()> show);
  /// Says which widget has the keyboard when the control is given it.
  void StandsFor(QWidget& widget, const forms::Control& control) { widgets_[&control] = &widget; }

  /// Runs what a user did, later where the loop only breathes: so `door` owns what it brings along.
  /// The control is then shown again even if nothing came of it, so that the widget does not keep
  /// what the form refused. False when it runs later.
  bool ByHand(const forms::Control& control, std::function<void()> door);
  /// Forgets what is kept to run later.
  void ForgetHands();
  /// Presses a key that stops the player. Where that must wait there is silence meanwhile.
  void StopByHand(forms::Command& command);

  /// Brings every widget up to its control.
  void ShowChanges();

  /// Null when no widget shows the control.
  QWidget* WidgetOf(const forms::Control& control) const;

 private:
  struct Bound {
    const forms::Control* control;
    std::function<void()> show;
    unsigned shownVersion = 0;
  };

  QtLoop& loop_;
  Hush& hush_;
  std::deque<Bound> bounds_;
  std::unordered_map<const forms::Control*, QWidget*> widgets_;
};

}  // namespace tavlo::platform::qt
