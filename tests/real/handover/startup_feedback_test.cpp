#include <gtest/gtest.h>
#include <stdlib.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "handover/second_start.h"
#include "support/driven_program.h"
#include "support/home.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

/// The part of a desktop that shows which programs are starting.
class Launcher {
 public:
  Launcher() : display_(xcb_connect(nullptr, nullptr)) {
    const std::uint32_t listens = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(display_,
                                 xcb_setup_roots_iterator(xcb_get_setup(display_)).data->root,
                                 XCB_CW_EVENT_MASK, &listens);
    xcb_flush(display_);
  }
  ~Launcher() { xcb_disconnect(display_); }
  Launcher(const Launcher&) = delete;

  /// All that programs have said of their starts so far, each with a zero byte behind it.
  const std::string& Heard() {
    while (const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event{
        xcb_poll_for_event(display_), &std::free}) {
      if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) continue;
      const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
      if (message.format != 8) continue;
      const auto* const bytes = reinterpret_cast<const char*>(message.data.data8);
      const auto* const end = std::find(bytes, bytes + 20, '\0');
      heard_.append(bytes, end);
      if (end != bytes + 20) heard_ += '\0';
    }
    return heard_;
  }

 private:
  xcb_connection_t* display_;
  std::string heard_;
};

TEST(StartupFeedback, IsEndedByAStartThatHandsItsFilesOverAndShowsNoWindow) {
  const Home home;
  home.MakeRoot(QuietSettings());
  Launcher launcher;
  DrivenProgram program(home);
  program.Run([&] {
    ASSERT_TRUE(program.Begin());
    program.AnswerBox();
    ::setenv("DESKTOP_STARTUP_ID", "file manager \"7\" with a long name_TIME1234", 1);
    EXPECT_EQ(SecondStart({"/nothing.wav"}), 0);
    ::unsetenv("DESKTOP_STARTUP_ID");
    const std::string word =
        "remove: ID=\"file manager \\\"7\\\" with a long name_TIME1234\"" + std::string(1, '\0');
    EXPECT_TRUE(Until([&] { return launcher.Heard().find(word) != std::string::npos; }))
        << launcher.Heard();
    program.Exit();
  });
}

}  // namespace
}  // namespace tavlo::test
