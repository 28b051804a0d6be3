#pragma once

#include <QSlider>
#include <functional>
#include <optional>

#include "forms/controls.h"

namespace tavlo::platform::qt {

/// A slider that tells a hand's press, moves and release apart from a program's write. A press in
/// the groove jumps there and drags on; a key is one step; the wheel does nothing, since it is
/// turned by accident.
class DeckSlider : public QSlider {
 public:
  /// On the deck, Main is the wide one of the document's position and Small is for speed and
  /// volume. The others stand on the desktop's own colours: Level lies, and Upright stands with its
  /// smallest value on top, as on a mixing desk whose gains count downwards.
  enum class Look { Main, Small, Level, Upright };

  explicit DeckSlider(Look look, QWidget* parent = nullptr);

  /// Bounds and steps, and how the value is said.
  void SetSpan(const forms::Span& span);
  const forms::Span& Span() const { return span_; }

  /// From this value the slider runs both ways: it is marked, and the groove is lit from there.
  void SetNought(int value);
  /// How far from the end of a slider that has not grown its handle's first and last places are, in
  /// pixels.
  static int Reach();
  /// Thickness and handle become so many times what they were drawn.
  void GrowTo(double factor);

  std::function<void()> OnPress;
  std::function<void(int value)> OnMove;
  std::function<void()> OnRelease;
  std::function<void(int value)> OnStep;

  /// What a key does, for whoever moves the slider without a mouse.
  void StepTo(int value);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // The slider reckons and paints along its groove; an upright one is turned when it is shown.
  bool Upright() const { return look_ == Look::Upright; }
  int Length() const { return Upright() ? height() : width(); }
  double Middle() const { return (Upright() ? width() : height()) / 2.0; }
  double Along(const QPointF& position) const { return Upright() ? position.y() : position.x(); }
  /// Pixels of the slider as it was drawn.
  int Grown(int drawn) const;
  int PlaceOf(int value) const;
  int HandlePlace() const { return PlaceOf(value()); }
  int ValueAt(double place) const;
  int FillFrom() const;
  bool OnDeck() const { return look_ == Look::Main || look_ == Look::Small; }
  QColor Accent() const;
  void PaintGroove(QPainter& painter) const;
  QColor HandleColour() const;
  void MoveTo(int value);

  Look look_;
  double growth_ = 1;
  std::optional<int> nought_;
  forms::Span span_;
};

}  // namespace tavlo::platform::qt
