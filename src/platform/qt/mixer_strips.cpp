#include "platform/qt/mixer_strips.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/card.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/eliding_label.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kMargin = 16;
constexpr int kStripLineSpacing = 12;
constexpr int kBetweenStrips = 6;
constexpr int kStripPadding = 3;  ///< With more, the keys of eight strips would not fit.
constexpr int kWordsShare = 2;    ///< Of the width, where a strip has one.
/// With more strips there is no room for words beside them.
constexpr std::size_t kMostStripsBesideWords = 3;
constexpr int kDeviceWidth = 300;
constexpr int kVolumeHeight = 160;

}  // namespace

MixerStrips::MixerStrips(forms::MixerPage& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const lines = new QVBoxLayout(this);
  lines->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  lines->setSpacing(kStripLineSpacing);
  AddDevice(*lines);
  auto* const nothing = new QLabel(this);
  nothing->setWordWrap(true);
  nothing->setAlignment(Qt::AlignCenter);
  lines->addWidget(nothing, 1);
  binder.Show(form.lblNoSource, *nothing);
  auto* const desk = new QWidget(this);
  auto* const strips = new QHBoxLayout(desk);
  strips->setContentsMargins(0, 0, 0, 0);
  strips->setSpacing(kBetweenStrips);
  for (std::size_t source = 0; source < form.slVolume.size(); ++source) {
    strips->addWidget(AddStrip(source), 1);
  }
  strips->addWidget(AddWords(), kWordsShare);
  lines->addWidget(desk, 1);
  binder.Watch(form.lblNoSource, [desk, &nothingThere = form.lblNoSource] {
    desk->setVisible(!nothingThere.Visible);
  });
  binder.Frame(form.frameConfigMixer, *this);
}

void MixerStrips::AddDevice(QBoxLayout& lines) {
  auto* const card = new Card(this);
  card->AddHeading("Where the deck plays");
  auto* const row = new QHBoxLayout;
  auto* const caption = new QLabel(this);
  row->addWidget(caption);
  binder_.Show(form_.lblDevice, *caption);
  auto* const devices = new QComboBox(this);
  devices->setMinimumWidth(kDeviceWidth);
  caption->setBuddy(devices);
  row->addWidget(devices);
  binder_.Pick(form_.DeviceCombo, *devices);
  row->addStretch(1);
  card->Lines().addLayout(row);
  lines.addWidget(card);
}

QWidget* MixerStrips::AddStrip(std::size_t source) {
  auto* const strip = new Card(this);
  QVBoxLayout* const parts = &strip->Lines();
  QMargins margins = parts->contentsMargins();
  margins.setLeft(kStripPadding);
  margins.setRight(kStripPadding);
  parts->setContentsMargins(margins);

  auto* const name = new ElidingLabel(strip);
  name->setAlignment(Qt::AlignCenter);
  QFont bold = name->font();
  bold.setWeight(QFont::DemiBold);
  name->setFont(bold);
  parts->addWidget(name);
  binder_.Show(form_.Label[source], *name);
  auto* const volume = new DeckSlider(DeckSlider::Look::Upright, strip);
  volume->setMinimumHeight(kVolumeHeight);
  parts->addWidget(volume, 1, Qt::AlignHCenter);
  binder_.Slide(form_.slVolume[source], *volume);
  auto* const balanceCaption = new QLabel(strip);
  balanceCaption->setAlignment(Qt::AlignCenter);
  parts->addWidget(balanceCaption);
  binder_.Show(form_.lblBalance[source], *balanceCaption);
  auto* const balance = new DeckSlider(DeckSlider::Look::Level, strip);
  const forms::Span& sides = form_.slBalance[source].Bounds;
  balance->SetNought((sides.minimum + sides.maximum) / 2);
  parts->addWidget(balance);
  binder_.Slide(form_.slBalance[source], *balance);
  auto* const mute = new QCheckBox(strip);
  parts->addWidget(mute, 0, Qt::AlignHCenter);
  binder_.Tick(form_.chMute[source], *mute);
  auto* const advanced = new QPushButton(strip);
  advanced->setAutoDefault(false);
  parts->addWidget(advanced);
  binder_.Press(form_.cmdAdvanced[source], *advanced);

  // A strip without a source is hidden.
  binder_.Watch(form_.Label[source],
                [strip, &label = form_.Label[source]] { strip->setVisible(label.Visible); });
  return strip;
}

QWidget* MixerStrips::AddWords() {
  auto* const card = new Card(this);
  card->AddHeading("What these sliders move");
  auto* const words = new QLabel(
      "\u201cOutput\u201d is the loudness of the device, for everything that plays on it. Each "
      "other strip is one program that plays there now, Tavlo Deck among them.\n\n"
      "The desktop keeps these figures, not the deck. The volume of the dictation itself is set on "
      "the deck, beside its keys.",
      card);
  words->setWordWrap(true);
  card->Lines().addWidget(words);
  card->Lines().addStretch(1);
  binder_.Watch(
      form_.Label[kMostStripsBesideWords],
      [card, &next = form_.Label[kMostStripsBesideWords]] { card->setVisible(!next.Visible); });
  return card;
}

}  // namespace tavlo::platform::qt
