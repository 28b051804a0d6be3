#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>

namespace tavlo::test {

/// The window of another program, which has the keyboard and notes what comes to it.
class OtherWindow {
 public:
  /// Returns when it has the keyboard.
  OtherWindow();
  ~OtherWindow();
  OtherWindow(const OtherWindow&) = delete;

  /// Every press and release so far, as "+a -a", by what the key makes alone; "+[F4]" if it came as
  /// a key of all windows.
  const std::string& Took();
  void Forget() { took_.clear(); }
  /// How often somebody's grab of the keyboard began or ended so far.
  int GrabsSeen();

  /// Asks for the keyboard of the whole session, as a screen that is locked has it. False when
  /// somebody else has it.
  bool Lock();
  void Unlock();
  /// Asks for one key of all windows, with exactly those modifiers. False when somebody else has
  /// it.
  bool Grab(std::uint8_t keycode, std::uint16_t modifiers);
  void GiveBack(std::uint8_t keycode, std::uint16_t modifiers);

  xcb_connection_t* Connection() const { return connection_; }

 private:
  void Read();
  std::string NameOf(std::uint8_t keycode);

  xcb_connection_t* const connection_;
  const xcb_window_t root_;
  const xcb_window_t id_;
  std::string took_;
  int grabsSeen_ = 0;
  bool hasKeyboard_ = false;
};

}  // namespace tavlo::test
