#pragma once

#include <QString>
#include <QWidget>
#include <initializer_list>

#include "forms/configuration_form.h"

class QBoxLayout;
class QGridLayout;
class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace tavlo::platform::qt {

class Binder;

/// The settings page: a card for each group of settings, under a heading that says what it is
/// about.
class SettingsCards : public QWidget {
 public:
  SettingsCards(forms::ConfigurationForm& form, Binder& binder, QWidget* parent);

 private:
  QVBoxLayout& AddCard(const QString& heading);
  void AddPlaying(QVBoxLayout& lines);
  void AddNewWork(QVBoxLayout& lines);
  void AddFiles(QVBoxLayout& lines);
  void AddReports(QVBoxLayout& lines);
  void AddPrompts(QVBoxLayout& lines);
  void AddWindow(QVBoxLayout& lines);
  void AddWords(QVBoxLayout& lines);

  /// A frame whose caption carries the value of its slider.
  void AddSlider(QVBoxLayout& column, forms::Pane& frame, forms::Range& range,
                 forms::Choice* box = nullptr);
  void AddBoxes(QVBoxLayout& column, std::initializer_list<forms::Choice*> boxes);
  /// A line that belongs to the box to tick above it.
  void AddHint(QVBoxLayout& column, const QString& words);
  QBoxLayout& AddIndented(QVBoxLayout& column);
  /// The seconds after which what the box above says is done again.
  void AddInterval(QVBoxLayout& column, forms::Text& seconds);
  /// A number with its name before and its unit behind it.
  void AddNumber(QGridLayout& grid, forms::Text& label, forms::Text& number, const QString& unit);
  /// A text under its name.
  void AddNamedEdit(QVBoxLayout& column, forms::Text& label, forms::Text& text, QLineEdit& box);

  forms::ConfigurationForm& form_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
