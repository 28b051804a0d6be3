#include "platform/qt/player_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <utility>

#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/brand_logo.h"
#include "platform/qt/deck_key.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/eliding_label.h"
#include "platform/qt/fascia_panel.h"
#include "platform/qt/figures_label.h"
#include "platform/qt/meter_bar.h"
#include "platform/qt/play_keys.h"
#include "platform/qt/status_strip.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

// All measures are those of the deck as it was drawn.
constexpr int kLeastWidth = 860;
constexpr QSize kDisplaySize{290, 62};
constexpr QRect kPositionPlace{14, 6, 174, 50};
constexpr QRect kLengthPlace{190, 8, 86, 46};
constexpr QSize kSmallKey{44, 40};
constexpr QSize kWordKey{82, 40};
constexpr QSize kSideKey{46, 28};
constexpr int kMeterWidth = 170;
constexpr int kMeterHeight = 9;
constexpr int kLamp = 4;
constexpr int kSoundSliderWidth = 126;
constexpr int kLeastSoundSliderWidth = 64;  ///< On a screen that the deck hardly fits.
constexpr int kLogoHeight = 40;
constexpr int kSide = 16;

/// The dark well that the figures stand in.
class Well : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme::kWellEdge, 1));
    painter.setBrush(theme::kWell);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
  }
};

QPalette DeckPalette(QPalette palette) {
  palette.setColor(QPalette::Window, theme::kDeckBottom);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, theme::kText);
    palette.setColor(QPalette::Disabled, role, theme::kDisabledText);
  }
  return palette;
}

/// The user's own line is a heading and what stands beside it behind a run of blanks, if any.
std::pair<QString, QString> SplitAtWideGap(const QString& text) {
  const auto gap = text.indexOf("  ");
  if (gap < 0) return {text.trimmed(), {}};
  return {text.left(gap).trimmed(), text.mid(gap).trimmed()};
}

}  // namespace

PlayerPanel::PlayerPanel(forms::MainForm& form, Binder& binder, QWidget* parent)
    : QWidget(parent),
      form_(form),
      binder_(binder),
      drawnHeight_(ToPixels(form.framePlayer.Height)) {
  setPalette(DeckPalette(palette()));
  auto* const rows = new QVBoxLayout(this);
  rows->setSpacing(0);
  rows->addLayout(DisplayRow());

  auto* const position = new DeckSlider(DeckSlider::Look::Main, this);
  binder.Slide(form.slPosition, *position);
  auto* const positionRow = new QHBoxLayout;
  positionRow->addWidget(position);
  scale_.Fit([this, rows, position, positionRow] {
    rows->setContentsMargins(0, scale_(14), 0, 0);
    position->GrowTo(scale_.Factor());
    positionRow->setContentsMargins(scale_(QMargins(kSide - 2, 8, kSide - 2, 0)));
  });
  rows->addLayout(positionRow);

  rows->addStretch(1);
  rows->addLayout(KeysRow());
  rows->addStretch(1);
  rows->addWidget(new StatusStrip(form.StatusBar1, form.lblNotice, binder, scale_, this));

  fascia_ = new FasciaPanel(form, binder, this);
  binder.Frame(form.framePlayer, *this);
  binder.Watch(form.framePlayer, [this] { setFixedHeight(ToPixels(form_.framePlayer.Height)); });
}

void PlayerPanel::FitInto(QSize room) {
  scale_.Follow({kLeastWidth, drawnHeight_}, room);
  form_.framePlayer.Height = ToTwips(scale_(drawnHeight_));
}

int PlayerPanel::LeastWidth() const { return scale_(kLeastWidth); }

void PlayerPanel::resizeEvent(QResizeEvent*) { fascia_->setGeometry(rect()); }

ElidingLabel* PlayerPanel::Label(forms::Text& text, int letters, const QColor& colour) {
  auto* const label = new ElidingLabel(this);
  scale_.Fit([this, label, letters] { label->setFont(DeckFont(scale_(letters))); });
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, colour);
  label->setPalette(colours);
  binder_.Show(text, *label);
  return label;
}

