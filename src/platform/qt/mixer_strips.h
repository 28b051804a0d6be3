#pragma once

#include <QWidget>
#include <cstddef>

#include "forms/configuration_form.h"

class QBoxLayout;

namespace tavlo::platform::qt {

class Binder;

/// The device that plays, and under it a strip for each of its sources: name, volume, balance,
/// mute. Where there is room beside them it says what they are.
class MixerStrips : public QWidget {
 public:
  MixerStrips(forms::MixerPage& form, Binder& binder, QWidget* parent);

 private:
  void AddDevice(QBoxLayout& lines);
  QWidget* AddStrip(std::size_t source);
  QWidget* AddWords();

  forms::MixerPage& form_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
