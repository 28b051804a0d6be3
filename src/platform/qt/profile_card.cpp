#include "platform/qt/profile_card.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>

#include "platform/qt/binder.h"
#include "platform/qt/colours.h"
#include "platform/qt/eliding_label.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kProfileLineSpacing = 8;
constexpr int kToItsBox = 2;  ///< From a label down to its box.
constexpr int kBetweenBoxes = 10;
constexpr int kBoxSides = 16;      ///< Both sides of a box together.
constexpr int kLeastLetters = 10;  ///< Of a longer text the box shows so many at least.
constexpr forms::Colour kPriorityInk = 0xFF0000;

}  // namespace

ProfileCard::ProfileCard(forms::MainForm& form, Binder& binder, QWidget* parent)
    : Card(parent), form_(form), binder_(binder) {
  setMouseTracking(true);
  Lines().setSpacing(kProfileLineSpacing);
  AddHead();
  AddBoxes();
  AddDocument();
  Lines().addStretch(1);
  for (QLabel* const words : findChildren<QLabel*>()) words->setMouseTracking(true);
}

void ProfileCard::AddHead() {
  auto* const row = new QHBoxLayout;
  auto* const caption = new QLabel(this);
  QFont bold = caption->font();
  bold.setWeight(QFont::DemiBold);
  caption->setFont(bold);
  row->addWidget(caption);
  auto* const names = new QComboBox(this);
  row->addWidget(names, 1);
  binder_.Pick(form_.comboAuthorLastName, *names);
  Lines().addLayout(row);
  binder_.Frame(form_.frameImportDemographics, *this, caption);
}

void ProfileCard::AddBoxes() {
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(kBetweenBoxes);
  grid->setVerticalSpacing(kToItsBox);
  AddBox(*grid, 0, 0, 3, form_.lblAuthorLastName, form_.txtImportAuthorLastName);
  AddBox(*grid, 0, 3, 3, form_.lblAuthorID, form_.txtImportAuthorID);
  AddBox(*grid, 3, 0, 3, form_.lblImportSubject, form_.txtImportSubject);
  AddBox(*grid, 3, 3, 1, form_.lblDepartment, form_.txtImportDepartment);
  AddBox(*grid, 3, 4, 1, form_.lblWorktype, form_.txtImportWorktype);
  AddBox(*grid, 3, 5, 1, form_.lblSystemID, form_.txtImportSystemID);
  grid->setRowMinimumHeight(2, kProfileLineSpacing - 2 * kToItsBox);
  for (int column = 0; column < 6; ++column) grid->setColumnStretch(column, 1);
  Lines().addLayout(grid);
  binder_.WidgetOf(form_.txtImportAuthorLastName)->installEventFilter(this);
}

void ProfileCard::AddBox(QGridLayout& grid, int row, int column, int columns, forms::Text& label,
                         forms::Text& box) {
  // The typist names subjects as they like, and at any length.
  const bool isTheirs = &label == &form_.lblImportSubject;
  QLabel* const words = isTheirs ? new ElidingLabel(this) : new QLabel(this);
  grid.addWidget(words, row, column, 1, columns);
  binder_.Show(label, *words);
  auto* const edit = new QLineEdit(this);
  // A box is as wide as its longest text, where that is a short one.
  const int letters = std::min<int>(static_cast<int>(box.Longest), kLeastLetters);
  const QString widest(letters, QChar('0'));
  edit->setMinimumWidth(std::max(edit->minimumSizeHint().width(),
                                 edit->fontMetrics().horizontalAdvance(widest) + kBoxSides));
  words->setBuddy(edit);
  grid.addWidget(edit, row + 1, column, 1, columns);
  binder_.Edit(box, *edit);
}

void ProfileCard::AddDocument() {
  auto* const priority = new QCheckBox(this);
  Lines().addWidget(priority, 0, Qt::AlignLeft);
  binder_.Tick(form_.chkImportPriority, *priority);
  auto* const goesAs = new QLabel(this);
  Lines().addWidget(goesAs);
  binder_.Show(form_.lblImportGoesAs, *goesAs);
  document_ = new ElidingLabel(this);
  QFont bold = document_->font();
  bold.setWeight(QFont::DemiBold);
  document_->setFont(bold);
  Lines().addWidget(document_);
  binder_.Show(form_.lblImportDocument, *document_);
  binder_.Watch(form_.chkImportPriority, [this] { InkDocument(); });
}

void ProfileCard::InkDocument() {
  QPalette own;
  if (form_.chkImportPriority.Value) {
    own.setColor(QPalette::WindowText, Readable(QColor::fromRgb(kPriorityInk), Sheet()));
  }
  document_->setPalette(own);
}

void ProfileCard::changeEvent(QEvent* event) {
  Card::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && document_ != nullptr) InkDocument();
}

/// Over a box the pointer is not over the card.
void ProfileCard::mouseMoveEvent(QMouseEvent* event) {
  event->ignore();
  const QWidget* const under = childAt(event->position().toPoint());
  if (!under || qobject_cast<const QLabel*>(under)) TellPointer();
}

void ProfileCard::TellPointer() {
  if (pointerWaits_) return;
  pointerWaits_ = true;
  binder_.ByHand(form_.frameImportDemographics, [this] {
    pointerWaits_ = false;
    form_.frameImportDemographics.PointerMove();
  });
}

void ProfileCard::TellNameClicked() {
  binder_.ByHand(form_.txtImportAuthorLastName, [this] { form_.txtImportAuthorLastName.Click(); });
}

bool ProfileCard::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress) TellNameClicked();
  if (event->type() == QEvent::FocusIn) {
    // Who works without a mouse gets into the box by the Tab key.
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) TellNameClicked();
  }
  return Card::eventFilter(watched, event);
}

}  // namespace tavlo::platform::qt
