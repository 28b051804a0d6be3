#pragma once

#include <QWidget>

#include "forms/configuration_form.h"

class QBoxLayout;
class QLabel;
class QLineEdit;

namespace tavlo::platform::qt {

class Binder;
class Card;
class CardColumns;

/// The page of the servers: the keys that step over their profiles, the profile that shows, and the
/// retrieval that goes on by itself.
class FtpPage : public QWidget {
 public:
  FtpPage(forms::FtpPage& form, Binder& binder, QWidget* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddKeys(QBoxLayout& lines);
  QWidget* AddSteps();
  void AddServer(CardColumns& cards);
  void AddDownloads(CardColumns& cards);
  void AddRetrieval(CardColumns& cards);
  void AddBox(QBoxLayout& lines, forms::Choice& box);
  /// A text under its name.
  void AddNamedEdit(QBoxLayout& lines, forms::Text& label, forms::Text& text, QLineEdit& box);
  void InkProtection();

  forms::FtpPage& form_;
  Binder& binder_;
  Card* server_ = nullptr;
  QLabel* protection_ = nullptr;
};

}  // namespace tavlo::platform::qt
