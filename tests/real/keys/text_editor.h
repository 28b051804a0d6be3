#pragma once

#include <string>

#include "support/screen.h"
#include "support/started_program.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

/// A text editor that others wrote, with an empty text.
class TextEditor {
 public:
  TextEditor() : file_(folder_.Write("letter.txt", "")) {}

  /// Raises it and gives it the keyboard, as a click in a task bar does. False when it does not
  /// come.
  bool ComeForward() {
    xcb_window_t window = XCB_NONE;
    const auto find = [&] {
      for (const SeenWindow& seen : screen_.Windows()) {
        if (seen.title.find("letter.txt") != seen.title.npos) window = seen.id;
      }
      return window != XCB_NONE;
    };
    if (!Until(find)) return false;
    screen_.hands.BringForward(window);
    return Until([&] {
      const auto active = screen_.Numbers(screen_.hands.Root(), "_NET_ACTIVE_WINDOW");
      return !active.empty() && active.front() == window;
    });
  }
  /// Saves it by its key, and waits until it is that text; the text.
  std::string Saved(const std::string& expected) {
    constexpr std::uint32_t kControl = 0xFFE3;
    std::string text;
    Until(
        [&] {
          screen_.hands.Keys({kControl, 's'});
          return (text = folder_.Read("letter.txt")) == expected;
        },
        100);
    return text;
  }

 private:
  const TemporaryFolder folder_;
  const std::string file_;
  Screen screen_;
  StartedProgram program_{"/usr/bin/l3afpad",
                          folder_.Path(),
                          {.arguments = {file_},
                           .environment = {{"NO_AT_BRIDGE", "1"}, {"GTK_IM_MODULE", "none"}},
                           .errorsPath = folder_ / "errors"}};
};

}  // namespace tavlo::test