QWidget* PlayerPanel::Display() {
  auto* const well = new Well(this);
  auto* const position = new FiguresLabel(well);
  auto* const length = new FiguresLabel(well);
  length->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  scale_.Fit([this, well, position, length] { FitDisplay(*well, *position, *length); });
  for (FiguresLabel* const label : {position, length}) {
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, label == position ? theme::kAmber : theme::kDimAmber);
    label->setPalette(colours);
  }
  position->setAccessibleName(ToQt(form_.lblFilePositionHMS.Tooltip.Get()));
  length->setAccessibleName(ToQt(form_.lblFileLengthHMS.Tooltip.Get()));
  binder_.Show(form_.lblFilePositionHMS, *position);
  binder_.Show(form_.lblFileLengthHMS, *length, "of\n");
  return well;
}

void PlayerPanel::FitDisplay(QWidget& well, QLabel& position, QLabel& length) {
  well.setFixedSize(scale_(kDisplaySize));
  position.setFont(FiguresFont(scale_(32)));
  length.setFont(FiguresFont(scale_(16)));
  // Labels of a fixed size repaint alone: a second that ticks lays nothing out again.
  position.setFixedSize(scale_(kPositionPlace.size()));
  position.move(scale_(kPositionPlace).topLeft());
  length.setFixedSize(scale_(kLengthPlace.size()));
  length.move(scale_(kLengthPlace).topLeft());
}

QBoxLayout* PlayerPanel::Meters() {
  auto* const meters = new QVBoxLayout;
  scale_.Fit([this, meters] { meters->setSpacing(scale_(8)); });
  meters->addStretch(1);
  for (forms::Range* const range : {&form_.MeterLeft, &form_.MeterRight}) {
    auto* const meter = new MeterBar(this);
    scale_.Fit([this, meter] {
      meter->setFixedWidth(scale_(kMeterWidth));
      meter->SetLamps(scale_(kMeterHeight), scale_(kLamp));
    });
    meters->addWidget(meter);
    binder_.Bind(*range, *meter, [range, meter] {
      meter->SetLevel(range->Value);
      if (meter->accessibleName().isEmpty()) meter->setAccessibleName(ToQt(range->Tooltip.Get()));
    });
  }
  meters->addStretch(1);
  return meters;
}

QBoxLayout* PlayerPanel::DisplayRow() {
  auto* const row = new QHBoxLayout;
  scale_.Fit([this, row] {
    row->setContentsMargins(scale_(QMargins(kSide, 0, kSide, 0)));
    row->setSpacing(scale_(12));
  });
  row->addWidget(Display());
  row->addLayout(Meters());
  row->addStretch(1);
  row->addLayout(BrandColumn());
  return row;
}

QWidget* PlayerPanel::Logo(forms::Pane& picture, Brand brand) {
  auto* const logo = new BrandLogo(brand, this);
  scale_.Fit([this, logo] { logo->SetHeight(scale_(kLogoHeight)); });
  binder_.Bind(picture, *logo,
               [&picture, logo] { SetHeardName(*logo, ToQt(picture.Tooltip.Get())); });
  return logo;
}

void PlayerPanel::ShowCustomDisplay(QBoxLayout& words) {
  auto* const heading = new ElidingLabel(this);
  auto* const line = new ElidingLabel(this);
  scale_.Fit([this, heading, line] {
    heading->setFont(DeckFont(scale_(17), QFont::Bold));
    line->setFont(DeckFont(scale_(13)));
  });
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, theme::kQuietText);
  line->setPalette(quiet);
  for (QLabel* const label : {heading, line}) {
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    words.addWidget(label);
  }
  binder_.Bind(form_.lblCustomDisplay, *heading, [this, heading, line] {
    const auto [head, rest] = SplitAtWideGap(ToOneLine(form_.lblCustomDisplay.Value.Get()));
    heading->setText(head);
    line->setText(rest);
    line->setVisible(form_.lblCustomDisplay.Visible && !rest.isEmpty());
  });
}

