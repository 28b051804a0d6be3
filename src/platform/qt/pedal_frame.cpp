#include "platform/qt/pedal_frame.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>

#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/number_box.h"
#include "platform/qt/texts.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kPedalLineSpacing = 8;
constexpr int kBetweenPedals = 16;
constexpr QSize kPedalSize{72, 34};
constexpr qreal kPedalRounding = 6;

/// One pedal seen from above. A thicker rim tells a lit one from a dark one without its colour.
class PedalPicture : public QWidget {
 public:
  PedalPicture(const forms::PedalShape& shape, QWidget* parent) : QWidget(parent), shape_(shape) {
    setFixedSize(kPedalSize);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const bool down = shape_.FillColour == forms::PedalShape::kDown;
    const int rim = down ? 3 : 1;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor::fromRgb(shape_.FillColour));
    painter.setPen(QPen(palette().color(QPalette::WindowText), rim));
    const qreal inset = rim / 2.0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kPedalRounding,
                            kPedalRounding);
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
  AddKind(Lines());
  auto* const state = new QLabel(this);
  state->setWordWrap(true);
  Lines().addWidget(state);
  Lines().addStretch(1);
  binder.Show(form.lblPedalState, *state);
  binder.Frame(form.frameConfigFootPedal, *this, caption);
}

void PedalFrame::AddPedals(QBoxLayout& lines) {
  struct Column {
    forms::PedalShape& shape;
    forms::Text& label;
  };
  const Column columns[] = {{form_.ShapeLeftPedal, form_.lblLeftPedal},
                            {form_.ShapeCenterPedal, form_.lblPlay},
                            {form_.ShapeRightPedal, form_.lblRightPedal}};
  auto* const pedals = new QGridLayout;
  pedals->setHorizontalSpacing(kBetweenPedals);
  int place = 0;
  for (const auto& [shape, label] : columns) {
    auto* const picture = new PedalPicture(shape, this);
    pedals->addWidget(picture, 0, place);
    binder_.Bind(shape, *picture, [&shape = shape, picture] {
      SetHeardName(*picture, ToQt(shape.Tooltip.Get()));
      SetHeardDescription(*picture, shape.FillColour == forms::PedalShape::kDown ? "Down" : "Up");
      picture->update();
    });
    auto* const function = new QLabel(this);
    pedals->addWidget(function, 1, place, Qt::AlignHCenter);
    binder_.Show(label, *function);
    ++place;
  }
  pedals->setColumnStretch(place, 1);
  lines.addLayout(pedals);
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
