#pragma once

#include <QWidget>

#include "forms/main_form.h"

namespace tavlo::platform::qt {

class Binder;
class DeckScale;
class DeckKey;

/// The place of Play and Stop. A document in work has one key there, which is what can be done
/// next: Play, or Stop while it sounds or winds. A preview leaves both open, so both share the
/// place.
class PlayKeys : public QWidget {
 public:
  PlayKeys(forms::MainForm& form, Binder& binder, DeckScale& scale, QWidget* parent);

 private:
  DeckKey* MakeKey();
  forms::Command& StopCommand();
  bool ShowsBoth() const;
  void ShareWidth();
  void Show();
  void ShowCommand(DeckKey& key, const forms::Command& command);

  forms::MainForm& form_;
  Binder& binder_;
  DeckScale& scale_;
  DeckKey* play_;
  DeckKey* stop_;
};

}  // namespace tavlo::platform::qt
