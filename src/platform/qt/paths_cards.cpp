#include "platform/qt/paths_cards.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/card.h"
#include "platform/qt/roomy_key.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kPathsMargin = 16;
constexpr int kBetweenPaths = 6;

}  // namespace

PathsCards::PathsCards(forms::PathsPage& form, Binder& binder, QWidget* parent)
    : QWidget(parent), binder_(binder) {
  auto* const cards = new QVBoxLayout(this);
  cards->setContentsMargins(kPathsMargin, kPathsMargin, kPathsMargin, kPathsMargin);
  auto* const card = new Card(this);
  cards->addWidget(card);
  cards->addStretch(1);
  QLabel* const caption = card->AddHeading();
  AddPath(card->Lines(), form.lblEw2QueuePath, form.txtEw2QueuePath, form.cmdEw2QueuePathDefault);
  AddPath(card->Lines(), form.lblDs2QueuePath, form.txtDs2QueuePath, form.cmdDs2QueuePathDefault);
  AddPath(card->Lines(), form.lblEu2QueuePath, form.txtEu2QueuePath, form.cmdEu2QueuePathDefault);
  AddPath(card->Lines(), form.lblWavQueuePath, form.txtWavQueuePath, form.cmdWavQueuePathDefault);
  binder.Frame(form.frameConfigAlternatePath, *this, caption);
}

void PathsCards::AddPath(QVBoxLayout& lines, forms::Text& label, forms::Text& path,
                         forms::Command& putBack) {
  auto* const group = new QVBoxLayout;
  group->setSpacing(2);
  auto* const words = new QLabel(this);
  group->addWidget(words);
  binder_.Show(label, *words);
  auto* const row = new QHBoxLayout;
  row->setSpacing(kBetweenPaths);
  auto* const box = new QLineEdit(this);
  words->setBuddy(box);
  row->addWidget(box, 1);
  binder_.Edit(path, *box);
  auto* const key = new RoomyKey(this);
  row->addWidget(key);
  binder_.Press(putBack, *key);
  group->addLayout(row);
  lines.addLayout(group);
}

}  // namespace tavlo::platform::qt
