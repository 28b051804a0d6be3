#pragma once

#include <xcb/xcb.h>

#include <QPoint>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace tavlo::test {

/// Milliseconds between two clicks of a hand that waits after each until the window manager has
/// dealt with it.
inline constexpr int kLongDoubleClick = 60'000;

/// The keyboard and the mouse of the display: what is done here reaches whatever program shows
/// there the way it does on a desk. Places are pixels of the screen. Each call returns when the
/// display has taken the input; what a program makes of it comes later.
class Hands {
 public:
  Hands();
  ~Hands();
  Hands(const Hands&) = delete;

  void MoveTo(int x, int y);
  void Press();
  void Release();
  void ClickAt(int x, int y);
  /// One step of the wheel, down.
  void TurnWheel();
  /// Presses the keys together (X key symbols, modifiers first) and lets them go.
  void Keys(std::initializer_list<std::uint32_t> symbols);
  /// One key, for who must see each go down before the next.
  void Hold(std::uint32_t symbol);
  void LetGo(std::uint32_t symbol);
  /// The same by the key's place on the keyboard, whatever it makes (its key code).
  void HoldPlace(std::uint8_t keycode);
  void LetGoOfPlace(std::uint8_t keycode);
  /// Presses a key so that it reaches this window and no other, whoever has the keyboard; nothing
  /// when there is no such window any more.
  void KeyInto(xcb_window_t window, std::uint32_t symbol);

  /// The connection to the display, for who looks at it as well.
  xcb_connection_t* Connection() const { return connection_; }
  xcb_window_t Root() const { return root_; }
  xcb_atom_t Atom(const std::string& name) const;
  /// Where a window's upper left corner is on the screen; null when there is no such window.
  QPoint PlaceOf(xcb_window_t window) const;
  /// Asks the window manager for a window, as a click in a task bar does.
  void BringForward(xcb_window_t window);
  /// Presses the close button of a window's frame.
  void PressClose(xcb_window_t window);
  /// Returns when the window manager has dealt with everything that had reached it before; at once
  /// where there is none.
  void AwaitManager();

 private:
  void Ask(xcb_window_t window, const std::string& wish, const std::array<std::uint32_t, 2>& data);
  void Fake(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);
  void Flush();
  std::uint8_t KeyCode(std::uint32_t symbol) const;
  /// The numbers of a property; none when the window does not have it, or does not exist.
  std::vector<std::uint32_t> Numbers(xcb_window_t window, const std::string& property) const;
  /// True where somebody would answer the question of AwaitManager.
  bool ManagerListens() const;

  xcb_connection_t* connection_;
  xcb_window_t root_;
};

}  // namespace tavlo::test
