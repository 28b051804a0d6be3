#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>

class QWidget;

namespace tavlo::platform::qt {

/// Whether somebody types in a window of another program, and the way back to that window. For what
/// comes up by itself, which must take no letter from whoever types. Lives on the toolkit's thread;
/// on a desktop that is none of X it knows of nobody.
class OthersKeyboard : public QAbstractNativeEventFilter {
 public:
  /// Looks whose keyboard it is now.
  OthersKeyboard();
  ~OthersKeyboard() override;
  OthersKeyboard(const OthersKeyboard&) = delete;

  /// Another program's window has it, or had it before a message box took it. Not when somebody has
  /// come to another window of this program meanwhile.
  bool IsTheirs() const { return window_ != 0; }
  /// That window, by the display's number for it; 0 when there is none.
  std::uint32_t Window() const { return window_; }
  /// Goes on looking while that box shows, which may get the keyboard meanwhile.
  void WatchUnder(const QWidget& box) { box_ = &box; }
  /// Ends the watch, and gives the keyboard back to that window, wherever it is now.
  void GiveBack();

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  void Look();

  const QWidget* box_ = nullptr;
  std::uint32_t change_ = 0;  ///< The atom of the display by which a manager tells.
  std::uint32_t window_ = 0;
};

}  // namespace tavlo::platform::qt
