#pragma once

#include "forms/configuration_form.h"
#include "platform/qt/top_window.h"

class QVBoxLayout;

namespace tavlo::platform::qt {

/// The configuration window.
class ConfigurationPages : public TopWindow {
 public:
  ConfigurationPages(forms::ConfigurationForm& form, QtLoop& loop, Binder& binder);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* ScrolledPages(forms::ConfigurationForm& form, Binder& binder);
  void AddTabs(forms::ConfigurationForm& form, Binder& binder, QVBoxLayout& rows);

  Binder& binder_;
};

}  // namespace tavlo::platform::qt
