#include "platform/qt/ftp_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/card.h"
#include "platform/qt/card_columns.h"
#include "platform/qt/colours.h"
#include "platform/qt/eliding_label.h"
#include "platform/qt/roomy_key.h"
#include "platform/qt/secret_box.h"
#include "platform/qt/step_key.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"
#include "platform/qt/wrapping_row.h"
#include "store/settings_fields.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kMargin = 16;
constexpr int kBetweenCards = 12;
constexpr int kFtpLineSpacing = 8;
constexpr int kToItsText = 2;  ///< From a name down to its box.
constexpr int kBetweenTexts = 10;
constexpr int kMostCardColumns = 2;
constexpr int kBesidePlace = 12;

QString PlaceOf(const std::string& number) {
  const int profiles = store::ShapeOf(store::Table::FtpSettings).rows;
  return "Profile " + ToOneLine(number) + " of " + QString::number(profiles);
}

/// Which profile shows. It is as wide as the widest number, so the keys beside it stand still.
class PlaceLabel : public ElidingLabel {
 public:
  using ElidingLabel::ElidingLabel;

  QSize sizeHint() const override {
    const int width = fontMetrics().horizontalAdvance(PlaceOf("88")) + 2 * kBesidePlace;
    return {width, ElidingLabel::sizeHint().height()};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }
};

}  // namespace

FtpPage::FtpPage(forms::FtpPage& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const lines = new QVBoxLayout(this);
  lines->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  lines->setSpacing(kBetweenCards);
  // What is made first is reached first by Tab.
  AddKeys(*lines);
  auto* const page = new QWidget(this);
  auto* const cards = new CardColumns(page, 0, kBetweenCards, kMostCardColumns);
  AddServer(*cards);
  cards->BeginColumnOf(2);
  AddDownloads(*cards);
  AddRetrieval(*cards);
  lines->addWidget(page, 1);
  auto* const kept = new QLabel(
      "What is changed here is kept when another profile is shown, or this window is left by "
      "Close. Memorize takes a copy of a profile, and Clone puts it into the one that shows.",
      this);
  kept->setWordWrap(true);
  lines->addWidget(kept);
  binder.Frame(form.frameFtp, *this);
}

void FtpPage::AddKeys(QBoxLayout& lines) {
  auto* const row = new WrappingRow;
  row->addWidget(AddSteps());
  row->BeginRightPart();
  auto* const copies = new QWidget(this);
  auto* const keys = new QHBoxLayout(copies);
  keys->setContentsMargins(0, 0, 0, 0);
  for (forms::Command* const command :
       {&form_.cmdFtpClear, &form_.cmdFtpMemorize, &form_.cmdFtpClone}) {
    auto* const key = new RoomyKey(copies);
    keys->addWidget(key);
    binder_.Press(*command, *key);
  }
  row->addWidget(copies);
  lines.addLayout(row);
}

QWidget* FtpPage::AddSteps() {
  auto* const steps = new QWidget(this);
  auto* const row = new QHBoxLayout(steps);
  row->setContentsMargins(0, 0, 0, 0);
  const auto addKey = [&](forms::Command& command, Glyph glyph, StepKey::Direction direction) {
    auto* const key = new StepKey(glyph, direction, steps);
    row->addWidget(key);
    binder_.Press(command, *key);
  };
  using enum StepKey::Direction;
  addKey(form_.cmdFtpFirst, Glyph::SkipBegin, AsDrawn);
  addKey(form_.cmdFtpPrevious, Glyph::Play, Mirrored);
  auto* const place = new PlaceLabel(steps);
  place->setTextFormat(Qt::PlainText);
  place->setAlignment(Qt::AlignCenter);
  QFont bold = place->font();
  bold.setWeight(QFont::DemiBold);
  place->setFont(bold);
  row->addWidget(place);
  addKey(form_.cmdFtpNext, Glyph::Play, AsDrawn);
  addKey(form_.cmdFtpLast, Glyph::SkipEnd, AsDrawn);
  binder_.Bind(form_.dataFtpSettings, *steps, [steps, place, &form = form_] {
    const QString words = PlaceOf(form.dataFtpSettings.Caption);
    SetHeardName(*steps, words);
    if (place->text() != words) place->setText(words);
  });
  return steps;
}

