#pragma once

#include "forms/main_form.h"
#include "platform/qt/card.h"

class QGridLayout;
class QLabel;

namespace tavlo::platform::qt {

class Binder;

/// The author profile that is applied to what is sent to the Queue, and the document that it makes.
class ProfileCard : public Card {
 public:
  ProfileCard(forms::MainForm& form, Binder& binder, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddHead();
  void AddBoxes();
  void AddBox(QGridLayout& grid, int row, int column, int columns, forms::Text& label,
              forms::Text& box);
  void AddDocument();
  /// As in the lists, what is urgent is red.
  void InkDocument();
  void TellPointer();
  void TellNameClicked();

  forms::MainForm& form_;
  Binder& binder_;
  QLabel* document_ = nullptr;
  /// A movement of the pointer waits to be told; the next ones would tell nothing new.
  bool pointerWaits_ = false;
};

}  // namespace tavlo::platform::qt
