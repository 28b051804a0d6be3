#pragma once

#include <QWidget>

#include "forms/main_form.h"

class QVBoxLayout;

namespace tavlo::platform::qt {

class Binder;
class WrappingRow;

/// What stands under the heading of the Import view: the directories, the list of the one on show,
/// the profile that is applied to its files, and the keys, the ones that send in the corner where
/// the eye ends.
class ImportPanel : public QWidget {
 public:
  ImportPanel(forms::MainForm& form, Binder& binder, QWidget* parent);

 private:
  QWidget* ScrolledParts();
  void AddDirectories(QVBoxLayout& rows);
  QWidget* ListWithItsWait();
  QWidget* ScrolledProfile();
  WrappingRow* Keys();

  forms::MainForm& form_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
