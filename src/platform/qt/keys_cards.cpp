#include "platform/qt/keys_cards.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <utility>
#include <vector>

#include "forms/accessible_name.h"
#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/card.h"
#include "platform/qt/card_columns.h"
#include "platform/qt/colours.h"
#include "platform/qt/key_box.h"
#include "platform/qt/roomy_key.h"
#include "platform/qt/state_speaker.h"
#include "platform/qt/texts.h"
#include "remote/afar_action.h"
#include "remote/key_trigger.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kKeysMargin = 16;
constexpr int kBetweenKeyCards = 12;
constexpr int kBetweenRows = 8;
constexpr int kToItsBox = 10;
constexpr int kMostKeyColumns = 2;
constexpr double kQuietInk = 0.75;  ///< Share of the letters' colour.

using remote::AfarAction;
using remote::IndexOf;

/// What there is to say of a key, in letters that stand back behind the names of the actions.
class StateLabel : public QLabel {
 public:
  explicit StateLabel(Card& card) : QLabel(&card), card_(card) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
  }

  void Say(const std::string& words) {
    const QString line = ToOneLine(words);
    SetHeardName(*this, line);
    // A key with all its modifiers is a very long word.
    setText(QString(line).replace(u'+', QStringLiteral(u"+\u200B")));
    setVisible(!line.isEmpty());
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const QColor sheet = card_.Sheet();
    const QColor ink = Mixed(sheet, palette().color(foregroundRole()), kQuietInk);
    QPainter painter(this);
    painter.setPen(Readable(ink, sheet));
    painter.drawText(contentsRect(), Qt::TextWordWrap, text());
  }

 private:
  const Card& card_;
};

QString InWords(const std::string& text) {
  const auto trigger = remote::KeyTrigger::Of(text);
  return ToOneLine(trigger ? trigger->InWords() : text);
}

/// What a screen reader says of a row.
std::string InOneSentence(const forms::KeyRow& row) {
  const std::string& text = row.txtKey.Value;
  const std::string key = text.empty() ? "No key" : FromQt(InWords(text));
  const std::string& state = row.lblKeyState.Value;
  return state.empty() ? key : key + ". " + state;
}

}  // namespace

KeysCards::KeysCards(forms::KeysPage& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const lines = new QVBoxLayout(this);
  lines->setContentsMargins(kKeysMargin, kKeysMargin, kKeysMargin, kKeysMargin);
  lines->setSpacing(kBetweenKeyCards);
  // What is made first is reached first by Tab.
  AddWay(*lines);
  AddCards(*lines);
  std::vector<const forms::Control*> telling;
  for (Line& line : lines_) {
    const auto show = [this, &line] { Show(line); };
    binder.Bind(line.row.txtKey, line.box, show);
    binder.Watch(line.row.lblKeyState, show);
    telling.insert(telling.end(), {&line.row.txtKey, &line.row.lblKeyState});
  }
  // It looks when the lines have been shown, for they say what there is to hear.
  new StateSpeaker([this] { return heard_; }, telling, binder, this);
  binder.Frame(form.frameConfigKeys, *this);
}

void KeysCards::AddWay(QBoxLayout& lines) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(kBetweenKeyCards);
  auto* const way = new QLabel(this);
  way->setWordWrap(true);
  row->addWidget(way, 1);
  binder_.Show(form_.lblKeysWay, *way);
  auto* const key = new RoomyKey(this);
  row->addWidget(key);
  binder_.Press(form_.cmdDesktopKeys, *key);
  lines.addLayout(row);
}

void KeysCards::AddCards(QBoxLayout& lines) {
  auto* const page = new QWidget(this);
  auto* const cards = new CardColumns(page, 0, kBetweenKeyCards, kMostKeyColumns);
  const std::span<forms::KeyRow> rows(form_.keys);
  constexpr std::size_t kSpeed = IndexOf(AfarAction::Slower);
  constexpr std::size_t kFinishing = IndexOf(AfarAction::Complete);
  cards->addWidget(CardOf("Playing and winding", rows.first(kSpeed)));
  cards->BeginColumnOf(kMostKeyColumns);
  cards->addWidget(CardOf("Speed", rows.subspan(kSpeed, kFinishing - kSpeed)));
  cards->addWidget(CardOf("Finishing", rows.subspan(kFinishing)));
  lines.addWidget(page, 1);
  lines.addWidget(MediaCard());
}

QWidget* KeysCards::CardOf(const QString& heading, std::span<forms::KeyRow> rows) {
  auto* const card = new Card(this);
  card->AddHeading(heading);
  card->Lines().setSpacing(kBetweenRows);
  for (forms::KeyRow& row : rows) AddRow(*card, row);
  card->Lines().addStretch(1);
  return card;
}

/// The name stands beside the middle of its box, and moves up where there is something to say.
void KeysCards::AddRow(Card& card, forms::KeyRow& row) {
  auto* const line = new QHBoxLayout;
  line->setSpacing(kToItsBox);
  auto* const words = new QVBoxLayout;
  words->setSpacing(0);
  words->addStretch(1);
  auto* const name = new QLabel(&card);
  name->setWordWrap(true);
  words->addWidget(name);
  binder_.Show(row.lblKey, *name);
  auto* const state = new StateLabel(card);
  words->addWidget(state);
  state->setObjectName(ToQt(row.lblKeyState.Name));
  binder_.StandsFor(*state, row.lblKeyState);
  binder_.Watch(row.lblKeyState, [state, &text = row.lblKeyState.Value] { state->Say(text); });
  words->addStretch(1);
  line->addLayout(words, 1);
  auto* const box = new KeyBox(&card);
  line->addWidget(box);
  card.Lines().addLayout(line);
  box->OnKey = [this, &row](const std::string& trigger) { Take(row, trigger); };
  box->OnKeyboard = [&row](bool has) { row.HasKeyboard = has; };
  lines_.push_back({.row = row, .box = *box});
}

QWidget* KeysCards::MediaCard() {
  auto* const card = new Card(this);
  card->AddHeading("Media keys");
  card->Lines().setSpacing(kBetweenRows);
  auto* const media = new QLabel(this);
  media->setWordWrap(true);
  card->Lines().addWidget(media);
  binder_.Show(form_.lblMediaKeys, *media);
  auto* const tick = new QCheckBox(this);
  card->Lines().addWidget(tick, 0, Qt::AlignLeft);
  binder_.Tick(form_.chkBusSaysNothing, *tick);
  return card;
}

void KeysCards::Take(forms::KeyRow& row, const std::string& trigger) {
  binder_.ByHand(row.txtKey, [&row, trigger] { row.txtKey.Change(trigger); });
}

void KeysCards::Show(Line& line) {
  const forms::KeyRow& row = line.row;
  line.box.ShowKey(InWords(row.txtKey.Value));
  line.box.Light(row.Down);
  std::string told = InOneSentence(row);
  SetHeardName(line.box, ToOneLine(AccessibleName(row.txtKey)));
  SetHeardDescription(line.box, ToOneLine(row.Down ? told + ". Down" : told));
  if (line.told == told) return;
  line.told = std::move(told);
  if (line.box.hasFocus()) heard_ = line.told;
}

}  // namespace tavlo::platform::qt
