#pragma once

#include "forms/settings_page.h"
#include "platform/qt/card.h"

class QBoxLayout;

namespace tavlo::platform::qt {

class Binder;

/// The foot pedal's part of the settings: three pedals that light under the foot, what they do,
/// which kind of pedal is read, how it is doing, and what runs the deck beside it.
class PedalFrame : public Card {
 public:
  PedalFrame(forms::SettingsPage& form, Binder& binder, QWidget* parent);

 private:
  void AddPedals(QBoxLayout& lines);
  void AddKind(QBoxLayout& lines);

  forms::SettingsPage& form_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
