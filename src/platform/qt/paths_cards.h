#pragma once

#include <QWidget>

#include "forms/configuration_form.h"

class QVBoxLayout;

namespace tavlo::platform::qt {

class Binder;
class CardColumns;

/// The page of the folders that work comes from, and where somebody looks for such a folder.
class PathsCards : public QWidget {
 public:
  PathsCards(forms::PathsPage& form, Binder& binder, QWidget* parent);

 private:
  struct Path {
    forms::Text& label;
    forms::Text& path;
    forms::Command& set;
    forms::Command& putBack;
  };

  void AddPaths(CardColumns& cards);
  void AddPath(QVBoxLayout& lines, const Path& path);
  void AddBrowser(CardColumns& cards);

  forms::PathsPage& form_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
