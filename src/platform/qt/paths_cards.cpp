#include "platform/qt/paths_cards.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/card.h"
#include "platform/qt/card_columns.h"
#include "platform/qt/eliding_label.h"
#include "platform/qt/folder_list.h"
#include "platform/qt/roomy_key.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kPathsMargin = 16;
constexpr int kBetweenPaths = 6;
constexpr int kBetweenCards = 12;
constexpr int kToItsPath = 2;  ///< From a name down to what it names.
constexpr int kLeastFolders = 160;
constexpr int kMostColumns = 2;

}  // namespace

PathsCards::PathsCards(forms::PathsPage& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const cards = new CardColumns(this, kPathsMargin, kBetweenCards, kMostColumns);
  // A path is longer than the name of a folder.
  cards->SetShares({3, 2});
  AddPaths(*cards);
  cards->BeginColumnOf(kMostColumns);
  AddBrowser(*cards);
}

void PathsCards::AddPaths(CardColumns& cards) {
  auto* const card = new Card(this);
  QLabel* const caption = card->AddHeading();
  for (const Path& path : {Path{form_.lblEw2QueuePath, form_.txtEw2QueuePath,
                                form_.cmdSetEw2QueuePath, form_.cmdEw2QueuePathDefault},
                           Path{form_.lblDs2QueuePath, form_.txtDs2QueuePath,
                                form_.cmdSetDs2QueuePath, form_.cmdDs2QueuePathDefault},
                           Path{form_.lblEu2QueuePath, form_.txtEu2QueuePath,
                                form_.cmdSetEu2QueuePath, form_.cmdEu2QueuePathDefault},
                           Path{form_.lblWavQueuePath, form_.txtWavQueuePath,
                                form_.cmdSetWavQueuePath, form_.cmdWavQueuePathDefault}}) {
    AddPath(card->Lines(), path);
  }
  card->Lines().addStretch(1);
  auto* const taken = new QLabel(
      "What comes into these folders is taken out of them and into the deck at its start, at each "
      "refresh and behind each finished document.",
      this);
  taken->setWordWrap(true);
  card->Lines().addWidget(taken);
  cards.addWidget(card);
  binder_.Frame(form_.frameConfigAlternatePath, *this, caption);
}

void PathsCards::AddPath(QVBoxLayout& lines, const Path& path) {
  auto* const group = new QVBoxLayout;
  group->setSpacing(kToItsPath);
  auto* const words = new QLabel(this);
  group->addWidget(words);
  binder_.Show(path.label, *words);
  auto* const row = new QHBoxLayout;
  row->setSpacing(kBetweenPaths);
  auto* const box = new QLineEdit(this);
  words->setBuddy(box);
  row->addWidget(box, 1);
  binder_.Edit(path.path, *box);
  for (forms::Command* const command : {&path.set, &path.putBack}) {
    auto* const key = new RoomyKey(this);
    row->addWidget(key);
    binder_.Press(*command, *key);
  }
  group->addLayout(row);
  lines.addLayout(group);
}

void PathsCards::AddBrowser(CardColumns& cards) {
  auto* const card = new Card(this);
  card->AddHeading("Look for a folder");
  QVBoxLayout& lines = card->Lines();
  auto* const places = new QComboBox(this);
  lines.addWidget(places);
  binder_.Pick(form_.Drive1, *places);
  auto* const folders = new FolderList(form_.Dir1, binder_, this);
  folders->setMinimumHeight(kLeastFolders);
  lines.addWidget(folders, 1);
  auto* const browsed = new ElidingLabel(this);
  lines.addWidget(browsed);
  binder_.Show(form_.lblBrowsedFolder, *browsed);
  auto* const how = new QLabel(
      "A double click opens a folder. \u201cSet\u201d beside a path takes the one above.", this);
  how->setWordWrap(true);
  lines.addWidget(how);
  cards.addWidget(card);
}

}  // namespace tavlo::platform::qt
