#pragma once

#include <QWidget>

#include "forms/main_form.h"
#include "platform/qt/deck_scale.h"
#include "platform/qt/icons.h"

class QBoxLayout;
class QLabel;

namespace tavlo::platform::qt {

class Binder;
class DeckKey;
class ElidingLabel;

/// The deck: display, meters, position, keys, and the status bar. Its height is the form's, which
/// is told how high it is at the desktop's letters.
class PlayerPanel : public QWidget {
 public:
  PlayerPanel(forms::MainForm& form, Binder& binder, QWidget* parent);

  /// Grows the deck with the desktop's letters as far as it fits into so much room. At the size
  /// that it was drawn in it takes what it takes.
  void FitInto(QSize room);
  const DeckScale& Scale() const { return scale_; }
  /// What the deck must have to be whole.
  int LeastWidth() const;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QBoxLayout* DisplayRow();
  QBoxLayout* BrandColumn();
  QBoxLayout* KeysRow();
  QBoxLayout* SoundColumn();
  QWidget* Display();
  DeckKey* Key(forms::Command& command, Glyph glyph, QSize size);
  ElidingLabel* Label(forms::Text& text, int letters, const QColor& colour);
  QWidget* Logo(forms::Pane& picture, Brand brand);
  void FitDisplay(QWidget& well, QLabel& position, QLabel& length);
  QBoxLayout* Meters();
  void ShowCustomDisplay(QBoxLayout& words);

  forms::MainForm& form_;
  Binder& binder_;
  const int drawnHeight_;
  DeckScale scale_;
  QWidget* fascia_;
};

}  // namespace tavlo::platform::qt
