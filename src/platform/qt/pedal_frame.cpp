#include "platform/qt/pedal_frame.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>
#include <QVBoxLayout>

#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/colours.h"
#include "platform/qt/number_box.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kPedalLineSpacing = 8;
constexpr int kPlateHeight = 58;
constexpr int kPlateRoom = 56;  ///< The narrowest plate.
constexpr qreal kPlateRounding = 5;
constexpr int kAroundPlates = 7;
constexpr int kBetweenPlates = 6;
constexpr double kHousing = 0.86;  ///< Share of black in the metal under the plates.
constexpr int kGrooves = 3;
constexpr int kFirstGroove = 9;
constexpr int kGrooveStep = 6;
constexpr int kBesideGroove = 10;
constexpr double kGrooveShade = 0.22;
/// The plate in the middle is the one that is pressed all day.
constexpr int kOuterShare = 3;
constexpr int kMiddleShare = 4;

/// The metal on which the plates stand.
class PedalHousing : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Mixed(QColor::fromRgb(forms::PedalShape::kUp), Qt::black, kHousing));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(rect()), kPlateRounding + 3, kPlateRounding + 3);
  }
};

/// One pedal seen from above, grooved where the sole stands. A thicker rim tells a lit one from a
/// dark one without its colour.
class PedalPlate : public QWidget {
 public:
  PedalPlate(const forms::PedalShape& shape, QWidget* parent) : QWidget(parent), shape_(shape) {
    setMinimumWidth(kPlateRoom);
    setMinimumHeight(kPlateHeight);
    // The plate is light on a dark desktop too.
    QPalette own = palette();
    own.setColor(QPalette::WindowText, Qt::black);
    setPalette(own);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const bool down = shape_.FillColour == forms::PedalShape::kDown;
    const QColor plate = QColor::fromRgb(shape_.FillColour);
    const int rim = down ? 3 : 1;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(plate);
    painter.setPen(QPen(down ? theme::kAmberKey : QColor(Qt::white), rim));
    const qreal inset = rim / 2.0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kPlateRounding,
                            kPlateRounding);
    for (int groove = 0; groove < kGrooves; ++groove) {
      const int y = kFirstGroove + groove * kGrooveStep;
      const QRect line(kBesideGroove, y, width() - 2 * kBesideGroove, 1);
      painter.fillRect(line, Mixed(plate, Qt::black, kGrooveShade));
      painter.fillRect(line.translated(0, 1), Mixed(plate, Qt::white, 2 * kGrooveShade));
    }
  }

 private:
  const forms::PedalShape& shape_;
};

}  // namespace

PedalFrame::PedalFrame(forms::SettingsPage& form, Binder& binder, QWidget* parent)
    : Card(parent), form_(form), binder_(binder) {
  Lines().setSpacing(kPedalLineSpacing);
  AddHeading("Foot pedal");
  auto* const caption = new QLabel(this);
  caption->setWordWrap(true);
  Lines().addWidget(caption);
  AddPedals(Lines());
  for (forms::Choice* const box : {&form.chkSwapRewindForwardPedals, &form.chkSkipBegEnd}) {
    auto* const tick = new QCheckBox(this);
    Lines().addWidget(tick, 0, Qt::AlignLeft);
    binder.Tick(*box, *tick);
  }
  auto* const skips = new QLabel("A double press of an outer pedal skips then.", this);
  skips->setWordWrap(true);
  Lines().addWidget(skips);
  AddKind(Lines());
  for (forms::Text* const text : {&form.lblPedalState, &form.lblWaysFromAfar}) {
    auto* const label = new QLabel(this);
    label->setWordWrap(true);
    Lines().addWidget(label);
    binder.Show(*text, *label);
  }
  Lines().addStretch(1);
  binder.Frame(form.frameConfigFootPedal, *this, caption);
}

void PedalFrame::AddPedals(QBoxLayout& lines) {
  struct Plate {
    forms::PedalShape& shape;
    forms::Text& label;
    int share;
  };
  const Plate plates[] = {{form_.ShapeLeftPedal, form_.lblLeftPedal, kOuterShare},
                          {form_.ShapeCenterPedal, form_.lblPlay, kMiddleShare},
                          {form_.ShapeRightPedal, form_.lblRightPedal, kOuterShare}};
  auto* const housing = new PedalHousing(this);
  auto* const row = new QHBoxLayout(housing);
  row->setContentsMargins(kAroundPlates, kAroundPlates, kAroundPlates, kAroundPlates);
  row->setSpacing(kBetweenPlates);
  for (const auto& [shape, label, share] : plates) {
    auto* const plate = new PedalPlate(shape, housing);
    row->addWidget(plate, share);
    binder_.Bind(shape, *plate, [&shape = shape, plate] {
      SetHeardName(*plate, ToQt(shape.Tooltip.Get()));
      SetHeardDescription(*plate, shape.FillColour == forms::PedalShape::kDown ? "Down" : "Up");
      plate->update();
    });
    auto* const function = new QLabel(plate);
    auto* const inside = new QVBoxLayout(plate);
    inside->addStretch(1);
    inside->addWidget(function, 0, Qt::AlignHCenter);
    binder_.Show(label, *function);
  }
  lines.addWidget(housing);
}

void PedalFrame::AddKind(QBoxLayout& lines) {
  auto* const row = new QHBoxLayout;
  for (forms::Choice* const option : {&form_.optionUSB, &form_.optionSerial}) {
    auto* const button = new QRadioButton(this);
    row->addWidget(button);
    binder_.Tick(*option, *button);
  }
  auto* const label = new QLabel(this);
  row->addWidget(label);
  binder_.Show(form_.lblSerialFootPedalComPort, *label);
  auto* const port = new NumberBox(this);
  row->addWidget(port);
  binder_.Edit(form_.txtSerialFootPedalComPort, *port);
  binder_.Watch(form_.txtSerialFootPedalComPort, [label, &box = form_.txtSerialFootPedalComPort] {
    label->setEnabled(box.Enabled);
  });
  row->addStretch(1);
  lines.addLayout(row);
}

}  // namespace tavlo::platform::qt
