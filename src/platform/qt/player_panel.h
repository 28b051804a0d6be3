#pragma once

#include <QWidget>

#include "forms/main_form.h"
#include "platform/qt/icons.h"

class QBoxLayout;
class QLabel;

namespace tavlo::platform::qt {

class Binder;
class DeckKey;

/// The deck: display, meters, position, keys, and the status bar. Its height is the form's.
class PlayerPanel : public QWidget {
 public:
  PlayerPanel(forms::MainForm& form, Binder& binder, QWidget* parent);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QBoxLayout* DisplayRow();
  QBoxLayout* BrandColumn();
  QBoxLayout* KeysRow();
  QBoxLayout* SoundColumn();
  QWidget* Display();
  DeckKey* Key(forms::Command& command, Glyph glyph, QSize size);
  QLabel* Label(forms::Text& text, const QFont& font, const QColor& colour);
  QLabel* Logo(forms::Pane& picture);
  void ShowCustomDisplay(QBoxLayout& words);

  forms::MainForm& form_;
  Binder& binder_;
  QWidget* fascia_;
};

}  // namespace tavlo::platform::qt
