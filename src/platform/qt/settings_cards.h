#pragma once

#include <QWidget>
#include <initializer_list>

#include "forms/configuration_form.h"

class QVBoxLayout;

namespace tavlo::platform::qt {

class Binder;

/// The settings page, as far as its settings have an effect yet, on cards in two columns: playing,
/// the window and what it shows on the left, prompts, files that come in and the foot pedal on the
/// right.
class SettingsCards : public QWidget {
 public:
  SettingsCards(forms::ConfigurationForm& form, Binder& binder, QWidget* parent);

 private:
  QVBoxLayout& AddCard(QVBoxLayout& column);
  void AddPlaying(QVBoxLayout& lines);
  void AddWindow(QVBoxLayout& lines);
  void AddSpeaking(QVBoxLayout& lines);
  void AddFiles(QVBoxLayout& lines);
  void AddShowing(QVBoxLayout& lines);
  /// A frame whose caption carries the value of its slider.
  void AddSlider(QVBoxLayout& column, forms::Pane& frame, forms::Range& range,
                 forms::Choice* box = nullptr);
  void AddBoxes(QVBoxLayout& column, std::initializer_list<forms::Choice*> boxes);
  void AddEdit(QVBoxLayout& column, forms::Text& text);

  forms::ConfigurationForm& form_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
