#pragma once

#include <QString>
#include <QWidget>
#include <deque>
#include <span>
#include <string>

#include "forms/configuration_form.h"

class QBoxLayout;

namespace tavlo::platform::qt {

class Binder;
class Card;
class KeyBox;

/// The page of the keys that run the deck from other windows: a card for each group of actions,
/// with a box beside each action that takes its key, and one for the desktop's media keys.
class KeysCards : public QWidget {
 public:
  KeysCards(forms::KeysPage& form, Binder& binder, QWidget* parent);

 private:
  struct Line {
    forms::KeyRow& row;
    KeyBox& box;
    std::string told = {};  ///< What a screen reader could hear of it last.
  };

  void AddWay(QBoxLayout& lines);
  void AddCards(QBoxLayout& lines);
  QWidget* CardOf(const QString& heading, std::span<forms::KeyRow> rows);
  void AddRow(Card& card, forms::KeyRow& row);
  QWidget* MediaCard();

  void Take(forms::KeyRow& row, const std::string& trigger);
  void Show(Line& line);

  forms::KeysPage& form_;
  Binder& binder_;
  std::deque<Line> lines_;
  std::string heard_;  ///< Of the row that has the keyboard, when its key or its state changed.
};

}  // namespace tavlo::platform::qt
