#include "platform/qt/accessible_parts.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <algorithm>
#include <cmath>

#include "forms/heard_value.h"
#include "platform/qt/brand_logo.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/figures_label.h"
#include "platform/qt/key_box.h"
#include "platform/qt/meter_bar.h"
#include "platform/qt/secret_box.h"
#include "platform/qt/state_speaker.h"
#include "platform/qt/status_strip.h"
#include "platform/qt/texts.h"
#include "platform/qt/top_window.h"

namespace tavlo::platform::qt {
namespace {

/// A widget whose value can be asked, and set where it can be moved.
class Measured : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  Measured(QWidget* widget, QAccessible::Role role) : QAccessibleWidget(widget, role) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return currentValue().toString();
    return QAccessibleWidget::text(kind);
  }
};

/// A slider's numbers are in the unit that a person would say. Not every desktop hands on the
/// words, so the unit is what the description says, too.
class HeardSlider : public Measured {
 public:
  explicit HeardSlider(DeckSlider& slider)
      : Measured(&slider, QAccessible::Slider), slider_(slider) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) {
      return ToQt(forms::HeardWords(slider_.Span(), slider_.value()));
    }
    if (kind == QAccessible::Description) return ToQt(slider_.Span().heard.unit);
    return Measured::text(kind);
  }
  QVariant currentValue() const override { return Heard(slider_.value()); }
  void setCurrentValue(const QVariant& value) override {
    const double heard = value.toDouble();
    if (!slider_.isEnabled() || std::isnan(heard)) return;
    slider_.StepTo(forms::ValueHeardAs(slider_.Span(), heard));
  }
  QVariant minimumValue() const override {
    return std::min(Heard(slider_.minimum()), Heard(slider_.maximum()));
  }
  QVariant maximumValue() const override {
    return std::max(Heard(slider_.minimum()), Heard(slider_.maximum()));
  }
  QVariant minimumStepSize() const override { return slider_.Span().heard.step; }

 private:
  double Heard(int value) const { return forms::HeardValue(slider_.Span(), value); }

  DeckSlider& slider_;
};

/// A meter can be asked and keeps quiet by itself: it moves twenty times a second.
class HeardMeter : public Measured {
 public:
  explicit HeardMeter(MeterBar& meter)
      : Measured(&meter, QAccessible::ProgressBar), meter_(meter) {}

  QVariant currentValue() const override { return meter_.Level(); }
  void setCurrentValue(const QVariant&) override {}
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return 100; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  MeterBar& meter_;
};

/// A box that takes a key. Not every desktop hands on the value, so the description says the key,
/// too.
class HeardKey : public QAccessibleWidget {
 public:
  explicit HeardKey(KeyBox& box) : QAccessibleWidget(&box, QAccessible::HotkeyField), box_(box) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return box_.Key();
    return QAccessibleWidget::text(kind);
  }

 private:
  KeyBox& box_;
};

/// Says what the figures are and how they stand when it is asked.
class HeardFigures : public QAccessibleWidget {
 public:
  explicit HeardFigures(FiguresLabel& label)
      : QAccessibleWidget(&label, QAccessible::StaticText), label_(label) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return label_.Figures();
    if (kind == QAccessible::Name) return label_.accessibleName() + ": " + label_.Figures();
    return QAccessibleWidget::text(kind);
  }

 private:
  FiguresLabel& label_;
};

QAccessibleInterface* PartFor(const QString&, QObject* object) {
  if (auto* const slider = dynamic_cast<DeckSlider*>(object)) return new HeardSlider(*slider);
  if (auto* const meter = dynamic_cast<MeterBar*>(object)) return new HeardMeter(*meter);
  if (auto* const figures = dynamic_cast<FiguresLabel*>(object)) return new HeardFigures(*figures);
  if (auto* const box = dynamic_cast<KeyBox*>(object)) return new HeardKey(*box);
  if (auto* const speaker = dynamic_cast<StateSpeaker*>(object)) {
    return new QAccessibleWidget(speaker, QAccessible::Notification);
  }
  if (auto* const logo = dynamic_cast<BrandLogo*>(object)) {
    return new QAccessibleWidget(logo, QAccessible::Graphic);
  }
  if (auto* const strip = dynamic_cast<StatusStrip*>(object)) {
    return new QAccessibleWidget(strip, QAccessible::StatusBar);
  }
  if (auto* const window = dynamic_cast<TopWindow*>(object)) {
    const bool dialog = window->windowType() == Qt::Dialog;
    return new QAccessibleWidget(window, dialog ? QAccessible::Dialog : QAccessible::Window);
  }
  return nullptr;
}

void Tell(QAccessibleEvent* event);

void HandOn(QAccessibleEvent& event) {
  QAccessible::installUpdateHandler(nullptr);
  QAccessible::updateAccessibility(&event);
  QAccessible::installUpdateHandler(Tell);
}

QString Asterisks(const QString& secret) { return QString(secret.size(), u'*'); }

/// The toolkit's box tells each letter that is typed into it, a password's, too.
void TellInAsterisks(QAccessibleEvent* event) {
  if (auto* const insert = dynamic_cast<QAccessibleTextInsertEvent*>(event)) {
    QAccessibleTextInsertEvent hidden(event->object(), insert->changePosition(),
                                      Asterisks(insert->textInserted()));
    hidden.setCursorPosition(insert->cursorPosition());
    return HandOn(hidden);
  }
  if (auto* const removal = dynamic_cast<QAccessibleTextRemoveEvent*>(event)) {
    QAccessibleTextRemoveEvent hidden(event->object(), removal->changePosition(),
                                      Asterisks(removal->textRemoved()));
    hidden.setCursorPosition(removal->cursorPosition());
    return HandOn(hidden);
  }
  if (auto* const update = dynamic_cast<QAccessibleTextUpdateEvent*>(event)) {
    QAccessibleTextUpdateEvent hidden(event->object(), update->changePosition(),
                                      Asterisks(update->textRemoved()),
                                      Asterisks(update->textInserted()));
    hidden.setCursorPosition(update->cursorPosition());
    return HandOn(hidden);
  }
  if (event->type() != QAccessible::ValueChanged) HandOn(*event);
}

void Tell(QAccessibleEvent* event) {
  const bool isSecret = dynamic_cast<SecretBox*>(event->object()) != nullptr;
  isSecret ? TellInAsterisks(event) : HandOn(*event);
}

}  // namespace

void InstallAccessibleParts() {
  QAccessible::installFactory(PartFor);
  QAccessible::installUpdateHandler(Tell);
}

void SetHeardName(QWidget& widget, const QString& name) {
  if (widget.accessibleName() != name) widget.setAccessibleName(name);
}

void SetHeardDescription(QWidget& widget, const QString& description) {
  if (widget.accessibleDescription() != description) widget.setAccessibleDescription(description);
}

}  // namespace tavlo::platform::qt
