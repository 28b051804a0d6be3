#pragma once

#include <QWidget>
#include <initializer_list>

#include "forms/main_form.h"

class QVBoxLayout;

namespace tavlo::platform::qt {

class Binder;
class WrappingRow;

/// Everything under the deck: the four work frames, of which the form shows one.
class WorkFrames : public QWidget {
 public:
  WorkFrames(forms::MainForm& form, Binder& binder, QWidget* parent);

 private:
  struct Frame {
    QWidget* widget;
    QVBoxLayout* rows;
    WrappingRow* heading;
  };

  /// A frame with its caption in the heading row.
  Frame AddFrame(forms::Pane& pane);
  void AddQueue();
  void AddCompleted();
  void AddImport();
  void AddFtp();
  /// What the heading is given from here on stands at its right.
  void BeginRightPart(WrappingRow& heading);
  void AddKeys(WrappingRow& row, std::initializer_list<forms::Command*> commands);
  /// A button that F5 presses too, where it stands on the frame that is shown.
  void AddRefresh(WrappingRow& row, forms::Command& command);
  void AddCombo(WrappingRow& row, forms::Table& table);

  forms::MainForm& form_;
  Binder& binder_;
  QVBoxLayout* frames_;
};

}  // namespace tavlo::platform::qt
