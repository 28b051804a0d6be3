#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

#include "forms/controls.h"

namespace tavlo::platform::qt {

class Binder;
class QtLoop;

/// A top-level window of the desktop that shows a form's window: caption, place, outer size, shape,
/// on top, pointer and focus go to the desktop; what the user and the window manager do comes back.
class TopWindow : public QWidget {
 public:
  TopWindow(forms::Window& form, QtLoop& loop, Binder& binder, Qt::WindowFlags flags = Qt::Window);

  forms::Window& Form() const { return form_; }

  /// The window is the active one: its form is told so, once until it loses the desktop's focus to
  /// something other than a message box.
  void TellActivated();
  /// A message box in front of this window has closed.
  void BoxClosed();

  /// Keeps this window in front of `owner`, also of one that stays on top. The owner must outlive
  /// it; to be called before the first show.
  void StandBefore(TopWindow& owner) { owner_ = &owner; }

  /// Runs when the window has stood still for a moment, so that its frame is known.
  std::function<void()> OnSettled;

 protected:
  /// Starts to show the form. A derived window calls it last, when its own widgets are bound.
  void Bind();

  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  void Show();
  void ShowPlace();
  void ShowShape();
  /// Ends being minimized.
  void ComeBack();
  void ShowVisible();
  void PlaceHidden();
  void ShowFocus();
  void ShowFront();
  void Settled();
  /// Shows a window that came back by itself, and so without the keyboard, in front of the others.
  void ComeForward();
  void ShapeChanged();
  void NoticeReturn();
  /// Takes the form's wish to be minimized as one that was called back at once.
  void StayUnminimized();
  void KeepScreenSize();
  void KeepKeyboard();
  void WatchScreens();
  void ReturnToAScreen();
  bool WantsMinimized() const { return form_.WindowShape == forms::Shape::Minimized; }

  /// The outer rectangle that the form asks for, the nearest one to it that its screen has room
  /// for, and the one that the window has.
  QRect Wanted() const;
  QRect WithinReach() const;
  QRect Outer() const;

  forms::Window& form_;
  QtLoop& loop_;
  Binder& binder_;
  TopWindow* owner_ = nullptr;
  QTimer settle_;
  QRect shownPlace_;
  QMargins shownMargins_;
  bool shownMinimized_ = false;
  const bool placed_;  ///< The desktop lets a window say where it stands, and tells it.
  bool screensChanged_ = false;
  bool comesBack_ = false;     ///< It is no longer minimized, and not yet in front.
  bool wentAway_ = false;      ///< The screen has lost the window since it was minimized.
  bool notMinimized_ = false;  ///< The form wants to be, and this desktop could not bring it back.
  bool shownTopMost_ = false;
  unsigned shownFocus_ = 0;
  unsigned shownFront_ = 0;
  bool told_ = false;
};

}  // namespace tavlo::platform::qt
