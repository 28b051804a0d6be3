#pragma once

#include <QWidget>
#include <initializer_list>

#include "forms/configuration_form.h"

class QVBoxLayout;

namespace tavlo::platform::qt {

class Binder;

/// The settings that have an effect, in two columns: playing on the left, what the deck says and
/// shows on the right.
class SettingsPage : public QWidget {
 public:
  SettingsPage(forms::ConfigurationForm& form, Binder& binder, QWidget* parent);

 private:
  void AddPlaying(QVBoxLayout& column);
  void AddSpeaking(QVBoxLayout& column);
  void AddShowing(QVBoxLayout& column);
  /// A frame whose caption carries the value of its slider.
  void AddSlider(QVBoxLayout& column, forms::Pane& frame, forms::Range& range,
                 forms::Choice* box = nullptr);
  void AddBoxes(QVBoxLayout& column, std::initializer_list<forms::Choice*> boxes);
  void AddKey(QVBoxLayout& column, forms::Command& command);
  void AddEdit(QVBoxLayout& column, forms::Text& text);

  forms::ConfigurationForm& form_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
