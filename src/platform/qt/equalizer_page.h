#pragma once

#include <QWidget>

#include "forms/configuration_form.h"

class QBoxLayout;
class QGridLayout;

namespace tavlo::platform::qt {

class Binder;

/// The switch, the curves, and twelve upright sliders between their scale and their frequencies.
class EqualizerPage : public QWidget {
 public:
  EqualizerPage(forms::EqualizerPage& form, Binder& binder, QWidget* parent);

 private:
  void AddCurves(QBoxLayout& lines);
  void AddBands(QBoxLayout& lines);
  void AddScale(QGridLayout& desk);
  void AddCurve(QBoxLayout& row, forms::PresetCommand& command);

  forms::EqualizerPage& form_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
