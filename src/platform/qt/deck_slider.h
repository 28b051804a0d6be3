#pragma once

#include <QSlider>
#include <functional>

namespace tavlo::platform::qt {

/// A horizontal slider that tells a hand's press, moves and release apart from a program's write.
/// A press in the groove jumps there and drags on; a key is one step; the wheel does nothing, since
/// it is turned by accident.
class DeckSlider : public QSlider {
 public:
  /// Main is the wide one of the document's position; Small is for speed, volume and settings.
  enum class Look { Main, Small };

  explicit DeckSlider(Look look, QWidget* parent = nullptr);

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
  int XOf(int value) const;
  int HandleX() const;
  void PaintGroove(QPainter& painter, bool onDeck) const;
  QColor HandleColour(bool onDeck) const;
  int ValueAt(double x) const;
  void MoveTo(int value);

  Look look_;
};

}  // namespace tavlo::platform::qt
