#pragma once

#include <QWidget>

#include "forms/configuration_form.h"

class QVBoxLayout;

namespace tavlo::platform::qt {

class Binder;

/// The page of the folders that work comes from.
class PathsCards : public QWidget {
 public:
  PathsCards(forms::PathsPage& form, Binder& binder, QWidget* parent);

 private:
  void AddPath(QVBoxLayout& lines, forms::Text& label, forms::Text& path, forms::Command& putBack);

  Binder& binder_;
};

}  // namespace tavlo::platform::qt