/// A logo is never cut; the line of the user's own gives way to it.
QBoxLayout* PlayerPanel::BrandColumn() {
  auto* const words = new QVBoxLayout;
  words->addStretch(1);
  ShowCustomDisplay(*words);
  words->addStretch(1);

  ElidingLabel* const name = Label(form_.lblBriselName, 16, theme::kText);
  name->KeepWhole(QWIDGETSIZE_MAX);
  auto* const brisel = new QHBoxLayout;
  brisel->addWidget(Logo(form_.picBriselBitMap, Brand::Brisel));
  brisel->addWidget(name);

  auto* const column = new QHBoxLayout;
  scale_.Fit([this, words, brisel, column] {
    words->setSpacing(scale_(2));
    brisel->setSpacing(scale_(8));
    column->setSpacing(scale_(16));
  });
  column->addLayout(brisel);
  column->addWidget(Logo(form_.picSorelLogo, Brand::Sorel));
  column->addLayout(words);
  return column;
}

DeckKey* PlayerPanel::Key(forms::Command& command, Glyph glyph, QSize size) {
  auto* const key = new DeckKey(glyph, scale_, this);
  scale_.Fit([this, key, size] {
    key->setFixedSize(scale_(size));
    key->setFont(DeckFont(scale_(14), QFont::Medium));
  });
  binder_.Press(command, *key);
  return key;
}

QBoxLayout* PlayerPanel::SoundColumn() {
  auto* const grid = new QGridLayout;
  scale_.Fit([this, grid] {
    grid->setHorizontalSpacing(scale_(6));
    grid->setVerticalSpacing(scale_(2));
  });
  const struct {
    forms::Text& label;
    forms::Range& range;
    forms::Command& command;
  } lines[] = {{form_.lblSpeed, form_.Slider1, form_.cmdNormalSpeed},
               {form_.lblVolume, form_.sldVol, form_.cmdEQ}};
  int row = 0;
  for (const auto& line : lines) {
    QLabel* const label = Label(line.label, 12, theme::kQuietText);
    auto* const slider = new DeckSlider(DeckSlider::Look::Small, this);
    scale_.Fit([this, label, slider] {
      label->setMinimumWidth(scale_(30));
      slider->GrowTo(scale_.Factor());
      slider->setMinimumWidth(scale_(kLeastSoundSliderWidth));
      slider->setMaximumWidth(scale_(kSoundSliderWidth));
    });
    binder_.Slide(line.range, *slider);
    grid->addWidget(label, row, 1);
    grid->addWidget(slider, row, 2);
    grid->addWidget(Key(line.command, Glyph::None, kSideKey), row, 3);
    ++row;
  }
  // The sliders take what there is up to their full width; what is left stands before them.
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(2, 1000);
  auto* const column = new QVBoxLayout;
  column->addLayout(grid);
  return column;
}

QBoxLayout* PlayerPanel::KeysRow() {
  auto* const row = new QHBoxLayout;
  row->addWidget(Key(form_.cmdSkipBeg, Glyph::SkipBegin, kSmallKey));
  row->addWidget(Key(form_.cmdRewind, Glyph::Rewind, kSmallKey));
  row->addWidget(new PlayKeys(form_, binder_, scale_, this));
  row->addWidget(Key(form_.cmdForward, Glyph::Forward, kSmallKey));
  row->addWidget(Key(form_.cmdSkipEnd, Glyph::SkipEnd, kSmallKey));
  auto* const gap = new QSpacerItem(0, 0);
  row->addItem(gap);
  scale_.Fit([this, row, gap] {
    row->setContentsMargins(scale_(QMargins(kSide, 0, kSide, 0)));
    row->setSpacing(scale_(8));
    gap->changeSize(scale_(14), 0, QSizePolicy::Fixed, QSizePolicy::Minimum);
    row->invalidate();
  });
  for (forms::Command* const command : {&form_.cmdSkip, &form_.cmdSave, &form_.cmdComplete}) {
    row->addWidget(Key(*command, Glyph::None, kWordKey));
  }
  row->addLayout(SoundColumn(), 1);
  return row;
}

}  // namespace tavlo::platform::qt