void FtpPage::AddServer(CardColumns& cards) {
  server_ = new Card(this);
  server_->AddHeading("Server");
  QVBoxLayout& lines = server_->Lines();
  lines.setSpacing(kFtpLineSpacing);
  AddNamedEdit(lines, form_.lblFtpName, form_.txtFtpName, *new QLineEdit(this));
  AddNamedEdit(lines, form_.lblServerID, form_.eServer, *new QLineEdit(this));
  auto* const who = new QHBoxLayout;
  who->setSpacing(kBetweenTexts);
  AddNamedEdit(*who, form_.lblUser, form_.eUser, *new QLineEdit(this));
  AddNamedEdit(*who, form_.lblPass, form_.ePass, *new SecretBox(this));
  lines.addLayout(who);
  AddNamedEdit(lines, form_.lblServerDir, form_.eServerDir, *new QLineEdit(this));
  protection_ = new QLabel(this);
  protection_->setWordWrap(true);
  lines.addWidget(protection_);
  binder_.Show(form_.lblFtpUnprotected, *protection_);
  binder_.Watch(form_.lblFtpUnprotected, [this] { InkProtection(); });
  lines.addStretch(1);
  cards.addWidget(server_);
  server_->installEventFilter(this);
}

void FtpPage::AddDownloads(CardColumns& cards) {
  auto* const card = new Card(this);
  card->AddHeading("Downloads");
  QVBoxLayout& lines = card->Lines();
  lines.setSpacing(kFtpLineSpacing);
  AddBox(lines, form_.chkFtpAutoListAndDownload);
  AddBox(lines, form_.chkFtpPassiveMode);
  AddBox(lines, form_.chkFtpFileDeleteMode);
  auto* const link = new QVBoxLayout;
  link->setSpacing(kToItsText);
  auto* const name = new QLabel(this);
  link->addWidget(name);
  binder_.Show(form_.lblLinkFilesTo, *name);
  auto* const authors = new QComboBox(this);
  name->setBuddy(authors);
  link->addWidget(authors);
  binder_.Pick(form_.comboAuthorLastName, *authors);
  lines.addLayout(link);
  lines.addStretch(1);
  cards.addWidget(card);
}

void FtpPage::AddRetrieval(CardColumns& cards) {
  auto* const card = new Card(this);
  card->AddHeading("Automatic retrieval");
  QVBoxLayout& lines = card->Lines();
  lines.setSpacing(kFtpLineSpacing);
  AddBox(lines, form_.chkFtpAutoRetrieve);
  auto* const which =
      new QLabel("From the server that the Ftp view has chosen, until the deck ends.", this);
  which->setWordWrap(true);
  lines.addWidget(which);
  lines.addStretch(1);
  cards.addWidget(card);
}

void FtpPage::AddBox(QBoxLayout& lines, forms::Choice& box) {
  auto* const tick = new QCheckBox(this);
  lines.addWidget(tick, 0, Qt::AlignLeft);
  binder_.Tick(box, *tick);
}

void FtpPage::AddNamedEdit(QBoxLayout& lines, forms::Text& label, forms::Text& text,
                           QLineEdit& box) {
  auto* const group = new QVBoxLayout;
  group->setSpacing(kToItsText);
  auto* const name = new QLabel(this);
  name->setBuddy(&box);
  group->addWidget(name);
  binder_.Show(label, *name);
  group->addWidget(&box);
  binder_.Edit(text, box);
  lines.addLayout(group);
}

void FtpPage::InkProtection() {
  QPalette own;
  if (form_.lblFtpUnprotected.Warns) {
    own.setColor(QPalette::WindowText, Readable(theme::kAmberKey, server_->Sheet()));
  }
  protection_->setPalette(own);
}

/// The page has another palette before its card has.
bool FtpPage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::PaletteChange) InkProtection();
  return QWidget::eventFilter(watched, event);
}

}  // namespace tavlo::platform::qt
